// Commands against a second process that works on the same file: what it locked, deleted, hid or changed between the
// selection and the command.

#include "notes/note_command_ids.h"
#include "notes_fixture.h"
#include "support/forked_process.h"
#include "toolkit/drag_commands.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kBeingEdited = "Program can't edit this entry. It is being edited by another user. Try again.";
const DateValue kOtherDay{9, 9, 2009};

// Every command on a selected note; the drops as the calendar and the bin send them.
enum class Act { Edit, Delete, DropOnBin, Cut, Copy, MoveToDay, CopyToDay };

std::ostream& operator<<(std::ostream& out, Act act)
{
    constexpr const char* kNames[] = {"Edit", "Delete", "DropOnBin", "Cut", "Copy", "MoveToDay", "CopyToDay"};
    return out << kNames[static_cast<int>(act)];
}

class OtherUser : public NotesFixture, public testing::WithParamInterface<Act> {
protected:
    // The other user's process, with the Owner's password; it does what it is told and says "done".
    static int Work(test::Line& line, const std::string& path, const std::string& password, RecordAddress address)
    {
        TableFile table(path, password);
        line.Say("ready");
        for (std::string told = line.Hear(); !told.empty(); told = line.Hear()) {
            NoteRecord note;
            int done = 1;
            if (told == "lock")
                done = table.LockRecord(address);
            else if (told == "unlock")
                done = table.UnlockRecord(address);
            else if (told == "delete")
                done = table.DeleteRecord(address);
            else if (table.ReadRecord(BytesOf(note), address) == 1) {
                if (told == "hide")
                    note.confidential = 1;
                else
                    StoreText(note.text, told);
                done = table.WriteRecord(BytesOf(note), address);
            }
            line.Say(done == 1 ? "done" : "failed");
        }
        return 0;
    }
    void Begin(const std::string& password)
    {
        address = Add({.title = "milk", .text = "old", .date = {1, 2, 2003}});
        std::string current;
        ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
        ownerPassword = "boss";
        other = std::make_unique<test::ForkedProcess>(
            [this](test::Line& line) { return Work(line, path, "boss", address); });
        ASSERT_EQ(other->Talk().Hear(), "ready");
        Show(password);
        Select("milk");
    }
    void Tell(const std::string& what)
    {
        other->Talk().Say(what);
        ASSERT_EQ(other->Talk().Hear(), "done") << what;
    }
    void Do(Act act)
    {
        static constexpr int kCommands[] = {kCommandEditNote, kCommandDeleteNote, 0, kCommandCut, kCommandCopy};
        if (act == Act::Edit) {
            WhenModal([](WindowHandle editor) {
                TestType(DialogItem(editor, 103), "my ");
                TestPushItem(editor, kIdOk);
            });
        }
        DateValue day = kOtherDay;
        const auto dropped = reinterpret_cast<MessageParam>(&day);
        if (act == Act::DropOnBin)
            pane->Send(kWmCommand, NotesPane::kBinId, kBinDropped);
        else if (act == Act::MoveToDay)
            pane->Send(kWmCommand, MakeParam(NotesPane::kCalendarId, kDragMoveDrop), dropped);
        else if (act == Act::CopyToDay)
            pane->Send(kWmCommand, MakeParam(NotesPane::kCalendarId, kDragCopyDrop), dropped);
        else
            Command(kCommands[static_cast<int>(act)]);
        ServeEvents();
    }
    static bool Says(Act act) { return act != Act::Cut && act != Act::Copy; }
    bool OthersCanTakeIt()
    {
        TableFile table(path, "boss");
        const bool taken = table.LockRecord(address) == 1;
        table.UnlockRecord(address);
        return taken;
    }

    RecordAddress address = 0;
    std::unique_ptr<test::ForkedProcess> other;
};

TEST_P(OtherUser, WhatTheOtherHoldsStaysAsItIs)
{
    Begin("boss");
    Tell("lock");
    {
        ScopedAnswers answers({Answer::Yes});
        Do(GetParam());
        EXPECT_EQ(answers.texts,
                  Says(GetParam()) ? std::vector<std::string>{kBeingEdited} : std::vector<std::string>());
    }
    ASSERT_EQ(Stored().size(), 1u);
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{1, 2, 2003}));
    EXPECT_EQ(StoredNote("milk").locked, 1) << "the other's lock";
    EXPECT_TRUE(BinSlot().IsEmpty());
    EXPECT_TRUE(NoteClipboard().IsEmpty());
    EXPECT_TRUE(IsRefreshEnabled());
    Tell("unlock");
}

TEST_P(OtherUser, WhatTheOtherDeletedIsNotBroughtBack)
{
    Begin("boss");
    Tell("delete");
    ScopedAnswers answers({Answer::Yes});
    Do(GetParam());
    EXPECT_EQ(answers.texts, Says(GetParam()) ? std::vector<std::string>{kBeingEdited} : std::vector<std::string>());
    EXPECT_THAT(Stored(), IsEmpty());
    EXPECT_TRUE(BinSlot().IsEmpty());
    EXPECT_TRUE(NoteClipboard().IsEmpty());
    pane->GetList().RefreshNow();
    EXPECT_THAT(Titles(), IsEmpty());
}

