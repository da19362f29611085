#include "common/Clock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <thread>

namespace ztm {
namespace {

constexpr double secondsPerDay = 86400.0;

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
    double SecondsSinceMidnight() override {
        return std::fmod(midnightOffset + EvenSeconds(), secondsPerDay);
    }

    void Sleep(double seconds) override { SleepSeconds(seconds); }

private:
    const double midnightOffset =
        std::fmod(LocalTimeOfDay() - EvenSeconds(), secondsPerDay) + secondsPerDay;
};

Clock *currentClock = nullptr;
double lastSeconds = 0; // seconds since midnight in the last RunningSeconds
double midnightsPast = 0;

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
    lastSeconds = 0;
    midnightsPast = 0;
}

double SecondsSinceMidnight() {
    return CurrentClock().SecondsSinceMidnight();
}

double RunningSeconds() {
    const double now = SecondsSinceMidnight();
    if (now < lastSeconds) {
        ++midnightsPast;
    }
    lastSeconds = now;
    return midnightsPast * secondsPerDay + now;
}

double ElapsedSeconds(double start, double now) {
    const double elapsed = now - start;
    return elapsed < 0 ? elapsed + secondsPerDay : elapsed;
}

void WaitSince(double start, double seconds) {
    // Elapsed time is known only up to a day.
    seconds = std::min(seconds, secondsPerDay - 1);
    for (;;) {
        const double remaining = seconds - ElapsedSeconds(start, SecondsSinceMidnight());
        if (!(remaining > 0)) { // nothing left, or NaN
            return;
        }
        CurrentClock().Sleep(std::max(remaining, shortestSleepSeconds));
    }
}

void Wait(double seconds) {
    WaitSince(SecondsSinceMidnight(), seconds);
}

} // namespace ztm
