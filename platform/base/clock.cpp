#include "platform/base/clock.h"

#include <langinfo.h>
#include <locale.h>

#include <ctime>
#include <optional>
#include <string_view>
#include <thread>

namespace jotlet {

namespace {

class ComputerClock : public Clock {
public:
    LocalTime Now() const override
    {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        if (localtime_r(&now, &local) == nullptr)
            return {};
        // A leap second is written 60, which no time of day in a record has.
        return {.year = local.tm_year + 1900,
                .month = local.tm_mon + 1,
                .day = local.tm_mday,
                .hour = local.tm_hour,
                .minute = local.tm_min,
                .second = local.tm_sec > 59 ? 59 : local.tm_sec,
                .weekday = local.tm_wday};
    }
};

// The locale belongs to the process.
std::optional<ClockFormat> chosenFormat;

ClockFormat FormatOfLocale()
{
    const locale_t locale = newlocale(LC_TIME_MASK, "", nullptr);
    if (locale == nullptr)
        return ClockFormat::Hours24;
    const std::string_view format = nl_langinfo_l(T_FMT, locale);
    bool twelve = false;
    for (const std::string_view conversion : {"%I", "%l", "%r", "%p", "%OI"})
        twelve = twelve || format.find(conversion) != std::string_view::npos;
    freelocale(locale);
    return twelve ? ClockFormat::Hours12 : ClockFormat::Hours24;
}

}  // namespace

Clock& SystemClock()
{
    static ComputerClock clock;
    return clock;
}

ManualClock::ManualClock(const LocalTime& start)
{
    Set(start);
}

void ManualClock::Set(const LocalTime& moment)
{
    using namespace std::chrono;
    const year_month_day date{year{moment.year}, month{static_cast<unsigned>(moment.month)},
                              day{static_cast<unsigned>(moment.day)}};
    now = sys_days{date} + hours{moment.hour} + minutes{moment.minute} + seconds{moment.second};
}

LocalTime ManualClock::Now() const
{
    using namespace std::chrono;
    const sys_days day = floor<days>(now);
    const year_month_day date{day};
    const hh_mm_ss time{now - day};
    return {.year = static_cast<int>(date.year()),
            .month = static_cast<int>(static_cast<unsigned>(date.month())),
            .day = static_cast<int>(static_cast<unsigned>(date.day())),
            .hour = static_cast<int>(time.hours().count()),
            .minute = static_cast<int>(time.minutes().count()),
            .second = static_cast<int>(time.seconds().count()),
            .weekday = static_cast<int>(weekday{day}.c_encoding())};
}

ClockFormat GetClockFormat()
{
    if (!chosenFormat)
        chosenFormat = FormatOfLocale();
    return *chosenFormat;
}

void SetClockFormat(ClockFormat format)
{
    chosenFormat = format;
}

void WaitMs(int milliseconds)
{
    if (milliseconds > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace jotlet
