#include "common/Clock.h"

#include "support/ClockDouble.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr double lateEvening = 86399.99;

TEST(Clock, WaitTakesItsTimeAndEndsWhateverItIsAsked) {
    const struct {
        double start, seconds, waited;
    } cases[] = {{0, 0.2, 0.2},
                 {36000, 0.2, 0.2},
                 {lateEvening, 0.2, 0.2},
                 {0, -1, 0},
                 {0, std::nan(""), 0},
                 {0, 0, 0},
                 {36000, std::numeric_limits<double>::infinity(), 86400}};
    for (const auto &[start, seconds, waited] : cases) {
        test::ClockDouble clock(start);
        Wait(seconds);
        EXPECT_NEAR(clock.TotalSeconds(), waited, waited < 1 ? waited / 200 : 1)
            << start << " " << seconds;
    }
}

TEST(Clock, WaitSinceCountsWhatHasPassedAlready) {
    test::ClockDouble clock(lateEvening);
    const double start = RunningSeconds();
    clock.Advance(0.015);
    WaitSince(start, 0.020);
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001);
    WaitSince(start, 0.010);
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001) << "waits for what is over";
}

TEST(Clock, MachineClockStartsWithinTheDayAndRuns) {
    const double first = SystemClock().RunningSeconds();
    SystemClock().Sleep(0.002);
    const double elapsed = SystemClock().RunningSeconds() - first;
    EXPECT_GE(first, 0);
    EXPECT_LT(first, 86400);
    EXPECT_GE(elapsed, 0.002);
    EXPECT_LT(elapsed, 60);
}

} // namespace
} // namespace ztm
