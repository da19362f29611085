#pragma once

namespace ztm {

/// Where the program takes the time from. The waits and spacings of the program are built on
/// these two calls alone, so that a test can put in a clock that advances by itself.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since local midnight with sub-second resolution, 0 up to 86400; starts again
    /// at 0 at midnight.
    virtual double SecondsSinceMidnight() = 0;

    /// Gives the core away for about that many seconds; may return earlier or later.
    virtual void Sleep(double seconds) = 0;
};

/// The clock of the machine. It takes the time of day once, at its first use, and follows a
/// clock that runs evenly from there, so a change of the system time moves nothing; it goes on
/// counting while the machine is suspended.
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
/// gives the core away meanwhile, and is neither stretched nor cut short by a midnight.
void WaitSince(double start, double seconds);

/// WaitSince, from now on.
void Wait(double seconds);

} // namespace ztm
