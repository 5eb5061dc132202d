// What the pane's commands do with a note that is a group event, seen in the note file and in the outbox file.

#include "net_fixture.h"
#include "notes/find_dialog.h"
#include "resources/command_ids.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kAskNotify =
    "You have made changes to a group event. Would you like to notify the participants and resource managers of these "
    "changes ?";
constexpr const char* kAskDelete = "Do you want to delete this Jotlet text ?";

class EventCommands : public NetFixture {
protected:
    // An event that was announced: ann has accepted, bob waits, cid has been told that he is out.
    void ShowAnnounced()
    {
        AddEvent("other", {{"zoe", kSendAccepted}}, 2, kStatusChange);
        AddEvent("party", {{"ann", kSendAccepted}, {"bob", kSendWaiting}, {"cid", kSendCancelled}}, 2, kStatusChange);
        Show();
        Select("party");
        event = StoredNote("party").uniqueId;
    }
    static void TypeNote()
    {
        WhenModal([](WindowHandle editor) {
            FocusItem(editor, 103);
            TestType(DialogItem(editor, 103), "new ");
            TestPushItem(editor, kIdOk);
        });
    }
    void DropOnBin()
    {
        const Rect cell = pane->GetList().GetItemRect(pane->GetList().GetSelected()).value();
        const Rect bin = pane->GetBin().GetClientArea();
        const Point to =
            ScreenToClient(Grid(), ClientToScreen(pane->GetBin().window, {bin.Width() / 2 - 20, bin.bottom - 5}));
        const Point from = ScreenToClient(Grid(), {cell.left + 20, cell.top + 20});
        TestPress(Grid(), from);
        TestMove(Grid(), {from.x + 3, from.y + 3}, true);
        TestMove(Grid(), to, true);
        TestRelease(Grid(), to);
        ServeEvents();
    }
    void ExpectFrozen()
    {
        const NoteRecord note = StoredNote("party");
        EXPECT_EQ(note.eventState, kEventWithdrawn);
        EXPECT_EQ(note.eventStatus, kStatusWithdrawal);
        EXPECT_EQ(note.locked, 0);
    }
    std::string BinTitle()
    {
        NoteRecord note{};
        return RestoreDeletedNote(note) ? std::string(FieldText(note.title)) : std::string();
    }

    std::uint64_t event = 0;
};

TEST_F(EventCommands, AnEditThatIsAnnouncedQueuesItForEverybodyOfThisEventAlone)
{
    ShowAnnounced();
    ScopedAnswers answers({Answer::No, Answer::Yes});
    WhenModal([](WindowHandle editor) { TestPushItem(editor, kIdCancel); });
    Command(kCommandEditNote);
    EXPECT_THAT(answers.texts, IsEmpty()) << "no question on Cancel";
    TypeNote();
    Command(kCommandEditNote);
    EXPECT_EQ(FieldText(StoredNote("party").text), "new text");
    EXPECT_THAT(People(event), ElementsAre("ann:3", "bob:1", "cid:8"));
    EXPECT_EQ(StoredNote("party").eventState, 2);
    TypeNote();
    Command(kCommandEditNote);
    EXPECT_THAT(answers.texts, ElementsAre(kAskNotify, kAskNotify));
    EXPECT_THAT(People(event), ElementsAre("ann:1", "bob:1", "cid:1"));
    EXPECT_THAT(People("other"), ElementsAre("zoe:3"));
    const NoteRecord note = StoredNote("party");
    EXPECT_EQ(note.eventState, kEventHasRecipients);
    EXPECT_EQ(note.eventStatus, kStatusChange);
    EXPECT_EQ(note.locked, 0);
}

