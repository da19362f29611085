#include "common/Clock.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>

namespace ztm {
namespace {

constexpr double longestWaitSeconds = 86400.0;

/// Shorter sleeps are pointless, and a remainder lost in rounding would never pass.
constexpr double shortestSleepSeconds = 0.0001;

double LocalTimeOfDay() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec +
           static_cast<double>(now.tv_nsec) / 1e9;
}

class MachineClock final : public Clock {
public:
    double RunningSeconds() override { return timeOfDayAtStart + (EvenSeconds() - start); }

    void Sleep(double seconds) override { SleepSeconds(seconds); }

private:
    const double start = EvenSeconds();
    const double timeOfDayAtStart = LocalTimeOfDay();
};

Clock *currentClock = nullptr;

Clock &CurrentClock() {
    return currentClock != nullptr ? *currentClock : SystemClock();
}

} // namespace

double EvenSeconds() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void SleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

Clock &SystemClock() {
    static MachineClock clock;
    return clock;
}

void SetClock(Clock *clock) {
    currentClock = clock;
}

double RunningSeconds() {
    return CurrentClock().RunningSeconds();
}

void WaitSince(double start, double seconds) {
    seconds = std::min(seconds, longestWaitSeconds);
    for (;;) {
        const double remaining = start + seconds - RunningSeconds();
        if (!(remaining > 0)) { // nothing left, or NaN
            return;
        }
        CurrentClock().Sleep(std::max(remaining, shortestSleepSeconds));
    }
}

void Wait(double seconds) {
    WaitSince(RunningSeconds(), seconds);
}

} // namespace ztm
