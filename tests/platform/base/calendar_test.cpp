#include "platform/base/calendar.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <limits>

namespace jotlet {
namespace {

constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kLow = std::numeric_limits<int>::min();

// Date and time settings are process-wide; each test starts from the same ones.
class CalendarTest : public testing::Test {
protected:
    CalendarTest() { Restore(); }
    ~CalendarTest() override { Restore(); }

    static void Restore()
    {
        SetCalendarLastYear(kCalendarDefaultLastYear);
        SetClockFormat(ClockFormat::Hours24);
    }
};

using Day = std::chrono::year_month_day;

// The date one step on; the zero date when the step fails. A failed step must change nothing.
DateValue Step(bool (*step)(int&, int&, int&), const DateValue& date)
{
    DateValue next = date;
    if (step(next.year, next.month, next.day))
        return next;
    EXPECT_EQ(next, date);
    return {};
}

// Every date from 1990 to 2110, real or not, against the standard library's calendar.
TEST_F(CalendarTest, EveryDateIsThatOfTheStandardCalendar)
{
    using namespace std::chrono;
    const auto value = [](const Day& d) {
        return DateValue{int(unsigned(d.day())), int(unsigned(d.month())), int(d.year())};
    };
    SetCalendarLastYear(2099);
    for (int y = 1990; y <= 2110; ++y) {
        ASSERT_EQ(IsCommonYear(y), !year(y).is_leap());
        for (int m = 0; m <= 13; ++m) {
            for (int d = 0; d <= 32; ++d) {
                const Day date{year{y}, month{unsigned(m)}, day{unsigned(d)}};
                SCOPED_TRACE(testing::Message() << d << '.' << m << '.' << y);
                const bool isInside = date.ok() && y >= 2000 && y <= 2099;
                ASSERT_EQ(IsValidDate(d, m, y), date.ok());
                ASSERT_EQ(DayNumber(y, m, d), isInside ? (sys_days(date) - sys_days(2000y / 1 / 1)).count() : -1);
                ASSERT_EQ(DayOfWeek(y, m, d), date.ok() ? int(weekday(sys_days(date)).c_encoding()) : -1);
                if (!isInside)
                    continue;
                ASSERT_EQ(DayNumberOf({d, m, y}), DayNumberOf(d, m, y));
                const Day tomorrow{sys_days{date} + days{1}};
                ASSERT_EQ(Step(NextDay, {d, m, y}), tomorrow.year() > 2099y ? DateValue{} : value(tomorrow));
                const auto inMonth = [&](year_month ym) {
                    const Day last = ym / std::chrono::last;
                    return ym.year() < 2000y || ym.year() > 2099y ? DateValue{}
                                                                  : value(std::min(ym / date.day(), last));
                };
                ASSERT_EQ(Step(NextMonth, {d, m, y}), inMonth(date.year() / date.month() + months(1)));
                ASSERT_EQ(Step(PreviousMonth, {d, m, y}), inMonth(date.year() / date.month() - months(1)));
            }
            if (m >= 1 && m <= 12) {
                ASSERT_EQ(DaysInMonth(y, m), int(unsigned((year(y) / m / last).day())));
            }
        }
    }
    EXPECT_EQ(DaysInMonth(2005, 13), -1);
    for (const int y : {kHuge, kLow}) {
        EXPECT_EQ(DayNumber(y, y, y), -1);
        EXPECT_EQ(DayOfWeek(y, 1, 1), DayOfWeek(y % 400 + 2000, 1, 1));
        EXPECT_EQ(Step(NextDay, {y, 12, 2004}), y == kLow ? DateValue{} : (DateValue{1, 1, 2005}));
        EXPECT_EQ(Step(PreviousMonth, {1, y, 2001}), DateValue{});
    }
    std::string name = "kept";
    DayOfWeek(2001, 2, 29, &name);
    EXPECT_EQ(name, "kept");
    DayOfWeek(2005, 12, 28, &name);
    EXPECT_EQ(name, "Wednesday");
}

TEST_F(CalendarTest, ALaterLastYearOpensTheCalendarAndOthersAreRefused)
{
    EXPECT_EQ(DayNumber(2021, 1, 1), -1);
    EXPECT_TRUE(SetCalendarLastYear(2030));
    EXPECT_EQ(DayNumber(2021, 1, 1), 7671);
    EXPECT_FALSE(SetCalendarLastYear(2019) || SetCalendarLastYear(2100));
    EXPECT_EQ(CalendarLastYear(), 2030);
}

// Every slot of a day and its texts on both clocks.
TEST_F(CalendarTest, SlotsAndTimesAreInverseAndHaveTheirTexts)
{
    const auto printed = [](const char* form, int hour, int minute) {
        char text[16];
        std::snprintf(text, sizeof text, form, hour, minute);
        return std::string(text);
    };
    std::string text;
    for (int slot = 0; slot < kTimeSlotCount; ++slot) {
        TimeValue time{.hour = 0, .minute = 0, .second = 17, .halfDay = 0};
        ASSERT_TRUE(TimeFromSlot(slot, time));
        const int hour = slot / 12;
        const int minute = slot % 12 * 5;
        ASSERT_EQ(time, (TimeValue{hour % 12, minute, 17, hour < 12 ? kBeforeNoon : kAfterNoon}));
        ASSERT_EQ(TimeSlot(time), slot);
        SetClockFormat(ClockFormat::Hours24);
        ASSERT_EQ(FormatTime(text, time.hour, minute, time.halfDay), 5);
        ASSERT_EQ(text, printed("%02d:%02d", hour, minute));
        SetClockFormat(ClockFormat::Hours12);
        const int shown = hour == 12 ? 12 : hour % 12;
        ASSERT_EQ(FormatTime(text, time.hour, minute, time.halfDay), 8);
        ASSERT_EQ(text, printed(hour < 12 ? "%02d:%02d am" : "%02d:%02d pm", shown, minute));
        ASSERT_EQ(FormatTimeShort(text, time.hour, minute, time.halfDay), 6);
        ASSERT_EQ(text, printed(hour < 12 ? "%02d:%02da" : "%02d:%02dp", shown, minute));
    }
    EXPECT_EQ(TimeSlot(12, 0, kAfterNoon), 288);
    EXPECT_EQ(TimeSlot(10, 4, kBeforeNoon), 120);
    for (const auto& [hour, minute] : {std::pair{3, 56}, {3, -1}, {13, 0}, {-1, 0}})
        EXPECT_EQ(TimeSlot(hour, minute, kBeforeNoon), -1);
    TimeValue time;
    EXPECT_FALSE(TimeFromSlot(288, time) || TimeFromSlot(-1, time));
    FormatTime(text, kHuge, kLow, 2);  // of a damaged record
    EXPECT_EQ(FormatTime(text, kLow, kHuge, 7), static_cast<int>(text.size()));
    FormatDateValue(text, {31, 12, 2005});
    EXPECT_EQ(text, "12/31/2005");
    SetClockFormat(ClockFormat::Hours24);
    EXPECT_EQ(FormatDateValue(text, {31, 12, 2005}), 10);
    EXPECT_EQ(text, "31/12/2005");
}

TEST_F(CalendarTest, NowLowersTheMinuteToTheStep)
{
    const struct {
        LocalTime clock;
        int step;
        TimeValue time;
    } rows[] = {{{2005, 12, 31, 10, 58, 31}, 5, {10, 55, 31, kBeforeNoon}},
                {{2005, 12, 31, 23, 2, 0}, 5, {11, 0, 0, kAfterNoon}},
                {{2005, 12, 31, 12, 58, 0}, 0, {0, 58, 0, kAfterNoon}}};
    for (const auto& row : rows) {
        TimeValue time;
        Now(time, row.step, ManualClock(row.clock));
        EXPECT_EQ(time, row.time);
    }
    DateValue date;
    Today(date, ManualClock({2031, 2, 3, 0, 0, 0}));  // outside the calendar it is given all the same
    EXPECT_EQ(date, (DateValue{3, 2, 2031}));
}

int Sign(int order)
{
    return (order > 0) - (order < 0);
}

TEST_F(CalendarTest, DatesOutsideTheCalendarComeFirstAndAreEqual)
{
    // In this order; those with the same number are equal.
    const std::pair<int, DateValue> dates[] = {{0, {1, 1, 1990}}, {0, {30, 2, 2005}},  {0, {1, 1, 2021}},
                                               {1, {1, 1, 2000}}, {2, {31, 12, 2004}}, {3, {31, 1, 2005}},
                                               {4, {1, 2, 2005}}, {4, {1, 2, 2005}}};
    for (const auto& [aOrder, a] : dates) {
        for (const auto& [bOrder, b] : dates) {
            std::array<std::byte, 25> fields{};  // one byte off any alignment, as fields of a record are
            std::memcpy(fields.data() + 1, &a, sizeof a);
            std::memcpy(fields.data() + 13, &b, sizeof b);
            EXPECT_EQ(Sign(CompareDates(fields.data() + 1, fields.data() + 13, sizeof a)), Sign(aOrder - bOrder));
        }
    }
}

TEST_F(CalendarTest, TitlesCompareWithoutCaseAsUnsignedBytesWithinTheirSize)
{
    const struct {
        const char *a, *b;
        std::size_t size;
        int order;
    } rows[] = {{"Milk", "mILK", 150, 0},
                {"Milk", "milks", 150, -1},
                {"milk and", "MILK or", 5, 0},
                {"z", "\xC3\xA4", 150, -1},  // bytes above 127 are above the letters
                {"\xC3\x84", "\xC3\xA4", 150, -1},
                {"_", "A", 150, -1},  // "_" lies below the small letters
                {"", "", 150, 0}};
    for (const auto& [a, b, size, order] : rows) {
        const auto bytes = [](const char* text) { return reinterpret_cast<const std::byte*>(text); };
        EXPECT_EQ(Sign(CompareTitles(bytes(a), bytes(b), size)), order) << a << ", " << b;
        EXPECT_EQ(Sign(CompareTitles(bytes(b), bytes(a), size)), -order) << b << ", " << a;
    }
}

}  // namespace
}  // namespace jotlet
