// Dragging a note by the mouse, from the board to a day, to the bin, and past them.

#include "net/core/send_record.h"
#include "notes_fixture.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr Keys kCtrl{.control = true};

class DraggingNotes : public NotesFixture {
protected:
    void ShowOnDateTab(const DateValue& day)
    {
        Show();
        TestClick(pane->GetTabs().window, {60, 10});
        ServeEvents();
        DateValue picked = day;
        pane->Send(kWmCommand, NotesPane::kCalendarId, reinterpret_cast<MessageParam>(&picked));
        ServeEvents();
        ASSERT_TRUE(IsMainWindowForeground());
    }
    Point OnScreen(WindowHandle window, Point p) { return ClientToScreen(window, p); }
    Point DayOnScreen(int day)
    {
        const MarlinCalMonth& month = pane->GetCalendar().Grid();
        const DateValue shown = pane->GetCalendar().GetDate();
        Rect cell;
        EXPECT_EQ(month.GetDayRect(shown.year, shown.month, day, cell), 1);
        return OnScreen(month.window, {cell.left + 3, cell.top + 3});
    }
    // Just inside the left edge of the drop area, or `off` pixels further left.
    Point BinOnScreen(int off = 0)
    {
        const Rect client = pane->GetBin().GetClientArea();
        return OnScreen(pane->GetBin().window, {client.Width() / 2 - 25 - off, client.bottom - 5});
    }
    void Drag(int item, Point screen, Keys keys = {})
    {
        const Rect cell = pane->GetList().GetItemRect(item).value();
        const Point from = ScreenToClient(Grid(), {cell.left + 20, cell.top + 20});
        const Point to = ScreenToClient(Grid(), screen);
        TestPress(Grid(), from);
        TestMove(Grid(), {from.x + 3, from.y + 3}, true, keys);
        TestMove(Grid(), to, true, keys);
        TestRelease(Grid(), to, false, keys);
        ServeEvents();
    }
};

TEST_F(DraggingNotes, ADayTakesTheNoteAndTheBoardFollows)
{
    Add({.title = "milk", .text = "two bottles", .date = {3, 3, 2005}});
    Add({.title = "bread", .date = {20, 3, 2005}});
    ShowOnDateTab({3, 3, 2005});
    const auto id = StoredNote("milk").uniqueId.Get();
    Drag(0, DayOnScreen(20));
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{20, 3, 2005}));
    EXPECT_EQ(StoredNote("milk").uniqueId.Get(), id);
    EXPECT_EQ(StoredNote("milk").locked, 0);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{20, 3, 2005}));
    EXPECT_THAT(Titles(), UnorderedElementsAre("milk", "bread"));
    EXPECT_EQ(pane->SelectedId(), id);
}

TEST_F(DraggingNotes, WithControlTheDayGetsACopyThatIsANoteOfItsOwn)
{
    const auto address = Add({.title = "milk", .category = "Calls", .date = {3, 3, 2005}});
    {
        TableFile other(path, "");
        NoteRecord note;
        other.ReadRecord(BytesOf(note), address);
        note.eventState = kEventHasRecipients;
        note.eventStatus = 2;
        other.WriteRecord(BytesOf(note), address);
    }
    ShowOnDateTab({3, 3, 2005});
    Drag(0, DayOnScreen(4), kCtrl);
    const auto notes = Stored();
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0].date.Get(), (DateValue{3, 3, 2005}));
    EXPECT_EQ(notes[1].date.Get(), (DateValue{4, 3, 2005}));
    EXPECT_NE(notes[0].uniqueId.Get(), notes[1].uniqueId.Get());
    EXPECT_EQ(FieldText(notes[1].category), "Calls");
    EXPECT_EQ(notes[1].eventState, kEventNone);
    EXPECT_EQ(notes[1].eventStatus, kStatusNotAnnounced);
    EXPECT_EQ(notes[0].locked, 0);
    EXPECT_EQ(notes[1].locked, 0);
    EXPECT_THAT(Titles(), ElementsAre("milk"));
    EXPECT_EQ(pane->SelectedId(), notes[1].uniqueId.Get());
}

