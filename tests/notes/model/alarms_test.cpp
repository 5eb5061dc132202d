// Which alarm is due, by clock and file alone; and who gets it when several copies ask.

#include "notes/model/alarms.h"

#include "note_fixture.h"
#include "store/passwords.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

constexpr LocalTime At(int day, int month, int year, int hour = 12, int minute = 0)
{
    return {.year = year, .month = month, .day = day, .hour = hour, .minute = minute};
}
DateValue DateOf(const LocalTime& m)
{
    return {m.day, m.month, m.year};
}
TimeValue TimeOf(const LocalTime& m)
{
    return {m.hour % 12, m.minute, 0, m.hour < 12 ? kBeforeNoon : kAfterNoon};
}

class AlarmsDue : public NoteTest {
protected:
    RecordAddress AddAlarm(const std::string& title, const LocalTime& moment, std::uint8_t state = kAlarmSet)
    {
        NoteRecord note = NewNote(title);
        note.alarmState = state;
        note.alarmDate = DateOf(moment);
        note.alarmTime = TimeOf(moment);
        return Add(note);
    }
    // Title of the alarm that one check gives and marks as fired, "" for none.
    std::string FireAt(const LocalTime& moment)
    {
        AlarmCheck check = FindDueAlarm(*table, ManualClock(moment));
        if (!check.due)
            return "";
        EXPECT_TRUE(MarkAlarmFired(*check.due));
        return Text(check.due->note.title);
    }
};

TEST(AlarmMoment, IsDueFromItsMomentOnByTheCalendarsReach)
{
    struct Case {
        LocalTime alarm, now;
        bool due;
        int lastYear = kCalendarDefaultLastYear;
    };
    constexpr LocalTime kTen = At(5, 3, 2010, 10), kNoon = At(5, 3, 2010, 12), kMidnight = At(5, 3, 2010, 0);
    for (const Case& c :
         {Case{kTen, At(4, 3, 2010, 23, 59), false}, Case{kTen, At(5, 3, 2010, 9, 59), false}, Case{kTen, kTen, true},
          Case{kTen, At(5, 3, 2010, 22), true}, Case{kTen, At(6, 3, 2010, 0), true},
          Case{kNoon, At(5, 3, 2010, 11, 59), false}, Case{kNoon, kNoon, true},
          Case{kMidnight, At(4, 3, 2010, 23, 59), false}, Case{kMidnight, kMidnight, true},
          // The last day that the calendar knows, of either reach.
          Case{At(31, 12, 2020, 23, 55), At(31, 12, 2020, 23, 54), false},
          Case{At(31, 12, 2020, 23, 55), At(31, 12, 2020, 23, 55), true},
          Case{At(31, 12, 2099, 23, 55), At(31, 12, 2099, 23, 54), false, 2099},
          Case{At(22, 11, 2025), At(22, 11, 2026), true, 2099},
          // A date outside it is due at once; a clock outside it fires no date inside, and others by their time.
          Case{At(1, 1, 2021), kTen, true}, Case{At(31, 12, 1999), kTen, true}, Case{At(31, 2, 2015), kTen, true},
          Case{kTen, At(22, 11, 2026), false}, Case{At(1, 1, 2027, 15), At(22, 11, 2026, 14, 59), false},
          Case{At(1, 1, 2027, 15), At(22, 11, 2026, 15), true}}) {
        SetCalendarLastYear(c.lastYear);
        NoteRecord note{};
        note.alarmDate = DateOf(c.alarm);
        note.alarmTime = TimeOf(c.alarm);
        EXPECT_EQ(IsAlarmDue(note, DateOf(c.now), TimeOf(c.now)), c.due)
            << c.alarm.day << "." << c.alarm.year << " at " << c.now.day << "." << c.now.year << " " << c.now.hour;
    }
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(AlarmsDue, WaitingOnesComeOneACheckTheEarliestDayFirstAndHeldOnesWhenTheyAreFree)
{
    AddAlarm("none", At(1, 1, 2005), kAlarmNone);
    AddAlarm("spent", At(1, 1, 2005), kAlarmFired);
    table->DeleteRecord(AddAlarm("deleted", At(1, 1, 2005)));
    const LocalTime now = At(10, 3, 2010);
    EXPECT_FALSE(FindDueAlarm(*table, ManualClock(now)).anyWaiting);
    AddAlarm("third", At(9, 3, 2010));
    const auto first = AddAlarm("first", At(31, 12, 2009));
    const auto held = AddAlarm("held", At(1, 1, 2010));
    AddAlarm("tomorrow", At(11, 3, 2010));
    AddAlarm("second", At(1, 2, 2010));

    const AlarmCheck unanswered = FindDueAlarm(*table, ManualClock(now));
    ASSERT_TRUE(unanswered.due);
    EXPECT_EQ(Text(unanswered.due->note.title), "first");
    TableFile other(path, "");
    EXPECT_EQ(other.LockRecord(first), 0) << "it is held while it is shown";
    unanswered.due->hold->GiveBack();
    ASSERT_EQ(other.LockRecord(held), 1);
    NoteRecord before = Read(first);
    for (const char* title : {"first", "second", "third", ""})
        EXPECT_EQ(FireAt(now), title);
    other.UnlockRecord(held);
    EXPECT_EQ(FireAt(now), "held");
    const AlarmCheck rest = FindDueAlarm(*table, ManualClock(now));
    EXPECT_TRUE(rest.anyWaiting && !rest.due);
    EXPECT_EQ(FireAt(At(11, 3, 2010)), "tomorrow");
    before.alarmState = kAlarmFired;
    const NoteRecord after = Read(first);
    EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0) << "nothing else has changed";
    table->Close();
    EXPECT_FALSE(FindDueAlarm(*table, ManualClock(now)).anyWaiting);
}

