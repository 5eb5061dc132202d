#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/base/clock.h"

// The program's only date and time logic: the two value types stored in every record, their order, steps and texts.
//
// The calendar is closed: dates are ordered by a day number that exists from 1 January 2000 to the end of the
// calendar's last year and is -1 for every other date.
// Threads: one; the clock format and the last year are process-wide.
// Errors:  nothing throws; a result of -1 or false tells an impossible date or time.

namespace jotlet {

// As held in memory and as stored in records.
struct DateValue {
    std::int32_t day = 0;
    std::int32_t month = 0;
    std::int32_t year = 0;  // full number, such as 2007

    friend bool operator==(const DateValue&, const DateValue&) = default;
};
static_assert(sizeof(DateValue) == 12);

// The 12-hour scale: midnight is hour 0 of half-day 1, noon is hour 0 of half-day 2.
struct TimeValue {
    std::int32_t hour = 0;     // 0 to 11
    std::int32_t minute = 0;   // 0 to 59; a multiple of 5 in values made for records
    std::int32_t second = 0;   // carried, but neither compared nor shown
    std::int32_t halfDay = 0;  // 1 before noon, 2 after noon

    friend bool operator==(const TimeValue&, const TimeValue&) = default;
};
static_assert(sizeof(TimeValue) == 16);

inline constexpr int kBeforeNoon = 1;
inline constexpr int kAfterNoon = 2;
inline constexpr int kTimeSlotCount = 288;  // steps of 5 minutes in a day
inline constexpr int kClock12Hours = 1;
inline constexpr int kClock24Hours = 2;

// Compares two fields of a record, each `size` bytes, at any alignment: below, at or above 0.
using FieldComparator = int (*)(const std::byte* first, const std::byte* second, std::size_t size);

// --- the range of the calendar

inline constexpr int kCalendarFirstYear = 2000;
inline constexpr int kCalendarDefaultLastYear = 2020;
inline constexpr int kCalendarMaxLastYear = 2099;

// The last year that has day numbers.
int CalendarLastYear();
// Set once, by whoever starts the program, from the user's settings. A year outside 2020 to 2099 is refused (false) and
// changes nothing.
bool SetCalendarLastYear(int year);

// --- dates

// True for a year of 365 days.
bool IsCommonYear(int year);
bool IsValidMonth(int month);
// True when the day exists in that month of that year, whatever the year.
bool IsValidDate(int day, int month, int year);
// Length of the month in any year; -1 for a month outside 1 to 12.
int DaysInMonth(int year, int month);
// Days since 1 January 2000; -1 outside the calendar.
int DayNumber(int year, int month, int day);
int DayNumberOf(int day, int month, int year);
int DayNumberOf(const DateValue& date);
// 0 for Sunday to 6 for Saturday, in any year; -1 for a date that does not exist. `name`, when given, receives the name
// of the day and is left alone with -1.
int DayOfWeek(int year, int month, int day, std::string* name = nullptr);

// Steps. False, with nothing changed, where the calendar ends.
bool NextDay(int& year, int& month, int& day);
// A day that the new month does not have becomes its last day.
bool NextMonth(int& year, int& month, int& day);
bool PreviousMonth(int& year, int& month, int& day);

// --- times

// The 5-minute step of the day, 0 to 287; -1 for an hour outside 0 to 12 or a minute outside 0 to 55.
// Hour 12 is the first slot behind its half-day.
int TimeSlot(int hour, int minute, int halfDay);
int TimeSlot(const TimeValue& time);
// Sets hour, minute and halfDay and leaves the second; false for a slot outside 0 to 287.
bool TimeFromSlot(int slot, TimeValue& time);

// --- now

void Today(DateValue& date, const Clock& clock = SystemClock());
// With a step above 0 the minute is lowered to a multiple of it. Stamps in records use step 5.
void Now(TimeValue& time, int step, const Clock& clock = SystemClock());

// --- texts; each returns the length of the text

// kClock12Hours or kClock24Hours, as GetClockFormat says; one answer for the life of the process.
int ClockMode();

// "13:40", or "01:40 pm".
int FormatTime(std::string& text, int hour, int minute, int halfDay);
// "13:40", or "01:40p".
int FormatTimeShort(std::string& text, int hour, int minute, int halfDay);
// "31/12/2005", or "12/31/2005" on a 12-hour clock.
int FormatDate(std::string& text, int day, int month, int year);
int FormatDateValue(std::string& text, const DateValue& date);

// --- field comparators

// -1, 0 or 1 by day number, so that dates outside the calendar are equal to each other and before all others.
int CompareDates(const std::byte* first, const std::byte* second, std::size_t size);
// At most `size` characters, A to Z folded to lower case, stopping at a terminating zero.
int CompareTitles(const std::byte* first, const std::byte* second, std::size_t size);

}  // namespace jotlet
