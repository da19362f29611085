#pragma once

namespace ztm {

/// Seconds of a steady clock, from any origin: a change of the system time has no effect, and it
/// keeps counting while the machine is suspended.
double EvenSeconds();

/// Sleeps for that long.
void SleepSeconds(double seconds);

/// The source of time. The waits and intervals of the program use only these two calls, so a test
/// can install a clock that advances by itself.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since local midnight with sub-second resolution, 0 up to 86400; restarts at 0 at
    /// midnight.
    virtual double SecondsSinceMidnight() = 0;

    /// Sleeps for about that many seconds; may return earlier or later.
    virtual void Sleep(double seconds) = 0;
};

/// The machine's clock. It reads the time of day once, at first use, and then follows EvenSeconds.
Clock &SystemClock();

/// Installs another clock; nullptr restores the machine's clock.
void SetClock(Clock *clock);

/// Seconds since local midnight by the installed clock.
double SecondsSinceMidnight();

/// Seconds since the midnight before the first call with the installed clock. Keeps counting past
/// midnight, so differences are elapsed time, however long. Must be called at least once a day.
double RunningSeconds();

/// Seconds from `start` to `now`, both in seconds since midnight and less than a day apart: always
/// 0 up to 86400, also across midnight.
double ElapsedSeconds(double start, double now);

/// Returns once at least `seconds` have passed since `start` (seconds since midnight), immediately
/// if they already have, and at the latest after a day less a second. Sleeps meanwhile, without
/// processing window events. A midnight makes the wait neither longer nor shorter.
void WaitSince(double start, double seconds);

/// WaitSince, starting now.
void Wait(double seconds);

} // namespace ztm