TEST_F(AlarmsDue, AConfidentialOneIsTheOwnersAloneAndAReaderCannotMarkIt)
{
    AddAlarm("open", At(2, 1, 2010));
    NoteRecord secret = Read(AddAlarm("secret", At(1, 1, 2010)));
    secret.confidential = 1;
    table->WriteRecord(BytesOf(secret), kFirstRecordOffset + kNoteRecordSize);
    SetPasswords("boss", "help", "look");
    for (const char* guest : {"help", "look"}) {
        Open(guest);
        AlarmCheck check = FindDueAlarm(*table, ManualClock(At(3, 1, 2010)));
        ASSERT_TRUE(check.due);
        EXPECT_EQ(Text(check.due->note.title), "open");
        EXPECT_TRUE(guest == std::string("help") || MarkAlarmFired(*check.due).state == SaveState::Refused);
    }
    Open("boss");
    EXPECT_EQ(FireAt(At(3, 1, 2010)), "secret");
    EXPECT_EQ(FireAt(At(3, 1, 2010)), "open");
}

// Another copy fires the alarm, or its user moves it to another day, right before our lock.
TEST_F(AlarmsDue, WhatAnotherCopyDidBeforeTheLockCounts)
{
    struct : FailingFileSystem {
        int Lock(int handle, std::int64_t byte, LockMode mode) override
        {
            if (meanwhile)
                std::exchange(meanwhile, nullptr)();
            return FailingFileSystem::Lock(handle, byte, mode);
        }
        std::function<void()> meanwhile;
    } files;
    const auto address = AddAlarm("due", At(1, 1, 2010));
    const NoteRecord waiting = Read(address);
    NoteRecord fired = waiting;
    fired.alarmState = kAlarmFired;
    NoteRecord moved = waiting;
    moved.alarmDate = DateValue{1, 1, 2011};
    TableFile other(path, "");
    for (const auto& [note, due] : {std::pair(waiting, true), {fired, false}, {moved, false}}) {
        ASSERT_EQ(other.WriteRecord(BytesOf(waiting), address), 1);
        files.meanwhile = [&, then = note] { EXPECT_EQ(other.WriteRecord(BytesOf(then), address), 1); };
        const ScopedFileSystem scope(files);
        EXPECT_EQ(FindDueAlarm(*table, ManualClock(At(2, 1, 2010))).due.has_value(), due);
    }
}

}  // namespace
}  // namespace jotlet::test
