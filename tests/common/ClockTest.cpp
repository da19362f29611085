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
                 {36000, std::numeric_limits<double>::infinity(), 86399}};
    for (const auto &[start, seconds, waited] : cases) {
        test::ClockDouble clock(start);
        Wait(seconds);
        EXPECT_NEAR(clock.TotalSeconds(), waited, waited < 1 ? waited / 200 : 1)
            << start << " " << seconds;
    }
}

TEST(Clock, WaitSinceCountsWhatHasPassedAlready) {
    test::ClockDouble clock(lateEvening);
    const double start = SecondsSinceMidnight();
    clock.Advance(0.015);
    WaitSince(start, 0.020);
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001);
    WaitSince(start, 0.010);
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001) << "waits for what is over";
}

TEST(Clock, ElapsedSecondsCrossesMidnight) {
    EXPECT_DOUBLE_EQ(ElapsedSeconds(10, 12.5), 2.5);
    EXPECT_DOUBLE_EQ(ElapsedSeconds(86399, 1), 2);
    EXPECT_DOUBLE_EQ(ElapsedSeconds(5, 5), 0);
}

TEST(Clock, MachineClockRunsEvenlyWithinTheDay) {
    const double first = SystemClock().SecondsSinceMidnight();
    SystemClock().Sleep(0.002);
    const double second = SystemClock().SecondsSinceMidnight();
    EXPECT_GE(first, 0);
    EXPECT_LT(first, 86400);
    EXPECT_GE(ElapsedSeconds(first, second), 0.002);
    EXPECT_LT(ElapsedSeconds(first, second), 60);
}

} // namespace
} // namespace ztm
