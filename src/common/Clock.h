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

    /// Seconds since the local midnight before the clock started, with sub-second resolution. Never
    /// goes back and never restarts.
    virtual double RunningSeconds() = 0;

    /// Sleeps for about that many seconds; may return earlier or later.
    virtual void Sleep(double seconds) = 0;
};

/// The machine's clock. It reads the time of day once, at first use, and then follows EvenSeconds.
Clock &SystemClock();

/// Installs another clock; nullptr restores the machine's clock.
void SetClock(Clock *clock);

/// Seconds since the local midnight before the start of the installed clock. Keeps counting past
/// the midnights that follow, so differences are elapsed time, however long.
double RunningSeconds();

/// Returns once at least `seconds` have passed since `start` (RunningSeconds), immediately if they
/// already have, and at the latest after a day. Sleeps meanwhile, without processing window events.
void WaitSince(double start, double seconds);

/// WaitSince, starting now.
void Wait(double seconds);

} // namespace ztm
