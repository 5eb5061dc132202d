#include "platform/base/clock.h"

#include <gtest/gtest.h>

#include <ctime>

#include "tests/support/child_process.h"
#include "tests/support/scoped_variable.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;

TEST(Clock, AdvancingAManualClockCarriesOverMonthsYearsAndLeapDays)
{
    ManualClock clock({.year = 2023, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 30});
    EXPECT_EQ(clock.Now().weekday, 0);
    clock.Advance(45s);
    EXPECT_EQ(clock.Now(), (LocalTime{2024, 1, 1, 0, 0, 15, 1}));
    clock.Set({.year = 2024, .month = 2, .day = 28, .hour = 12});
    clock.Advance(24h);
    EXPECT_EQ(clock.Now(), (LocalTime{2024, 2, 29, 12, 0, 0, 4}));
    clock.Advance(-24h);
    EXPECT_EQ(clock.Now().day, 28);
}

TEST(Clock, TheComputersClockGivesLocalTime)
{
    const test::ScopedVariable zone("TZ", "XYZ-5:30");
    tzset();
    const std::time_t before = std::time(nullptr);
    const LocalTime now = SystemClock().Now();
    const std::time_t after = std::time(nullptr);
    std::tm utc{};
    utc.tm_year = now.year - 1900;
    utc.tm_mon = now.month - 1;
    utc.tm_mday = now.day;
    utc.tm_hour = now.hour;
    utc.tm_min = now.minute;
    utc.tm_sec = now.second;
    const std::time_t shown = timegm(&utc) - (5 * 60 + 30) * 60;
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, after);
    EXPECT_EQ(now.weekday, utc.tm_wday);
}

TEST(Clock, WithoutALocaleTheDayHas24Hours)
{
    // The answer is given once a process, so the question is asked in another one.
    test::ChildProcess child([] {
        setenv("LC_ALL", "no_such_locale", 1);
        return GetClockFormat() == ClockFormat::Hours24 ? 0 : 1;
    });
    EXPECT_EQ(child.Wait(), 0);
}

TEST(Clock, AWaitLastsAtLeastAsLongAsTold)
{
    const auto begin = std::chrono::steady_clock::now();
    WaitMs(20);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
    WaitMs(0);
    WaitMs(-1000000);
}

}  // namespace
}  // namespace jotlet
