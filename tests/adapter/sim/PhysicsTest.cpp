#include "adapter/sim/Physics.h"

#include <gtest/gtest.h>

namespace ztm::sim {
namespace {

void Pass(Physics &bench, double seconds) {
    for (int tick = 0; tick < seconds * Physics::ticksPerSecond; ++tick) {
        bench.Tick();
    }
}

TEST(PhysicsTest, HeatComesFromAirAndHeatersAndGoesWithTheFans) {
    constexpr double hour = 3600;
    // What docs/simulated-board.md says of the bench gives these.
    const struct {
        double ambient;
        int heaters[2]; // percent
        double rpm[2];
        double seconds;
        double board, remotes[2]; // in the end
    } cases[] = {
        {24, {0, 0}, {2400, 2700}, 0, 27.9, {35.2, 34.7}}, // begins settled
        {24, {0, 0}, {2400, 2700}, hour, 27.9, {35.2, 34.7}},
        {24, {100, 0}, {2400, 2700}, 20, 28.0, {63.4, 34.7}}, // 63 % of the way
        {24, {100, 0}, {2400, 2700}, hour, 30.4, {79.6, 35.0}},
        {24, {0, 100}, {2400, 2700}, hour, 30.3, {35.4, 77.4}},
        {24, {50, 0}, {2400, 2700}, hour, 29.1, {57.4, 34.9}},
        {24, {100, 0}, {0, 0}, hour, 48.1, {218.7, 68.7}},
        {24, {100, 0}, {1000, 1000}, hour, 34.4, {111.8, 42.5}},
        {24, {100, 0}, {8000, 0}, hour, 28.5, {54.6, 38.1}},
        {24, {100, 0}, {0, 8000}, hour, 30.0, {93.9, 30.3}},
        {-40, {0, 0}, {2400, 2700}, hour, -36.1, {-28.8, -29.3}},
        {125, {0, 0}, {2400, 2700}, hour, 128.9, {136.2, 135.7}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(&c - cases));
        Physics bench(Physics::fanCount, {.ambientCelsius = 24, .isNoisy = false});
        bench.settings.ambientCelsius = c.ambient;
        for (size_t i = 0; i < 2; ++i) {
            bench.SetHeaterPercent(i, c.heaters[i]);
            bench.DriveFan(i, {.rpm = c.rpm[i]});
        }
        Pass(bench, c.seconds);
        EXPECT_NEAR(bench.BoardCelsius(), c.board, 0.1);
        EXPECT_NEAR(bench.RemoteCelsius(0), c.remotes[0], 0.1);
        EXPECT_NEAR(bench.RemoteCelsius(1), c.remotes[1], 0.1);
    }
}

TEST(PhysicsTest, AFanFollowsItsDriveAsFarAsItCan) {
    const struct {
        FanFault fault;
        FanDrive drive;
        double seconds, rpm; // after the line before
    } steps[] = {
        {FanFault::None, undirectedDrive, 0, 2400},
        {FanFault::None, {.rpm = 700}, 10, 700}, // keeps turning
        {FanFault::None, {}, 10, 0},
        {FanFault::None, {.rpm = 700}, 10, 0},              // does not start
        {FanFault::None, {.rpm = 2000}, 0.7, 0.632 * 2000}, // the lag of its mass
        {FanFault::None, {.rpm = 100}, 10, 0},              // too little to keep turning
        {FanFault::None, {.rpm = 0, .share = 1}, 20, 8000},
        {FanFault::None, {.rpm = 0, .share = 2}, 20, 8000},
        {FanFault::Drags, {.rpm = 0, .share = 1}, 20, 4000},
        {FanFault::Drags, {.rpm = 0, .share = 0.3}, 20, 2400},
        {FanFault::Stalled, {.rpm = 0, .share = 1}, 20, 0},
    };
    Physics bench(Physics::fanCount, {.isNoisy = false});
    for (const auto &[fault, drive, seconds, rpm] : steps) {
        bench.settings.fans[0] = fault;
        bench.DriveFan(0, drive);
        Pass(bench, seconds);
        EXPECT_NEAR(bench.FanRpm(0), rpm, 1 + 0.01 * rpm)
            << drive.rpm << ", " << drive.share << ", " << seconds;
    }
}

} // namespace
} // namespace ztm::sim
