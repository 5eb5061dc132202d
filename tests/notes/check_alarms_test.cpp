// When the due check may show an alarm, and what it leaves behind.

#include "notes/check_alarms.h"

#include "notes/alarm_fired_dialog.h"
#include "notes_fixture.h"
#include "platform/base/clock.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

constexpr int kDescriptionEdit = 103;

class CheckingAlarms : public NotesFixture {
protected:
    CheckingAlarms() { SetCalendarLastYear(kCalendarDefaultLastYear); }

    // A note with a waiting alarm; its text is its title, by which the alarm's window is told.
    void AddAlarm(const std::string& title, const DateValue& date)
    {
        const RecordAddress address = Add({.title = title, .text = title});
        TableFile other(path, "");
        NoteRecord note;
        ASSERT_EQ(other.ReadRecord(BytesOf(note), address), 1);
        note.alarmState = kAlarmSet;
        note.alarmDate = date;
        note.alarmTime = TimeValue{9, 0, 0, kBeforeNoon};
        ASSERT_EQ(other.WriteRecord(BytesOf(note), address), 1);
    }
    // One tick of the timer. The alarm that it shows, if any, goes into `shown` and is ended with `button`.
    int Tick(int button = kIdOk)
    {
        bool answered = false;
        WhenModal([&, button](WindowHandle dialog) {
            answered = true;
            shown.push_back(ItemText(dialog, kDescriptionEdit));
            TestPushItem(dialog, button);
        });
        const int result = CheckNow();
        if (!answered) {
            // The answer must not reach the next dialog: a bare one uses it up.
            MarlinDialog nobody;
            nobody.DoModal(nullptr, alarm_fired_ids::kDialog);
            shown.pop_back();
        }
        return result;
    }
    int CheckNow() { return CheckAlarms(*file, *frame, clock); }

    std::vector<std::string> shown;
    ManualClock clock{LocalTime{.year = 2010, .month = 6, .day = 15, .hour = 12}};
};

TEST_F(CheckingAlarms, OneAlarmATickWhicheverButtonEndsIt)
{
    AddAlarm("second", {2, 1, 2010});
    AddAlarm("first", {1, 1, 2010});
    AddAlarm("future", {16, 6, 2010});
    Show();
    EXPECT_EQ(Tick(kIdOk), 1);
    EXPECT_THAT(shown, ElementsAre("first"));
    EXPECT_EQ(StoredNote("first").alarmState, kAlarmFired);
    EXPECT_EQ(StoredNote("second").alarmState, kAlarmSet);
    EXPECT_EQ(Tick(kIdCancel), 1);
    EXPECT_THAT(shown, ElementsAre("first", "second"));
    EXPECT_EQ(StoredNote("second").alarmState, kAlarmFired);
    EXPECT_EQ(StoredNote("second").locked, 0);
    EXPECT_EQ(Tick(), 1) << "an alarm waits, though none is due";
    EXPECT_EQ(shown.size(), 2u);
    EXPECT_TRUE(IsRefreshEnabled());
}

TEST_F(CheckingAlarms, NothingToDoIsToldAsSuch)
{
    Add({.title = "milk"});
    Show();
    EXPECT_EQ(CheckNow(), 0);
    AddAlarm("due", {1, 1, 2010});
    SuspendRefresh();
    EXPECT_EQ(CheckNow(), 0);
    ResumeRefresh();
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("due"));
}

TEST_F(CheckingAlarms, NoAlarmComesInsideAnother)
{
    AddAlarm("one", {1, 1, 2010});
    AddAlarm("two", {2, 1, 2010});
    Show();
    WhenModal([this](WindowHandle dialog) {
        EXPECT_FALSE(IsRefreshEnabled());
        EXPECT_EQ(CheckNow(), 0);
        // Also when something has turned the refresh on under it.
        ResumeRefresh();
        EXPECT_EQ(CheckNow(), 0);
        EXPECT_EQ(TopModal(), dialog);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(CheckNow(), 1);
    EXPECT_EQ(StoredNote("two").alarmState, kAlarmSet);
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("two"));
}

TEST_F(CheckingAlarms, AnOpenEditorKeepsAlarmsBackUntilItCloses)
{
    AddAlarm("due", {1, 1, 2010});
    Add({.title = "milk"});
    Show();
    for (const int button : {kIdCancel, kIdOk}) {
        Select("milk");
        WhenModal([this, button](WindowHandle editor) {
            EXPECT_EQ(CheckNow(), 0);
            EXPECT_EQ(TopModal(), editor);
            TestPushItem(editor, button);
        });
        Command(kCommandEditNote);
        EXPECT_EQ(StoredNote("due").alarmState, kAlarmSet);
    }
    WhenModal([this](WindowHandle editor) {
        EXPECT_EQ(CheckNow(), 0) << "a new note holds no lock, and is being written all the same";
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandNewNote);
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("due"));
}

TEST_F(CheckingAlarms, AnAlarmComesWhileFindIsOpen)
{
    AddAlarm("due", {1, 1, 2010});
    Show();
    WhenModal([this](WindowHandle find) {
        EXPECT_EQ(Tick(), 1);
        EXPECT_EQ(TopModal(), find);
        TestPushItem(find, kIdCancel);
    });
    Command(kCommandFind);
    EXPECT_THAT(shown, ElementsAre("due"));
}

TEST_F(CheckingAlarms, AnAlarmWhoseWindowGoesWithoutAnAnswerComesAgain)
{
    AddAlarm("due", {1, 1, 2010});
    Show();
    WhenModal([](WindowHandle dialog) { DestroyNativeWindow(dialog); });
    EXPECT_EQ(CheckNow(), 1);
    EXPECT_EQ(StoredNote("due").alarmState, kAlarmSet);
    EXPECT_EQ(StoredNote("due").locked, 0);
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("due"));
}

TEST_F(CheckingAlarms, TheEditorOfAnotherCopyKeepsOnlyItsOwnNotesAlarmBack)
{
    AddAlarm("held", {1, 1, 2010});
    AddAlarm("free", {2, 1, 2010});
    Show();
    TableFile other(path, "");
    RecordQuery query;
    query.PrepareResults();
    query.AddTextTerm(kTitleOffset, kTitleSize, TermKind::Equal, "held", Connective::And);
    ASSERT_EQ(other.RunQuery(query), 1);
    ASSERT_EQ(other.LockRecord(query.Results()[0]), 1);
    ResumeRefresh();  // the switch belongs to the other copy's process
    EXPECT_EQ(Tick(), 1);
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("free"));
    other.UnlockRecord(query.Results()[0]);
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("free", "held"));
}

TEST_F(CheckingAlarms, ANoteMovedToAnotherDayKeepsItsAlarm)
{
    AddAlarm("due", {1, 1, 2010});
    Show();
    Select("due");
    WhenModal([](WindowHandle editor) { TestPushItem(editor, kIdOk); });
    Command(kCommandEditNote);
    EXPECT_EQ(StoredNote("due").date.Get(), pane->GetPaneDate());
    EXPECT_EQ(StoredNote("due").alarmDate.Get(), (DateValue{1, 1, 2010}));
    EXPECT_EQ(Tick(), 1);
    EXPECT_THAT(shown, ElementsAre("due"));
}

}  // namespace
}  // namespace jotlet