TEST_F(EventCommands, AnEditFromFindAsksAndAnnouncesToo)
{
    ShowAnnounced();
    ScopedAnswers answers({Answer::Yes});
    WhenModal([](WindowHandle window) {
        auto& hits = static_cast<FindDialog*>(MarlinWnd::FromHandle(window))->GetList();
        TestType(DialogItem(window, 103), "party");
        TestPushItem(window, kIdOk);
        ServeEvents();
        TypeNote();
        const Rect cell = hits.GetItemRect(0).value();
        TestDoubleClick(hits.Grid().window, ScreenToClient(hits.Grid().window, {cell.left + 20, cell.top + 20}));
        ServeEvents();
        TestPushItem(window, kIdCancel);
    });
    Command(kCommandFind);
    EXPECT_THAT(answers.texts, ElementsAre(kAskNotify));
    EXPECT_THAT(People(event), ElementsAre("ann:1", "bob:1", "cid:1"));
    EXPECT_EQ(StoredNote("party").eventStatus, kStatusChange);
    EXPECT_EQ(FieldText(StoredNote("party").text), "new text");
}

TEST_F(EventCommands, AnAnnouncedEventThatIsDeletedStaysFrozenUntilTheAgentHasToldEverybody)
{
    ShowAnnounced();
    ScopedAnswers answers({Answer::Yes, Answer::Yes});
    Command(kCommandDeleteNote);
    EXPECT_THAT(answers.texts, ElementsAre(kAskDelete, kAskNotify));
    ExpectFrozen();
    EXPECT_THAT(People(event), ElementsAre("ann:8", "bob:8", "cid:8"));
    EXPECT_THAT(People("other"), ElementsAre("zoe:3"));
    EXPECT_EQ(BinTitle(), "party");

    for (const int command : {kCommandEditNote, kCommandCut, kCommandInternetEvents}) {
        const int before = answers.beeps;
        Select("party");
        Command(command);
        EXPECT_EQ(answers.beeps, before + 1) << command;
    }
    EXPECT_TRUE(NoteClipboard().IsEmpty());
    ExpectFrozen();
    answers.texts.clear();
    answers.answers = {Answer::Yes, Answer::No};
    Select("party");
    Command(kCommandDeleteNote);
    EXPECT_THAT(answers.texts, ElementsAre(kAskDelete, kAskNotify));
    EXPECT_THAT(StoredTitles(), ElementsAre("other"));
    EXPECT_THAT(People(event), IsEmpty());
}

TEST_F(EventCommands, AnEventThatNobodyIsToldOfOrHadHeardOfGoesAtOnceWithItsPeople)
{
    const auto freeSlots = [&] {
        TableHeader header{};
        TableFile(path, "").ReadHeader(header);
        return -header.freeSlots;
    };
    AddEvent("unheard", {{"ann"}, {"bob"}});
    ShowAnnounced();
    ScopedAnswers answers({Answer::Yes, Answer::No, Answer::Yes, Answer::Yes});
    for (const char* title : {"party", "unheard"}) {
        const std::uint64_t id = StoredNote(title).uniqueId;
        const int before = freeSlots();
        Select(title);
        Command(kCommandDeleteNote);
        EXPECT_THAT(People(id), IsEmpty());
        EXPECT_EQ(freeSlots(), before + 1) << "its slot is counted as free";
        EXPECT_EQ(BinTitle(), title);
    }
    EXPECT_THAT(StoredTitles(), ElementsAre("other"));
    EXPECT_THAT(People("other"), ElementsAre("zoe:3"));
    EXPECT_EQ(pane->GetList().GetCount(), 1);
}

TEST_F(EventCommands, TheBinAsksOnlyWhetherToTellThePeople)
{
    ShowAnnounced();
    {
        ScopedAnswers answers({Answer::Yes});
        DropOnBin();
        EXPECT_THAT(answers.texts, ElementsAre(kAskNotify));
        ExpectFrozen();
        EXPECT_THAT(People(event), ElementsAre("ann:8", "bob:8", "cid:8"));
    }
    ScopedAnswers answers({Answer::No});
    Select("party");
    DropOnBin();
    EXPECT_THAT(answers.texts, ElementsAre(kAskNotify));
    EXPECT_THAT(StoredTitles(), ElementsAre("other"));
    EXPECT_THAT(People(event), IsEmpty());
}

}  // namespace
}  // namespace jotlet
