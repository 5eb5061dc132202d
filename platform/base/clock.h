// The local date and time, handed to whoever needs it, so that a test can set it.
#pragma once

#include <chrono>

namespace jotlet {

// A moment in the time zone of this computer.
struct LocalTime {
    int year = 2000;  // as written, 2026
    int month = 1;    // 1 to 12
    int day = 1;      // 1 to 31
    int hour = 0;     // 0 to 23
    int minute = 0;
    int second = 0;
    int weekday = 6;  // 0 Sunday to 6 Saturday

    bool operator==(const LocalTime&) const = default;
};

class Clock {
public:
    virtual ~Clock() = default;
    virtual LocalTime Now() const = 0;
};

// The computer's clock.
Clock& SystemClock();

// Stands still until it is told otherwise. Knows no summer time: a day has 24 hours.
class ManualClock : public Clock {
public:
    // Starts at the given date and time of day; `weekday` of `start` is not looked at.
    explicit ManualClock(const LocalTime& start = {});

    LocalTime Now() const override;
    void Set(const LocalTime& moment);
    void Advance(std::chrono::seconds by) { now += by; }

private:
    std::chrono::sys_seconds now;
};

enum class ClockFormat { Hours24, Hours12 };

// What the locale of the user (LC_ALL, LC_TIME, LANG) says, asked once in a process; 24 hours when it says nothing.
ClockFormat GetClockFormat();
// For tests, and for a window system that knows better. Holds for the rest of the process.
void SetClockFormat(ClockFormat format);

// Keeps this thread for `milliseconds`, asleep, whatever signals come; nothing when not above 0.
void WaitMs(int milliseconds);

}  // namespace jotlet
