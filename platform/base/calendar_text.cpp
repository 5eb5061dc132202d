// The texts of dates and times.

#include <cstdint>

#include "platform/base/calendar.h"

namespace jotlet {

namespace {

// A number with a leading zero below 10.
std::string TwoDigits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

int FormatWith(std::string& text, int hour, int minute, int halfDay, const char* morning, const char* afternoon)
{
    if (ClockMode() == kClock24Hours) {
        text = TwoDigits(std::int64_t{hour} + (halfDay == kAfterNoon ? 12 : 0)) + ":" + TwoDigits(minute);
    } else if (hour == 0 && halfDay == kAfterNoon) {
        text = "12:" + TwoDigits(minute) + afternoon;
    } else {
        text = TwoDigits(hour) + ":" + TwoDigits(minute) + (halfDay == kBeforeNoon ? morning : afternoon);
    }
    return static_cast<int>(text.size());
}

}  // namespace

int ClockMode()
{
    return GetClockFormat() == ClockFormat::Hours12 ? kClock12Hours : kClock24Hours;
}

int FormatTime(std::string& text, int hour, int minute, int halfDay)
{
    return FormatWith(text, hour, minute, halfDay, " am", " pm");
}

int FormatTimeShort(std::string& text, int hour, int minute, int halfDay)
{
    return FormatWith(text, hour, minute, halfDay, "a", "p");
}

int FormatDate(std::string& text, int day, int month, int year)
{
    const bool dayFirst = ClockMode() == kClock24Hours;
    text = std::to_string(dayFirst ? day : month) + "/" + std::to_string(dayFirst ? month : day) + "/" +
           std::to_string(year);
    return static_cast<int>(text.size());
}

int FormatDateValue(std::string& text, const DateValue& date)
{
    return FormatDate(text, date.day, date.month, date.year);
}

}  // namespace jotlet
