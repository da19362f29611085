#pragma once

namespace ztm {

/// Seconds of a clock that runs evenly, from any origin: a change of the system time moves
/// nothing, and it goes on while the machine is suspended.
double EvenSeconds();

/// Sleeps for that long.
void SleepSeconds(double seconds);

/// Where the program takes the time from. The waits and spacings of the program are built on
/// these two calls alone, so that a test can put in a clock that advances by itself.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since local midnight with sub-second resolution, 0 up to 86400; starts again
    /// at 0 at midnight.
    virtual double SecondsSinceMidnight() = 0;

    /// Sleeps for about that many seconds; may return earlier or later.
    virtual void Sleep(double seconds) = 0;
};

/// The clock of the machine. It takes the time of day once, at its first use, and follows
/// EvenSeconds from there.
Clock &SystemClock();

/// Puts another clock in; nullptr brings the machine's clock back.
void SetClock(Clock *clock);

/// Seconds since local midnight by the clock that is in.
double SecondsSinceMidnight();

/// Seconds since the midnight before the clock that is in was first asked. Goes on over every
/// midnight that follows, so that differences are the time that has passed, however long; asked
/// at least once a day.
double RunningSeconds();

/// Seconds from `start` to `now`, both in seconds since midnight and less than a day apart:
/// always 0 up to 86400, a midnight between the two included.
double ElapsedSeconds(double start, double now);

/// Returns once at least `seconds` have passed since `start` (seconds since midnight), at once
/// if they already have, and after a day less a second at the latest. Lets no window event run,
/// sleeps meanwhile, and is neither stretched nor cut short by a midnight.
void WaitSince(double start, double seconds);

/// WaitSince, from now on.
void Wait(double seconds);

} // namespace ztm