TEST_P(OtherUser, WhatTheOtherHidLeavesTheBoardUnread)
{
    Begin("help");
    Tell("hide");
    ScopedAnswers answers({Answer::Yes, Answer::Yes});
    const bool drop = GetParam() == Act::MoveToDay || GetParam() == Act::CopyToDay;
    if (GetParam() == Act::Edit)
        Command(kCommandEditNote);
    else
        Do(GetParam());
    // Delete asks before it reads; the drops on a day move what they cannot show.
    EXPECT_EQ(answers.texts.size(), GetParam() == Act::Delete ? 1u : 0u);
    EXPECT_EQ(FieldText(StoredNote("milk").text), "old");
    EXPECT_EQ(Stored().size(), GetParam() == Act::CopyToDay ? 2u : 1u);
    for (const NoteRecord& note : Stored()) {
        EXPECT_EQ(note.confidential, 1);
        EXPECT_EQ(note.locked, 0);
    }
    EXPECT_EQ(StoredNote("milk").date.Get(), GetParam() == Act::MoveToDay ? kOtherDay : (DateValue{1, 2, 2003}));
    EXPECT_TRUE(BinSlot().IsEmpty());
    EXPECT_TRUE(NoteClipboard().IsEmpty());
    EXPECT_TRUE(OthersCanTakeIt());
    if (!drop) {
        EXPECT_THAT(Titles(), IsEmpty());
    }
}

TEST_P(OtherUser, WhatTheOtherChangedIsReadAnewUnderTheLock)
{
    Begin("boss");
    Tell("their text");
    ScopedAnswers answers({Answer::Yes});
    Do(GetParam());
    NoteRecord kept;
    switch (GetParam()) {
        case Act::Edit:
            EXPECT_EQ(FieldText(StoredNote("milk").text), "my their text");
            break;
        case Act::Delete:
        case Act::DropOnBin:
        case Act::Cut:
            EXPECT_THAT(Stored(), IsEmpty());
            ASSERT_TRUE(RestoreDeletedNote(kept));
            EXPECT_EQ(FieldText(kept.text), "their text");
            break;
        case Act::Copy:
            ASSERT_EQ(NoteClipboard().Fetch(BytesOf(kept)), 1);
            EXPECT_EQ(FieldText(kept.text), "their text");
            break;
        case Act::MoveToDay:
        case Act::CopyToDay:
            for (const NoteRecord& note : Stored())
                EXPECT_EQ(FieldText(note.text), "their text");
            EXPECT_EQ(Stored().back().date.Get(), kOtherDay);
            break;
    }
    for (const NoteRecord& note : Stored())
        EXPECT_EQ(note.locked, 0);
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, OtherUser,
                         testing::Values(Act::Edit, Act::Delete, Act::DropOnBin, Act::Cut, Act::Copy, Act::MoveToDay,
                                         Act::CopyToDay),
                         testing::PrintToStringParamName());

using Refreshing = OtherUser;

TEST_F(Refreshing, AChangeOfAnotherProcessShowsAtTheTickAndNothingIsSelectedThen)
{
    Begin("boss");
    ASSERT_EQ(pane->GetList().GetSelected(), 0);
    Add({.title = "apples"});
    Tell("their text");
    pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
    ServeEvents();
    EXPECT_THAT(Titles(), ElementsAre("apples", "milk"));
    EXPECT_EQ(pane->GetList().GetSelected(), -1);
    ScopedAnswers answers({Answer::Yes});
    Command(kCommandDeleteNote);
    EXPECT_EQ(Stored().size(), 2u) << "Delete does nothing until something is selected again";
    Tell("delete");
    pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
    EXPECT_THAT(Titles(), ElementsAre("apples"));
}

TEST_F(Refreshing, WhileANoteIsHeldNothingReloadsAndAfterwardsEverythingIsThere)
{
    Add({.title = "theirs"});
    Begin("boss");
    int seenWhileOpen = 0;
    WhenModal([&](WindowHandle editor) {
        Add({.title = "apples"});
        pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
        ServeEvents();
        seenWhileOpen = pane->GetList().GetCount();
        other->Talk().Say("lock");
        EXPECT_EQ(other->Talk().Hear(), "failed") << "the note that the editor holds";
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandEditNote);
    EXPECT_EQ(seenWhileOpen, 2);
    EXPECT_THAT(Titles(), ElementsAre("apples", "milk", "theirs"));
    EXPECT_EQ(pane->SelectedId(), StoredNote("milk").uniqueId.Get());
    Tell("lock");
}

}  // namespace
}  // namespace jotlet
