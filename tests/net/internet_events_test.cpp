// The Internet Events dialog by real events: what its owner may do, what somebody else sees, and what reaches the
// files.

#include <fstream>

#include "net_fixture.h"
#include "resources/command_ids.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InternetEvents : public NetFixture {
protected:
    void MakeSomebodyElsesNote(const std::string& title)
    {
        const RecordAddress address = AddEvent(title, {{"ann", kSendAccepted}}, 2);
        Change(address, [](NoteRecord& note) {
            StoreText(note.owner.name, "Rose Tree");
            StoreText(note.owner.email, "rose@far.example");
        });
    }
};

TEST_F(InternetEvents, AnOrdinaryNoteBecomesAnEventOnceItHasASubjectAndAPerson)
{
    AddContacts({{"ann", "ann@x.example"}, {"bob", "bob@x.example"}});
    Add({.title = "party"});
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        EXPECT_EQ(WindowTitle(dialog), "Internet Events");
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kEventsSubject));
        EXPECT_THAT(Rows(dialog), IsEmpty());
        EXPECT_TRUE(CanPress(dialog, kEventsSubject));
        EXPECT_FALSE(CanPress(dialog, kIdOk));
        EXPECT_THAT(ItemText(dialog, kEventsOwnerLine), testing::StartsWith("Owner: "));

        Invite(dialog, 0);
        EXPECT_FALSE(CanPress(dialog, kIdOk)) << "no subject yet";
        TypeInto(dialog, kEventsSubject, "Tea");
        EXPECT_TRUE(CanPress(dialog, kIdOk));
        for (int i = 0; i < 3; ++i)
            TestKey(DialogItem(dialog, kEventsSubject), kKeyBack);
        EXPECT_FALSE(CanPress(dialog, kIdOk));
        TypeInto(dialog, kEventsSubject, "0123456789012345678901234567\u00e4x");
        EXPECT_EQ(ItemText(dialog, kEventsSubject).size(), 30u);
        Invite(dialog, 1);
        EXPECT_THAT(Rows(dialog), ElementsAre("ann:1", "bob:1"));
        EXPECT_EQ(StoredNote("party").eventState, kEventNone) << "nothing is written before OK";
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(answers.texts, ElementsAre("Item put on Events panel."));
    EXPECT_EQ(answers.beeps, 1) << "a subject without room for its last letter";
    const NoteRecord note = StoredNote("party");
    EXPECT_EQ(FieldText(note.subject), "0123456789012345678901234567") << "29 bytes fit, but no half character";
    EXPECT_EQ(note.eventState, kEventHasRecipients);
    EXPECT_EQ(note.locked, 0);
    EXPECT_THAT(People("party"), ElementsAre("ann:1", "bob:1"));
}

TEST_F(InternetEvents, AnEventWithPeopleKeepsItsSubjectAndOkWaitsForAChange)
{
    AddContacts({{"zoe", "zoe@x.example"}});
    const auto address = AddEvent("party", {{"bob", kSendAccepted}, {"ann", kSendNoReply}}, 2, kStatusChange);
    Show();
    ScopedAnswers answers;
    const auto stamp = file->GetChangeStamp();
    InEvents("party", [&](WindowHandle dialog) {
        Invite(dialog, 0);
        SelectRow(dialog, kEventsList, 0);
        TestKey(DialogItem(dialog, kEventsList), kKeyEscape);
    });
    EXPECT_THAT(People("party"), ElementsAre("ann:2", "bob:3")) << "Cancel leaves all as it was";
    EXPECT_EQ(file->GetChangeStamp(), stamp);
    TableFile other(path, "");
    EXPECT_EQ(other.LockRecord(address), 1);
    EXPECT_EQ(other.UnlockRecord(address), 1);
    ResumeRefresh();  // the switch belongs to the other copy's process
    InEvents("party", [&](WindowHandle dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("ann:2", "bob:3")) << "by name";
        EXPECT_FALSE(CanPress(dialog, kEventsSubject));
        EXPECT_FALSE(CanPress(dialog, kIdOk));
        EXPECT_FALSE(CanPress(dialog, kEventsRemove));
        Invite(dialog, 0);
        EXPECT_THAT(Rows(dialog), ElementsAre("ann:2", "bob:3", "zoe:1"));
        EXPECT_TRUE(CanPress(dialog, kIdOk));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(answers.texts, ElementsAre("Item put on Events panel."));
    EXPECT_THAT(People("party"), ElementsAre("ann:2", "bob:3", "zoe:1"));
    EXPECT_EQ(StoredNote("party").eventState, kEventHasRecipients);
}

TEST_F(InternetEvents, RefusedInvitationsBeepAndAddNoRow)
{
    Add({.title = "party"});
    std::vector<Invited> thirty;
    for (int i = 10; i < 40; ++i)
        thirty.push_back({"p" + std::to_string(i), kSendAccepted});
    AddEvent("full", thirty, 2);
    Show();
    IdentityBlock self{};
    ASSERT_EQ(GetFileUser(*file, self), 1);
    AddContacts({{"1 ann", "ann@x.example"},
                 {"2 myself", std::string(FieldText(self.email))},
                 {"3 tail", "joann@x.example"},
                 {"4 asks ann@x.example", "other@x.example"},
                 {"5 no address", ""}});
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        Invite(dialog, 1);
        EXPECT_EQ(answers.beeps, 1) << "nobody invites himself";
        Invite(dialog, 4);
        EXPECT_EQ(answers.beeps, 2) << "no mail reaches nobody";
        Invite(dialog, 0);
        EXPECT_EQ(answers.beeps, 2);
        Invite(dialog, 0);
        EXPECT_EQ(answers.beeps, 3) << "twice";
        Invite(dialog, 2);
        Invite(dialog, 3);
        EXPECT_EQ(answers.beeps, 5) << "an address inside the new row's text";
        EXPECT_THAT(Rows(dialog), ElementsAre("1 ann:1"));
    });
    InEvents("full", [&](WindowHandle dialog) {
        EXPECT_THAT(Rows(dialog), SizeIs(30));
        Invite(dialog, 0);
        EXPECT_EQ(answers.beeps, 6) << "a thirty-first";
        EXPECT_THAT(Rows(dialog), SizeIs(30));
        EXPECT_FALSE(CanPress(dialog, kIdOk)) << "nothing has changed";
    });
    EXPECT_THAT(answers.texts, IsEmpty());
}

