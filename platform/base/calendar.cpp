#include "platform/base/calendar.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace jotlet {

namespace {

constexpr std::array<int, 13> kMonthLength = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr std::size_t kDayNameSize = 10;

// A setting of the suite that every date obeys.
int lastYear = kCalendarDefaultLastYear;

// Leap days in the years 1 to `year`.
int LeapDaysUpTo(int year)
{
    return year / 4 - year / 100 + year / 400;
}

unsigned char FoldCase(std::byte value)
{
    const auto c = std::to_integer<unsigned char>(value);
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

DateValue ReadDate(const std::byte* field)
{
    DateValue date;
    std::memcpy(&date, field, sizeof date);
    return date;
}

}  // namespace

int CalendarLastYear()
{
    return lastYear;
}

bool SetCalendarLastYear(int year)
{
    if (year < kCalendarDefaultLastYear || year > kCalendarMaxLastYear)
        return false;
    lastYear = year;
    return true;
}

bool IsCommonYear(int year)
{
    return year % 4 != 0 || (year % 100 == 0 && year % 400 != 0);
}

bool IsValidMonth(int month)
{
    return month >= 1 && month <= 12;
}

bool IsValidDate(int day, int month, int year)
{
    return IsValidMonth(month) && day >= 1 && day <= DaysInMonth(year, month);
}

int DaysInMonth(int year, int month)
{
    if (!IsValidMonth(month))
        return -1;
    if (month == 2 && !IsCommonYear(year))
        return 29;
    return kMonthLength[static_cast<std::size_t>(month)];
}

int DayNumber(int year, int month, int day)
{
    if (year < kCalendarFirstYear || year > CalendarLastYear() || !IsValidDate(day, month, year))
        return -1;
    int number =
        365 * (year - kCalendarFirstYear) + LeapDaysUpTo(year - 1) - LeapDaysUpTo(kCalendarFirstYear - 1) + day - 1;
    for (int m = 1; m < month; ++m)
        number += DaysInMonth(year, m);
    return number;
}

int DayNumberOf(int day, int month, int year)
{
    return DayNumber(year, month, day);
}

int DayNumberOf(const DateValue& date)
{
    return DayNumber(date.year, date.month, date.day);
}

int DayOfWeek(int year, int month, int day, std::string* name)
{
    if (!IsValidDate(day, month, year))
        return -1;
    // The calendar repeats every 400 years, which are whole weeks; a year in 400 to 799 keeps everything positive.
    const int y = (year % 400 + 400) % 400 + 400;
    int days = 365 * y + LeapDaysUpTo(y - 1) + day - 1;
    for (int m = 1; m < month; ++m)
        days += DaysInMonth(y, m);
    // 1 January of a year divisible by 400 is a Saturday.
    const int firstDay = 365 * 400 + LeapDaysUpTo(399);
    const int weekday = (days - firstDay + 6) % 7;
    if (name != nullptr)
        *name = LoadStringResource(kStringFirstDay + weekday).substr(0, kDayNameSize);
    return weekday;
}

bool NextDay(int& year, int& month, int& day)
{
    int y = year, m = month, d = day;
    if (!IsValidMonth(m))
        return false;
    if (d < DaysInMonth(y, m)) {
        ++d;
    } else {
        d = 1;
        if (m < 12) {
            ++m;
        } else {
            if (y >= CalendarLastYear())
                return false;
            m = 1;
            ++y;
        }
    }
    if (DayNumber(y, m, d) < 0)
        return false;
    year = y;
    month = m;
    day = d;
    return true;
}

bool NextMonth(int& year, int& month, int& day)
{
    if (!IsValidMonth(month) || (month == 12 && year >= CalendarLastYear()))
        return false;
    if (month == 12)
        ++year;
    month = month % 12 + 1;
    day = std::min(day, DaysInMonth(year, month));
    return true;
}

bool PreviousMonth(int& year, int& month, int& day)
{
    if (!IsValidMonth(month) || (month == 1 && year <= kCalendarFirstYear))
        return false;
    if (month == 1)
        --year;
    month = month == 1 ? 12 : month - 1;
    day = std::min(day, DaysInMonth(year, month));
    return true;
}

int TimeSlot(int hour, int minute, int halfDay)
{
    if (hour < 0 || hour > 12 || minute < 0 || minute > 55)
        return -1;
    return minute / 5 + hour * 12 + (halfDay == kBeforeNoon ? 0 : kTimeSlotCount / 2);
}

int TimeSlot(const TimeValue& time)
{
    return TimeSlot(time.hour, time.minute, time.halfDay);
}

bool TimeFromSlot(int slot, TimeValue& time)
{
    if (slot < 0 || slot >= kTimeSlotCount)
        return false;
    const int hour = slot / 12;
    time.hour = hour % 12;
    time.minute = slot % 12 * 5;
    time.halfDay = hour < 12 ? kBeforeNoon : kAfterNoon;
    return true;
}

void Today(DateValue& date, const Clock& clock)
{
    const LocalTime now = clock.Now();
    date = {now.day, now.month, now.year};
}

void Now(TimeValue& time, int step, const Clock& clock)
{
    const LocalTime now = clock.Now();
    time.hour = now.hour % 12;
    time.halfDay = now.hour < 12 ? kBeforeNoon : kAfterNoon;
    time.minute = step > 0 ? now.minute - now.minute % step : now.minute;
    time.second = now.second;
}

int CompareDates(const std::byte* first, const std::byte* second, std::size_t)
{
    const int a = DayNumberOf(ReadDate(first));
    const int b = DayNumberOf(ReadDate(second));
    return (a > b) - (a < b);
}

int CompareTitles(const std::byte* first, const std::byte* second, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        const unsigned char a = FoldCase(first[i]);
        const unsigned char b = FoldCase(second[i]);
        if (a != b)
            return a < b ? -1 : 1;
        if (a == 0)
            break;
    }
    return 0;
}

}  // namespace jotlet
