#include "notes/model/alarms.h"

#include "note_fixture.h"

namespace jotlet::test {
namespace {

class AlarmsTest : public NoteTest {
protected:
    RecordAddress AddAlarm(const std::string& title, const DateValue& date, const TimeValue& time,
                           std::uint8_t state = kAlarmSet)
    {
        NoteRecord note = NewNote(title);
        note.alarmState = state;
        note.alarmDate = date;
        note.alarmTime = time;
        return Add(note);
    }
    void SetTime(int hour, int minute)
    {
        clock.Set({.year = 2007, .month = 3, .day = 14, .hour = hour, .minute = minute});
    }
    void SetDate(int year, int month, int day)
    {
        clock.Set({.year = year, .month = month, .day = day, .hour = 10, .minute = 0});
    }
    // The title of the due alarm, which is then marked as fired; "-" when none is due.
    std::string Fire()
    {
        std::optional<DueAlarm> due = FindDueAlarm(*table, clock);
        if (!due)
            return "-";
        EXPECT_FALSE(IsRefreshEnabled());
        EXPECT_EQ(Read(due->address).locked, 1);
        EXPECT_EQ(MarkAlarmFired(*table, *due), 1);
        EXPECT_TRUE(IsRefreshEnabled());
        const NoteRecord after = Read(due->address);
        EXPECT_EQ(after.alarmState, kAlarmFired);
        EXPECT_EQ(after.locked, 0);
        return Text(after.title);
    }
    // Whether an alarm of that date is due at 10:00 of the clock's day.
    bool IsDue(const DateValue& date) const
    {
        NoteRecord note = NewNote("x");
        note.alarmDate = date;
        note.alarmTime = TimeValue{10, 0, 0, kBeforeNoon};
        DateValue today;
        Today(today, clock);
        TimeValue now;
        Now(now, 5, clock);
        return IsAlarmDue(note, today, now);
    }

    static constexpr DateValue kToday = {14, 3, 2007};
    static constexpr TimeValue kTen = {10, 0, 0, kBeforeNoon};
};

TEST_F(AlarmsTest, AnAlarmIsDueFromItsFiveMinutesOn)
{
    AddAlarm("ten", kToday, kTen);
    SetTime(9, 59);
    EXPECT_EQ(Fire(), "-");
    SetTime(10, 4);
    EXPECT_EQ(Fire(), "ten");
    EXPECT_EQ(Fire(), "-");  // once
}

TEST_F(AlarmsTest, TheEarliestDateFiresFirstOneACheck)
{
    AddAlarm("today", kToday, kTen);
    AddAlarm("long past", {1, 1, 2001}, {11, 55, 0, kAfterNoon});
    AddAlarm("tomorrow", {15, 3, 2007}, kTen);
    AddAlarm("none", {1, 1, 2000}, kTen, kAlarmNone);
    AddAlarm("spent", {1, 1, 2000}, kTen, kAlarmFired);
    EXPECT_EQ(Fire(), "long past");
    EXPECT_EQ(Fire(), "today");
    EXPECT_EQ(Fire(), "-");
}

TEST_F(AlarmsTest, ANoteThatSomebodyHoldsIsPassedOverAndComesLater)
{
    const RecordAddress held = AddAlarm("held", {1, 1, 2001}, kTen);
    AddAlarm("free", kToday, kTen);
    TableFile other(path, "");
    ASSERT_EQ(other.LockRecord(held), 1);
    ResumeRefresh();
    EXPECT_EQ(Fire(), "free");
    EXPECT_EQ(Fire(), "-");
    EXPECT_EQ(other.UnlockRecord(held), 1);
    EXPECT_EQ(Fire(), "held");
}

TEST_F(AlarmsTest, TwoCopiesFireEachAlarmOnce)
{
    for (int i = 0; i < 10; ++i)
        AddAlarm("due", kToday, kTen);
    TableFile other(path, "");
    int fired = 0;
    for (int tick = 0; tick < 10; ++tick) {
        std::optional<DueAlarm> first = FindDueAlarm(*table, clock);
        std::optional<DueAlarm> second = FindDueAlarm(other, clock);
        ASSERT_FALSE(first && second && first->address == second->address);
        for (auto [file, due] : {std::pair{table.get(), &first}, std::pair{&other, &second}}) {
            if (*due) {
                EXPECT_EQ(MarkAlarmFired(*file, **due), 1);
                ++fired;
            }
        }
    }
    EXPECT_EQ(fired, 10);
}

TEST_F(AlarmsTest, ConfidentialNotesRingForTheOwnerAlone)
{
    NoteRecord note = NewNote("secret");
    note.confidential = 1;
    note.alarmState = kAlarmSet;
    note.alarmDate = kToday;
    note.alarmTime = kTen;
    Add(note);
    SetPasswords("o", "a", "r");
    Open("a");
    EXPECT_EQ(Fire(), "-");
    Open("o");
    EXPECT_EQ(Fire(), "secret");
}

TEST_F(AlarmsTest, OutsideTheCalendarDaysAreMinusOne)
{
    EXPECT_TRUE(IsDue({14, 3, 2007}));
    EXPECT_FALSE(IsDue({15, 3, 2007}));
    EXPECT_TRUE(IsDue({1, 1, 1999}));
    EXPECT_TRUE(IsDue({31, 2, 2007}));

    SetDate(2026, 5, 1);  // the clock is past the calendar
    EXPECT_FALSE(IsDue({1, 1, 2007}));
    EXPECT_TRUE(IsDue({1, 6, 2026}));  // as good as today: the time decides
}

TEST_F(AlarmsTest, WithALongerCalendarTodaysAlarmsWorkAsExpected)
{
    ASSERT_TRUE(SetCalendarLastYear(2099));
    SetDate(2026, 5, 1);
    EXPECT_TRUE(IsDue({1, 1, 2007}));
    EXPECT_TRUE(IsDue({1, 5, 2026}));
    EXPECT_FALSE(IsDue({2, 5, 2026}));
    EXPECT_FALSE(IsDue({1, 1, 2099}));
}

TEST_F(AlarmsTest, AFileThatIsNotOpenHasNone)
{
    AddAlarm("due", kToday, kTen);
    table->Close();
    EXPECT_FALSE(FindDueAlarm(*table, clock));
    TableFile missing(folder.File("missing.jot"), "");
    EXPECT_FALSE(FindDueAlarm(missing, clock));
}

}  // namespace
}  // namespace jotlet::test
