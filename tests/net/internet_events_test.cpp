// The Internet Events dialog by real events: what its owner may do, what somebody else sees, and what reaches the
// files.

#include "net_fixture.h"
#include "resources/command_ids.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using namespace internet_events_ids;
using InternetEvents = NetFixture;

TEST_F(InternetEvents, AnOrdinaryNoteBecomesAnEventOnceItHasASubjectAndAPerson)
{
    IdentityBlock self{};
    ASSERT_EQ(GetFileUser(TableFile(path, ""), self), 1);
    AddContacts({{"1 ann", "ann@x.example"},
                 {"2 myself", std::string(FieldText(self.email))},
                 {"3 tail", "joann@x.example"},
                 {"4 asks ann@x.example", "other@x.example"},
                 {"5 no address", ""},
                 {"6 bob", "bob@x.example"}});
    Add({.title = "party"});
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kSubjectEdit));
        EXPECT_TRUE(CanPress(dialog, kSubjectEdit));
        EXPECT_THAT(ItemText(dialog, kOwnerLine), testing::StartsWith("Owner: "));
        for (const int index : {1, 4, 0, 0, 2, 3})
            Invite(dialog, index);
        EXPECT_EQ(answers.beeps, 5) << "himself, without an address, twice, and an address inside the new row's text";
        EXPECT_THAT(Rows(dialog), ElementsAre("1 ann:1"));
        EXPECT_FALSE(CanPress(dialog, kIdOk)) << "no subject yet";
        TypeInto(dialog, kSubjectEdit, "T");
        EXPECT_TRUE(CanPress(dialog, kIdOk));
        TestKey(DialogItem(dialog, kSubjectEdit), kKeyBack);
        EXPECT_FALSE(CanPress(dialog, kIdOk));
        TypeInto(dialog, kSubjectEdit, "0123456789012345678901234567\u00e4x");
        EXPECT_EQ(ItemText(dialog, kSubjectEdit).size(), 30u);
        Invite(dialog, 5);
        EXPECT_THAT(Rows(dialog), ElementsAre("1 ann:1", "6 bob:1"));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(answers.texts, ElementsAre("Item put on Events panel."));
    const NoteRecord note = StoredNote("party");
    EXPECT_EQ(FieldText(note.subject), "0123456789012345678901234567") << "29 bytes fit, but no half character";
    EXPECT_EQ(note.eventState, kEventHasRecipients);
    EXPECT_EQ(note.locked, 0);
    EXPECT_THAT(People("party"), ElementsAre("1 ann:1", "6 bob:1"));
}

TEST_F(InternetEvents, AnEventWithPeopleKeepsItsSubjectAndOkWaitsForAChange)
{
    AddContacts({{"zoe", "zoe@x.example"}});
    AddEvent("party", {{"bob", kSendAccepted}, {"ann", kSendNoReply}}, 2, kStatusChange);
    Show();
    ScopedAnswers answers;
    for (const int button : {kIdCancel, kIdOk}) {
        InEvents("party", [&](WindowHandle dialog) {
            EXPECT_THAT(Rows(dialog), ElementsAre("ann:2", "bob:3")) << "by name";
            for (const int id : {kSubjectEdit, kIdOk, kRemoveButton})
                EXPECT_FALSE(CanPress(dialog, id)) << id;
            Invite(dialog, 0);
            EXPECT_TRUE(CanPress(dialog, kIdOk));
            TestPushItem(dialog, button);
        });
        EXPECT_EQ(StoredNote("party").eventState, button == kIdOk ? kEventHasRecipients : 2);
        EXPECT_EQ(People("party").size(), button == kIdOk ? 3u : 2u);
    }
    EXPECT_THAT(answers.texts, ElementsAre("Item put on Events panel."));
}

TEST_F(InternetEvents, ThirtyAreInvitedAtMost)
{
    std::vector<Invited> thirty;
    for (int i = 10; i < 40; ++i)
        thirty.push_back({"p" + std::to_string(i), kSendAccepted});
    AddEvent("full", thirty, 2);
    AddContacts({{"ann", "ann@x.example"}});
    Show();
    ScopedAnswers answers;
    InEvents("full", [&](WindowHandle dialog) {
        Invite(dialog, 0);
        EXPECT_EQ(answers.beeps, 1);
        EXPECT_EQ(RowCount(dialog, kParticipantList), 30);
        EXPECT_FALSE(CanPress(dialog, kIdOk)) << "nothing has changed";
    });
}

