#include "platform/base/calendar.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

namespace jotlet {

namespace {

constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kLow = std::numeric_limits<int>::min();

// Date and time settings are process-wide; each test starts from the same ones.
class CalendarTest : public testing::Test {
protected:
    void SetUp() override { Restore(); }
    void TearDown() override { Restore(); }

    static void Restore()
    {
        SetCalendarLastYear(kCalendarDefaultLastYear);
        SetClockFormat(ClockFormat::Hours24);
    }
};

std::string Time(int hour, int minute, int halfDay)
{
    std::string text;
    const int length = FormatTime(text, hour, minute, halfDay);
    EXPECT_EQ(length, static_cast<int>(text.size()));
    return text;
}

std::string ShortTime(int hour, int minute, int halfDay)
{
    std::string text;
    const int length = FormatTimeShort(text, hour, minute, halfDay);
    EXPECT_EQ(length, static_cast<int>(text.size()));
    return text;
}

// A date as {year, month, day}, stepped; the zero date when the step fails. A failed step must change nothing.
using Ymd = std::array<int, 3>;
Ymd Step(bool (*step)(int&, int&, int&), Ymd date)
{
    const Ymd before = date;
    if (step(date[0], date[1], date[2]))
        return date;
    EXPECT_EQ(date, before);
    return {0, 0, 0};
}

int CompareDateValues(const DateValue& a, const DateValue& b)
{
    // One byte off any alignment, as fields of a record are.
    std::array<std::byte, 25> fields{};
    std::memcpy(fields.data() + 1, &a, sizeof a);
    std::memcpy(fields.data() + 13, &b, sizeof b);
    return CompareDates(fields.data() + 1, fields.data() + 13, sizeof a);
}

int CompareText(const char* a, const char* b, std::size_t size)
{
    return CompareTitles(reinterpret_cast<const std::byte*>(a), reinterpret_cast<const std::byte*>(b), size);
}

TEST_F(CalendarTest, MonthsHaveTheirLengthInAnyYear)
{
    EXPECT_EQ(DaysInMonth(2000, 2), 29);
    EXPECT_EQ(DaysInMonth(2100, 2), 28);
    EXPECT_EQ(DaysInMonth(2004, 2), 29);
    EXPECT_EQ(DaysInMonth(2005, 2), 28);
    EXPECT_EQ(DaysInMonth(2005, 9), 30);
    EXPECT_EQ(DaysInMonth(2005, 13), -1);
    EXPECT_EQ(DaysInMonth(2005, 0), -1);
    EXPECT_TRUE(IsCommonYear(1900));
    EXPECT_FALSE(IsCommonYear(1600));
    EXPECT_TRUE(IsValidDate(29, 2, 1996));
    EXPECT_FALSE(IsValidDate(29, 2, 1997));
    EXPECT_FALSE(IsValidDate(31, 4, 2001));
    EXPECT_FALSE(IsValidDate(0, 4, 2001));
}

TEST_F(CalendarTest, DayNumbersCountFrom1January2000AndExistOnlyInTheCalendar)
{
    EXPECT_EQ(DayNumber(2000, 1, 1), 0);
    EXPECT_EQ(DayNumber(2000, 3, 1), 60);
    EXPECT_EQ(DayNumber(2020, 12, 31), 7670);
    EXPECT_EQ(DayNumberOf(1, 3, 2000), 60);
    EXPECT_EQ(DayNumber(1999, 12, 31), -1);
    EXPECT_EQ(DayNumber(2021, 1, 1), -1);
    EXPECT_EQ(DayNumber(2001, 2, 29), -1);
    EXPECT_EQ(DayNumber(2001, 13, 1), -1);
    EXPECT_EQ(DayNumber(kHuge, kHuge, kHuge), -1);
    EXPECT_EQ(DayNumber(kLow, kLow, kLow), -1);
}

TEST_F(CalendarTest, EveryDayOfTheLongestCalendarFollowsTheOneBefore)
{
    ASSERT_TRUE(SetCalendarLastYear(2099));
    int year = 2000, month = 1, day = 1, number = 0, weekday = 6;
    ASSERT_EQ(DayOfWeek(2000, 1, 1), 6);
    while (NextDay(year, month, day)) {
        ASSERT_EQ(DayNumber(year, month, day), ++number);
        ASSERT_EQ(DayOfWeek(year, month, day), weekday = (weekday + 1) % 7);
    }
    EXPECT_EQ((Ymd{year, month, day}), (Ymd{2099, 12, 31}));
}

TEST_F(CalendarTest, ALaterLastYearOpensTheCalendarAndOthersAreRefused)
{
    EXPECT_TRUE(SetCalendarLastYear(2030));
    EXPECT_EQ(DayNumber(2021, 1, 1), 7671);
    EXPECT_EQ(DayNumber(2031, 1, 1), -1);
    EXPECT_FALSE(SetCalendarLastYear(2019));
    EXPECT_FALSE(SetCalendarLastYear(2100));
    EXPECT_EQ(CalendarLastYear(), 2030);
}

TEST_F(CalendarTest, WeekdaysHaveNamesAndImpossibleDatesHaveNone)
{
    std::string name = "kept";
    EXPECT_EQ(DayOfWeek(2001, 2, 29, &name), -1);
    EXPECT_EQ(name, "kept");
    EXPECT_EQ(DayOfWeek(2005, 12, 28, &name), 3);
    EXPECT_EQ(name, "Wednesday");
    EXPECT_EQ(DayOfWeek(1969, 7, 20, &name), 0);
    EXPECT_EQ(name, "Sunday");
    EXPECT_EQ(DayOfWeek(1600, 2, 29), 2);
    EXPECT_EQ(DayOfWeek(kHuge, 1, 1), DayOfWeek(kHuge % 400 + 2000, 1, 1));
    EXPECT_EQ(DayOfWeek(kLow, 1, 1), DayOfWeek(kLow % 400 + 2000, 1, 1));
}

TEST_F(CalendarTest, StepsCrossMonthsAndStopAtTheEndsOfTheCalendar)
{
    constexpr Ymd kFails = {0, 0, 0};
    EXPECT_EQ(Step(NextDay, {2000, 2, 28}), (Ymd{2000, 2, 29}));
    EXPECT_EQ(Step(NextDay, {2000, 2, 29}), (Ymd{2000, 3, 1}));
    EXPECT_EQ(Step(NextDay, {2001, 12, 31}), (Ymd{2002, 1, 1}));
    EXPECT_EQ(Step(NextDay, {1999, 12, 31}), (Ymd{2000, 1, 1}));
    EXPECT_EQ(Step(NextDay, {2020, 12, 31}), kFails);
    EXPECT_EQ(Step(NextDay, {kHuge, 12, kHuge}), kFails);

    EXPECT_EQ(Step(NextMonth, {2000, 1, 31}), (Ymd{2000, 2, 29}));
    EXPECT_EQ(Step(NextMonth, {2001, 1, 31}), (Ymd{2001, 2, 28}));
    EXPECT_EQ(Step(NextMonth, {2001, 12, 5}), (Ymd{2002, 1, 5}));
    EXPECT_EQ(Step(NextMonth, {2020, 12, 1}), kFails);
    EXPECT_EQ(Step(PreviousMonth, {2001, 3, 31}), (Ymd{2001, 2, 28}));
    EXPECT_EQ(Step(PreviousMonth, {2001, 1, 5}), (Ymd{2000, 12, 5}));
    EXPECT_EQ(Step(PreviousMonth, {2000, 1, 31}), kFails);
    EXPECT_EQ(Step(PreviousMonth, {2001, 14, 1}), kFails);
}

TEST_F(CalendarTest, SlotsAndTimesAreInverse)
{
    EXPECT_EQ(TimeSlot(0, 0, 1), 0);
    EXPECT_EQ(TimeSlot(0, 0, 2), 144);
    EXPECT_EQ(TimeSlot(11, 55, 2), 287);
    EXPECT_EQ(TimeSlot(12, 0, 1), 144);
    EXPECT_EQ(TimeSlot(12, 0, 2), 288);
    EXPECT_EQ(TimeSlot(10, 4, 1), TimeSlot(10, 1, 1));
    EXPECT_EQ(TimeSlot(3, 56, 1), -1);
    EXPECT_EQ(TimeSlot(13, 0, 1), -1);
    EXPECT_EQ(TimeSlot(-1, 0, 1), -1);
    for (int slot = 0; slot < kTimeSlotCount; ++slot) {
        TimeValue time{.hour = 0, .minute = 0, .second = 17, .halfDay = 0};
        ASSERT_TRUE(TimeFromSlot(slot, time));
        ASSERT_EQ(TimeSlot(time), slot);
        ASSERT_EQ(time.second, 17);
        ASSERT_LT(time.hour, 12);
    }
    TimeValue time;
    EXPECT_FALSE(TimeFromSlot(288, time));
    EXPECT_FALSE(TimeFromSlot(-1, time));
}

TEST_F(CalendarTest, NowLowersTheMinuteToTheStep)
{
    TimeValue time;
    Now(time, 5, ManualClock({2005, 12, 31, 10, 58, 31}));
    EXPECT_EQ(time, (TimeValue{10, 55, 31, kBeforeNoon}));
    Now(time, 5, ManualClock({2005, 12, 31, 23, 2, 0}));
    EXPECT_EQ(time, (TimeValue{11, 0, 0, kAfterNoon}));
    Now(time, 0, ManualClock({2005, 12, 31, 12, 58, 0}));
    EXPECT_EQ(time, (TimeValue{0, 58, 0, kAfterNoon}));
    DateValue date;
    Today(date, ManualClock({2031, 2, 3, 0, 0, 0}));  // outside the calendar it is given all the same
    EXPECT_EQ(date, (DateValue{3, 2, 2031}));
}

TEST_F(CalendarTest, TimesOn24HourClocks)
{
    EXPECT_EQ(Time(0, 5, 1), "00:05");
    EXPECT_EQ(Time(1, 40, 2), "13:40");
    EXPECT_EQ(Time(0, 0, 2), "12:00");
    EXPECT_EQ(ShortTime(9, 5, 1), "09:05");
}

TEST_F(CalendarTest, TimesOn12HourClocks)
{
    SetClockFormat(ClockFormat::Hours12);
    EXPECT_EQ(Time(0, 0, 1), "00:00 am");
    EXPECT_EQ(Time(0, 5, 1), "00:05 am");
    EXPECT_EQ(Time(0, 5, 2), "12:05 pm");
    EXPECT_EQ(Time(0, 0, 2), "12:00 pm");
    EXPECT_EQ(Time(9, 30, 2), "09:30 pm");
    EXPECT_EQ(Time(10, 5, 1), "10:05 am");
    EXPECT_EQ(ShortTime(9, 5, 1), "09:05a");
    EXPECT_EQ(ShortTime(0, 30, 2), "12:30p");
}

TEST_F(CalendarTest, DamagedTimesStillHaveAText)
{
    for (const ClockFormat format : {ClockFormat::Hours12, ClockFormat::Hours24}) {
        SetClockFormat(format);
        EXPECT_FALSE(Time(kHuge, kLow, 2).empty());
        EXPECT_FALSE(Time(kLow, kHuge, 7).empty());
    }
}

TEST_F(CalendarTest, TheClockDecidesTheOrderOfADate)
{
    std::string text;
    EXPECT_EQ(FormatDateValue(text, {31, 12, 2005}), 10);
    EXPECT_EQ(text, "31/12/2005");
    SetClockFormat(ClockFormat::Hours12);
    FormatDate(text, 31, 12, 2005);
    EXPECT_EQ(text, "12/31/2005");
    FormatDate(text, 1, 2, 2005);
    EXPECT_EQ(text, "2/1/2005");
}

TEST_F(CalendarTest, DatesOutsideTheCalendarComeFirstAndAreEqual)
{
    EXPECT_LT(CompareDateValues({31, 12, 2004}, {1, 1, 2005}), 0);
    EXPECT_GT(CompareDateValues({1, 2, 2005}, {31, 1, 2005}), 0);
    EXPECT_EQ(CompareDateValues({1, 2, 2005}, {1, 2, 2005}), 0);
    EXPECT_EQ(CompareDateValues({1, 1, 1990}, {30, 2, 2005}), 0);
    EXPECT_LT(CompareDateValues({1, 1, 2021}, {1, 1, 2000}), 0);
}

TEST_F(CalendarTest, TitlesCompareWithoutCaseAsUnsignedBytesWithinTheirSize)
{
    EXPECT_EQ(CompareText("Milk", "mILK", 150), 0);
    EXPECT_LT(CompareText("Milk", "milks", 150), 0);
    EXPECT_EQ(CompareText("milk and bread", "MILK and tea", 5), 0);
    EXPECT_LT(CompareText("z", "\xC3\xA4", 150), 0);         // bytes above 127 are above the letters
    EXPECT_NE(CompareText("\xC3\x84", "\xC3\xA4", 150), 0);  // and are not folded
    EXPECT_LT(CompareText("_", "A", 150), 0);                // "_" lies below the small letters
    EXPECT_EQ(CompareText("", "", 150), 0);
}

}  // namespace

}  // namespace jotlet
