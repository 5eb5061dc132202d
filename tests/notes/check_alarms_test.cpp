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
using namespace alarm_fired_ids;

class CheckingAlarms : public NotesFixture {
protected:
    // A note with a waiting alarm; its text is its title, by which the alarm's window is told.
    void AddAlarm(const std::string& title, const DateValue& date)
    {
        Change(Add({.title = title, .text = title}), [&](NoteRecord& note) {
            note.alarmState = kAlarmSet;
            note.alarmDate = date;
            note.alarmTime = TimeValue{9, 0, 0, kBeforeNoon};
        });
    }
    int CheckNow() { return CheckAlarms(*file, *frame, clock); }
    // One check, whose alarm is ended with `button`. Its text; "" for a check that shows none.
    std::string Tick(int button = kIdOk)
    {
        std::string shown;
        bool isAlarm = true;
        WhenModal([&](WindowHandle dialog) {
            if (isAlarm)
                shown = ItemText(dialog, kDescriptionEdit);
            TestPushItem(dialog, button);
        });
        CheckNow();
        if (shown.empty()) {
            // The answer must not reach the next dialog: a bare one uses it up.
            isAlarm = false;
            MarlinDialog nobody;
            nobody.DoModal(nullptr, alarm_fired_ids::kDialog);
        }
        return shown;
    }

    ManualClock clock{LocalTime{.year = 2010, .month = 6, .day = 15, .hour = 12}};
};

TEST_F(CheckingAlarms, OneAlarmATickWhicheverButtonEndsIt)
{
    AddAlarm("second", {2, 1, 2010});
    AddAlarm("first", {1, 1, 2010});
    AddAlarm("future", {16, 6, 2010});
    Show();
    EXPECT_EQ(Tick(kIdOk), "first");
    EXPECT_EQ(StoredNote("second").alarmState, kAlarmSet);
    EXPECT_EQ(Tick(kIdCancel), "second");
    for (const char* title : {"first", "second"})
        EXPECT_EQ(StoredNote(title).alarmState, kAlarmFired);
    EXPECT_EQ(StoredNote("second").locked, 0);
    EXPECT_EQ(Tick(), "");
    EXPECT_EQ(CheckNow(), 1) << "an alarm waits, though none is due";
    EXPECT_TRUE(IsRefreshEnabled());
    SuspendRefresh();
    EXPECT_EQ(CheckNow(), 0);
}

TEST_F(CheckingAlarms, NoneComesInsideAnotherOrOverAnEditorButOneDoesOverFind)
{
    AddAlarm("one", {1, 1, 2010});
    AddAlarm("two", {2, 1, 2010});
    AddAlarm("three", {3, 1, 2010});
    Add({.title = "milk"});
    Show();
    for (const int command : {kCommandEditNote, kCommandNewNote}) {
        Select("milk");
        WhenModal([this](WindowHandle editor) {
            EXPECT_EQ(CheckNow(), 0);
            EXPECT_EQ(TopModal(), editor);
            TestPushItem(editor, kIdCancel);
        });
        Command(command);
    }
    WhenModal([this](WindowHandle dialog) {
        EXPECT_EQ(CheckNow(), 0);
        ResumeRefresh();  // something has turned it on under the alarm
        EXPECT_EQ(CheckNow(), 0);
        EXPECT_EQ(TopModal(), dialog);
        DestroyNativeWindow(dialog);
    });
    EXPECT_EQ(CheckNow(), 1);
    EXPECT_EQ(StoredNote("one").alarmState, kAlarmSet) << "its window went without an answer";
    EXPECT_EQ(StoredNote("one").locked, 0);
    EXPECT_EQ(Tick(), "one");
    WhenModal([this](WindowHandle find) {
        EXPECT_EQ(Tick(), "two");
        TestPushItem(find, kIdCancel);
    });
    Command(kCommandFind);
    Select("three");
    WhenModal([](WindowHandle editor) { TestPushItem(editor, kIdOk); });
    Command(kCommandEditNote);
    EXPECT_EQ(Tick(), "three") << "a note that went to another day keeps its alarm";
}

}  // namespace
}  // namespace jotlet