TEST_F(InternetEvents, RemovedPeopleGoWhereNobodyWasToldAndComeBackCancelledElsewhere)
{
    AddEvent("party", {{"ann", kSendWaiting}, {"bob", kSendAccepted}, {"cid", kSendRejected}}, 1, kStatusChange);
    Show();
    ScopedAnswers answers;
    InEvents("party", [&](WindowHandle dialog) {
        TestPickRow(dialog, kParticipantList, 0);
        TestPushItem(dialog, kRemoveButton);
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:3", "cid:5", "ann:8")) << "at the end";
        EXPECT_TRUE(CanPress(dialog, kIdOk));
        SelectRow(dialog, kParticipantList, -1);
        TestPushItem(dialog, kRemoveButton);
        EXPECT_EQ(answers.beeps, 1) << "no row selected";
        for (int round = 0; round < 2; ++round) {
            TestPickRow(dialog, kParticipantList, 1);
            TestPushItem(dialog, kRemoveButton);
            EXPECT_THAT(Rows(dialog), ElementsAre("bob:3", "ann:8")) << "removed again, there again";
        }
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(People("party"), ElementsAre("ann:8", "bob:3"));
    EXPECT_THAT(answers.texts, IsEmpty()) << "the event was queued already";
}

TEST_F(InternetEvents, TheLastPersonRemovedBeforeAnyAnnouncementMakesTheNoteOrdinary)
{
    AddEvent("party", {{"ann", kSendWaiting}});
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        TestPickRow(dialog, kParticipantList, 0);
        TestPushItem(dialog, kRemoveButton);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(StoredNote("party").eventState, kEventNone);
    EXPECT_THAT(People("party"), IsEmpty());
}

TEST_F(InternetEvents, SomebodyElseSeesTheOwnerAloneAndCanOnlyLeave)
{
    Change(AddEvent("party", {{"ann", kSendAccepted}}, 2), [](NoteRecord& note) {
        StoreText(note.owner.name, "Rose Tree");
        StoreText(note.owner.email, "rose@far.example");
    });
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        for (const int id : {kInviteButton, kRemoveButton, kIdOk})
            EXPECT_FALSE(CanPress(dialog, id)) << id;
        for (const int id : {kParticipantList, kListHeading, kOwnerLine, kOwnerBlock})
            EXPECT_EQ(IsVisible(DialogItem(dialog, id)), id == kOwnerBlock) << id;
        EXPECT_EQ(ItemText(dialog, kOwnerBlock), "Owner:\n\rRose Tree\n\rrose@far.example");
        TestKey(DialogItem(dialog, kSubjectEdit), kKeyReturn);
        EXPECT_EQ(TopModal(), dialog) << "OK is disabled, also for the keyboard";
    });
}

TEST_F(InternetEvents, WithdrawnEventsNoSelectionAndAnOutboxThatIsNoneAreRefused)
{
    AddEvent("party", {{"ann"}}, kEventWithdrawn, kStatusWithdrawal);
    Add({.title = "tea"});
    Show();
    ScopedAnswers answers;
    Command(kCommandInternetEvents);
    EXPECT_EQ(answers.beeps, 1) << "no note selected";
    Select("party");
    Command(kCommandInternetEvents);
    EXPECT_EQ(answers.beeps, 2) << "withdrawn";
    EXPECT_THAT(answers.texts, IsEmpty());
    const std::string notes = test::ReadAll(path);
    test::WriteAll(OutboxPath(), notes);
    Select("tea");
    Command(kCommandInternetEvents);
    EXPECT_THAT(answers.texts, ElementsAre(testing::HasSubstr(OutboxPath())));
    EXPECT_EQ(test::ReadAll(OutboxPath()), notes);
    EXPECT_EQ(StoredNote("tea").locked, 0);
    EXPECT_TRUE(IsRefreshEnabled());
}

TEST_F(InternetEvents, TheNoteIsHeldAgainstOtherCopiesForTheWholeDialogEvenWhileContactsAreEdited)
{
    AddContacts({{"ann", "ann@x.example"}});
    const auto address = AddEvent("party", {{"bob"}});
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        TableFile other(path, "");
        EXPECT_EQ(other.LockRecord(address), 0) << "no second copy works on its people";
        WhenModal([&](WindowHandle book) {
            static_cast<EBookDialog*>(MarlinWnd::FromHandle(book))->GetList().SelectItem(0);
            WhenModal([](WindowHandle record) { TestPushItem(record, kIdOk); });
            TestPushItem(book, e_book_ids::kEditButton);
            EXPECT_FALSE(IsRefreshEnabled()) << "right after the contact was let go";
            TestPushItem(book, kIdOk);
        });
        TestPushItem(dialog, kEBookButton);
        Invite(dialog, 0);
        EXPECT_FALSE(IsRefreshEnabled());
    });
    EXPECT_TRUE(IsRefreshEnabled());
}

TEST_F(InternetEvents, AFullDiskIsToldAndNobodyWhoWasInvitedIsLost)
{
    AddContacts({{"zoe", "zoe@x.example"}});
    AddEvent("party", {{"ann", kSendAccepted}}, 2, kStatusChange);
    Show();
    ScopedAnswers answers;
    test::FailingFileSystem disk;
    const ScopedFileSystem full(disk);
    InEvents("party", [&](WindowHandle dialog) {
        Invite(dialog, 0);
        disk.failAt = disk.changes + 1;
        disk.andAllBehind = true;
        TestPushItem(dialog, kIdOk);
    });
    disk.failAt = 0;
    EXPECT_THAT(answers.texts, testing::Contains(testing::HasSubstr("Not all participants could be written")));
    EXPECT_THAT(People("party"), ElementsAre("ann:3"));
}

TEST_F(InternetEvents, HostileTextsAreShownInTheirRowAndKeepTheirBytes)
{
    Change(AddEvent("party", {{"line\nbreak", kSendAccepted}, {"caf\xe9", kSendNoReply}}),
           [](NoteRecord& note) { StoreText(note.subject, "f\xeate"); });
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("caf\u00e9:2", "line break:3"));
        for (int i = 0; i < 2; ++i) {
            TestPickRow(dialog, kParticipantList, 0);
            TestPushItem(dialog, kRemoveButton);
        }
        EXPECT_THAT(Rows(dialog), ElementsAre("caf\u00e9:8", "line break:8"));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(People("party"), ElementsAre("caf\xe9:8", "line\nbreak:8"));
    EXPECT_EQ(FieldText(StoredNote("party").subject), "f\xeate");
    for (const char* broken : {"", "a@x", "a@x\nAnn", "a@x\nAnn\nmany"})
        EXPECT_EQ(ItemStatus(broken), 0) << broken;
}

}  // namespace
}  // namespace jotlet