TEST_F(InternetEvents, RemovedPeopleGoWhereNobodyWasToldAndComeBackCancelledElsewhere)
{
    AddEvent("party", {{"ann", kSendWaiting}, {"bob", kSendAccepted}, {"cid", kSendRejected}}, 1, kStatusChange);
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        TestPickRow(dialog, kEventsList, 0);
        ServeEvents();
        EXPECT_TRUE(CanPress(dialog, kEventsRemove));
        TestPushItem(dialog, kEventsRemove);
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:3", "cid:5", "ann:8")) << "at the end";
        EXPECT_TRUE(CanPress(dialog, kIdOk));
        SelectRow(dialog, kEventsList, -1);
        TestPushItem(dialog, kEventsRemove);
        EXPECT_EQ(answers.beeps, 1) << "no row selected";
        TestPickRow(dialog, kEventsList, 1);
        TestPushItem(dialog, kEventsRemove);
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:3", "ann:8"));
        TestPickRow(dialog, kEventsList, 1);
        TestPushItem(dialog, kEventsRemove);
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:3", "ann:8")) << "removed again, there again";
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(People("party"), ElementsAre("ann:8", "bob:3"));
    EXPECT_THAT(answers.texts, IsEmpty()) << "the event was queued already";
}

TEST_F(InternetEvents, TheLastPersonRemovedBeforeAnyAnnouncementMakesTheNoteOrdinary)
{
    AddEvent("other", {{"ann", kSendAccepted}});
    AddEvent("party", {{"ann", kSendWaiting}});
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        TestPickRow(dialog, kEventsList, 0);
        TestPushItem(dialog, kEventsRemove);
        EXPECT_THAT(Rows(dialog), IsEmpty());
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(StoredNote("party").eventState, kEventNone);
    EXPECT_THAT(People("party"), IsEmpty());
    EXPECT_THAT(People("other"), ElementsAre("ann:3")) << "another event's people are not touched";
    EXPECT_THAT(answers.texts, IsEmpty());
}

TEST_F(InternetEvents, SomebodyElseSeesTheOwnerAloneAndCanOnlyLeave)
{
    MakeSomebodyElsesNote("party");
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        for (const int id : {kEventsInvite, kEventsRemove, kIdOk})
            EXPECT_FALSE(CanPress(dialog, id)) << id;
        for (const int id : {kEventsList, kEventsHeading, kEventsOwnerLine})
            EXPECT_FALSE(IsVisible(DialogItem(dialog, id))) << id;
        EXPECT_TRUE(IsVisible(DialogItem(dialog, kEventsOwnerBlock)));
        const std::string owner = ItemText(dialog, kEventsOwnerBlock);
        EXPECT_THAT(owner, testing::HasSubstr("Rose Tree"));
        EXPECT_THAT(owner, testing::HasSubstr("rose@far.example"));
        TestKey(DialogItem(dialog, kEventsSubject), kKeyReturn);
        EXPECT_EQ(TopModal(), dialog) << "OK is disabled, also for the keyboard";
    });
    EXPECT_THAT(People("party"), ElementsAre("ann:3"));
}

