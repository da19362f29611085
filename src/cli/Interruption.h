#pragma once

namespace ztm::cli {

/// A signal has asked for the end: SIGINT, SIGTERM or SIGHUP.
struct Interrupted {
    int signal;
    bool isItsEnd = false; ///< of something that runs until it is interrupted
};

/// Nobody reads standard output any more.
struct OutputClosed {};

/// From now on these signals are noted, for CheckInterruption. A second one, unless
/// it comes within 0.1 s, ends the process at once.
void CatchSignals();

/// Throws Interrupted if a signal has come, until BeginEnding.
void CheckInterruption();

/// Sleeps for about that long; throws Interrupted or OutputClosed as soon as there is a reason.
void SleepInterruptibly(double seconds);

/// The run is being ended: nothing is thrown any more.
void BeginEnding();

/// Forgets the signal that has been answered.
void ForgetSignal();

} // namespace ztm::cli