TEST_F(DraggingNotes, OnTheChosenDayAndOffEveryTargetNothingHappens)
{
    Add({.title = "milk", .date = {3, 3, 2005}});
    ShowOnDateTab({3, 3, 2005});
    TableFile reader(path, "");
    const auto stamp = reader.GetChangeStamp();
    ScopedAnswers answers;
    for (const Keys keys : {Keys{}, kCtrl}) {
        Drag(0, DayOnScreen(3), keys);                                                     // chosen already
        Drag(0, OnScreen(pane->GetTabs().window, {200, 10}), keys);                        // no target
        Drag(0, OnScreen(frame->window, {-40, -40}), keys);                                // no window of ours
        Drag(0, OnScreen(Grid(), {5, pane->GetList().GetClientArea().bottom - 5}), keys);  // where it came from
        Drag(0, BinOnScreen(1), keys);                                                     // just beside the bin
    }
    EXPECT_EQ(reader.GetChangeStamp(), stamp);
    EXPECT_EQ(answers.beeps, 0);
    EXPECT_THAT(answers.texts, IsEmpty());
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(DraggingNotes, TheBinDeletesWithoutAQuestionOnBothTabsAndNeverACopy)
{
    Add({.title = "milk"});
    Add({.title = "tea"});
    Show();
    ScopedAnswers answers;
    Drag(0, BinOnScreen(), kCtrl);
    EXPECT_EQ(Stored().size(), 2u);
    Drag(0, BinOnScreen());
    EXPECT_THAT(StoredTitles(), ElementsAre("tea"));
    EXPECT_THAT(Titles(), ElementsAre("tea"));
    EXPECT_THAT(answers.texts, IsEmpty());

    NoteRecord deleted;
    ASSERT_TRUE(RestoreDeletedNote(deleted));
    EXPECT_EQ(FieldText(deleted.title), "milk");
    TestClick(pane->GetBin().window, {50, pane->GetBin().GetClientArea().bottom - 10});
    ServeEvents();
    EXPECT_THAT(StoredTitles(), UnorderedElementsAre("milk", "tea"));
    TestClick(pane->GetBin().window, {50, pane->GetBin().GetClientArea().bottom - 10});
    EXPECT_THAT(answers.texts, ElementsAre("Bin is empty."));
}

TEST_F(DraggingNotes, AReaderIsToldAndALockedNoteStays)
{
    const auto address = Add({.title = "milk", .date = {3, 3, 2005}});
    ShowOnDateTab({3, 3, 2005});
    {
        TableFile other(path, "");
        ASSERT_EQ(other.LockRecord(address), 1);
        ResumeRefresh();
        ScopedAnswers answers;
        Drag(0, DayOnScreen(9));
        Drag(0, DayOnScreen(9), kCtrl);
        Drag(0, BinOnScreen());
        EXPECT_EQ(answers.texts.size(), 3u);
        for (const std::string& text : answers.texts)
            EXPECT_EQ(text, "Program can't edit this entry. It is being edited by another user. Try again.");
        other.UnlockRecord(address);
    }
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    ownerPassword = "boss";
    file->SetPassword("look");
    ScopedAnswers answers;
    Drag(0, DayOnScreen(9));
    Drag(0, DayOnScreen(9), kCtrl);
    Drag(0, BinOnScreen());
    EXPECT_THAT(answers.texts, ElementsAre("Program can't do this. You don't have permission.",
                                           "Program can't do this. You don't have permission.",
                                           "Program can't do this. You don't have permission."));
    ASSERT_EQ(Stored().size(), 1u);
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{3, 3, 2005}));
}

TEST_F(DraggingNotes, WhileAnotherProgramIsInFrontNothingTakesADrop)
{
    Add({.title = "milk", .date = {3, 3, 2005}});
    ShowOnDateTab({3, 3, 2005});
    FrameWindow other;
    other.Create(nullptr, kStyleVisible);
    BringToForeground(other.window);
    ServeEvents();
    ASSERT_FALSE(IsMainWindowForeground());
    Point p = BinOnScreen();
    EXPECT_EQ(pane->GetBin().Send(kWmCommand, 1020, reinterpret_cast<MessageParam>(&p)), 0);
    p = BinOnScreen();
    EXPECT_EQ(pane->GetBin().Send(kWmCommand, 1021, reinterpret_cast<MessageParam>(&p)), 0);
    EXPECT_EQ(Stored().size(), 1u);
}

}  // namespace
}  // namespace jotlet