TEST_F(InternetEvents, ReadersWithdrawnEventsHeldNotesAndNoSelectionAreRefused)
{
    const auto address = AddEvent("party", {{"ann"}}, kEventWithdrawn, kStatusWithdrawal);
    Show();
    ScopedAnswers answers;
    Command(kCommandInternetEvents);
    EXPECT_EQ(answers.beeps, 1) << "no note selected";
    Select("party");
    Command(kCommandInternetEvents);
    EXPECT_EQ(answers.beeps, 2) << "withdrawn";
    TableFile other(path, "");
    ASSERT_EQ(other.LockRecord(address), 1) << "the lock was given back";
    ResumeRefresh();  // the switch belongs to the other copy's process
    Command(kCommandInternetEvents);
    EXPECT_THAT(answers.texts, ElementsAre(kBeingEdited));
    EXPECT_EQ(other.UnlockRecord(address), 1);

    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    TearDownBoard();
    Show("look");
    Select("party");
    answers.texts.clear();
    Command(kCommandInternetEvents);
    EXPECT_THAT(answers.texts, ElementsAre("Program can't do this. You don't have permission."));
    EXPECT_EQ(answers.beeps, 2);
}

TEST_F(InternetEvents, TheNoteIsHeldAgainstOtherCopiesForTheWholeDialogEvenWhileContactsAreEdited)
{
    AddContacts({{"ann", "ann@x.example"}});
    const auto address = AddEvent("party", {{"bob"}});
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        TableFile other(path, "");
        EXPECT_EQ(other.LockRecord(address), 0) << "no second copy works on its people";
        EXPECT_FALSE(IsRefreshEnabled());
        WhenModal([&](WindowHandle book) {
            auto& list = static_cast<EBookDialog*>(MarlinWnd::FromHandle(book))->GetList();
            list.SelectItem(0);
            WhenModal([](WindowHandle record) {
                TestType(DialogItem(record, 100), "x");
                TestPushItem(record, kIdOk);
            });
            TestPushItem(book, 102);
            EXPECT_FALSE(IsRefreshEnabled()) << "right after the contact was let go";
            TestPushItem(book, kIdOk);
        });
        TestPushItem(dialog, kEventsEBook);
        EXPECT_FALSE(IsRefreshEnabled());
        Invite(dialog, 0);
        EXPECT_FALSE(IsRefreshEnabled());
    });
    EXPECT_TRUE(IsRefreshEnabled());
}

TEST_F(InternetEvents, AnOutboxThatIsNoneIsReportedAndLeftAsItIs)
{
    Add({.title = "party"});
    Show();
    for (const std::string& content : {std::string("no table at all"), test::ReadAll(path)}) {
        test::WriteAll(OutboxPath(), content);
        Select("party");
        ScopedAnswers answers;
        Command(kCommandInternetEvents);
        EXPECT_THAT(answers.texts, ElementsAre(testing::HasSubstr(OutboxPath())));
        EXPECT_EQ(test::ReadAll(OutboxPath()), content);
        EXPECT_EQ(StoredNote("party").locked, 0);
        EXPECT_TRUE(IsRefreshEnabled());
    }
}

TEST_F(InternetEvents, AFullDiskIsToldAndNobodyWhoWasInvitedIsLost)
{
    AddContacts({{"zoe", "zoe@x.example"}});
    AddEvent("party", {{"ann", kSendAccepted}}, 2, kStatusChange);
    Show();
    ScopedAnswers answers;
    {
        test::FailingFileSystem disk;
        const ScopedFileSystem full(disk);
        InEvents("party", [&](WindowHandle dialog) {
            Invite(dialog, 0);
            disk.failAt = disk.changes + 1;
            disk.andAllBehind = true;
            TestPushItem(dialog, kIdOk);
        });
    }
    EXPECT_THAT(answers.texts, testing::Contains(testing::HasSubstr("Not all participants could be written")));
    EXPECT_THAT(People("party"), ElementsAre("ann:3"));
    EXPECT_EQ(StoredNote("party").eventState, 2);
}

TEST_F(InternetEvents, HostileTextsInTheOutboxAreShownInTheirRowAndCanBeRemoved)
{
    AddEvent("party", {});
    const std::uint64_t event = StoredNote("party").uniqueId;
    Put({"line\nbreak", kSendAccepted}, event);
    Put({"caf\xe9", kSendNoReply}, event);
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("caf\u00e9:2", "line break:3"));
        for (int i = 0; i < 2; ++i) {
            TestPickRow(dialog, kEventsList, 0);
            TestPushItem(dialog, kEventsRemove);
        }
        EXPECT_THAT(Rows(dialog), ElementsAre("caf\u00e9:8", "line break:8"));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(People("party"), ElementsAre("caf\xe9:8", "line\nbreak:8")) << "the bytes stay as they are";
}

TEST(ParticipantRow, ItsPartsReadBackAndABrokenOneHasNoStatus)
{
    std::string item = ParticipantItem("a@x", "Ann", 12);
    SetItemStatus(item, 8);
    EXPECT_EQ(item, "a@x\nAnn\n8");
    for (const char* broken : {"", "a@x", "a@x\nAnn", "a@x\nAnn\nmany"})
        EXPECT_EQ(ItemStatus(broken), 0) << broken;
}

}  // namespace
}  // namespace jotlet
