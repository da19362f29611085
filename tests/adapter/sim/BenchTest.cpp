#include "adapter/sim/Bench.h"

#include <gtest/gtest.h>

namespace ztm::sim {
namespace {

Bench QuietBench() {
    BenchSettings settings;
    settings.isNoisy = false;
    return Bench(Bench::fanCount, settings);
}

void Pass(Bench &bench, double seconds) {
    for (int tick = 0; tick < seconds * Bench::ticksPerSecond; ++tick) {
        bench.Tick();
    }
}

/// What a full heater adds to its diode in the end, with both fans at that speed.
double FullHeaterRise(double rpm) {
    Bench bench = QuietBench();
    bench.DriveFan(0, {.rpm = rpm});
    bench.DriveFan(1, {.rpm = rpm});
    Pass(bench, 3600);
    const double before = bench.RemoteCelsius(0);
    bench.SetHeaterPercent(0, 100);
    Pass(bench, 3600);
    return bench.RemoteCelsius(0) - before;
}

TEST(BenchTest, BeginsSettled) {
    Bench bench = QuietBench();
    const double board = bench.BoardCelsius();
    const double remote = bench.RemoteCelsius(0);
    EXPECT_NEAR(board, 28, 1);
    EXPECT_NEAR(remote, 35, 1);
    EXPECT_NEAR(bench.FanRpm(0), 2400, 1);
    EXPECT_NEAR(bench.FanRpm(1), 2700, 1);
    Pass(bench, 3600);
    EXPECT_NEAR(bench.BoardCelsius(), board, 0.001);
    EXPECT_NEAR(bench.RemoteCelsius(0), remote, 0.001);
}

TEST(BenchTest, AHeaterWarmsItsDiodeWithALagAndTheBoardALittle) {
    for (const size_t heated : {size_t{0}, size_t{1}}) {
        Bench bench = QuietBench();
        const Bench before = bench;
        bench.SetHeaterPercent(heated, 100);
        Pass(bench, 20);
        EXPECT_NEAR(bench.RemoteCelsius(heated) - before.RemoteCelsius(heated), 0.632 * 44, 2);
        Pass(bench, 3600);
        EXPECT_NEAR(bench.RemoteCelsius(heated) - before.RemoteCelsius(heated), 44, 2);
        const double boardRise = bench.BoardCelsius() - before.BoardCelsius();
        EXPECT_GT(boardRise, 1);
        EXPECT_LT(boardRise, 5);
        EXPECT_LT(bench.RemoteCelsius(1 - heated) - before.RemoteCelsius(1 - heated), 1);
    }
}

TEST(BenchTest, FasterFansCoolBetter) {
    const double speeds[] = {0, 1000, 2400, 5000, 8000};
    double last = 1e9;
    for (const double rpm : speeds) {
        const double rise = FullHeaterRise(rpm);
        EXPECT_LT(rise, 0.8 * last) << rpm;
        last = rise;
    }
    EXPECT_GT(FullHeaterRise(0), 3 * FullHeaterRise(2400));
}

TEST(BenchTest, InTheEndEverythingFollowsTheAir) {
    for (const double ambient : {-40.0, 24.0, 125.0}) {
        Bench bench = QuietBench();
        const Bench before = bench;
        bench.settings.ambientCelsius = ambient;
        Pass(bench, 3600);
        const double change = ambient - before.settings.ambientCelsius;
        EXPECT_NEAR(bench.BoardCelsius(), before.BoardCelsius() + change, 0.01);
        EXPECT_NEAR(bench.RemoteCelsius(1), before.RemoteCelsius(1) + change, 0.01);
    }
}

TEST(BenchTest, AFanNeedsMoreDriveToStartThanToKeepTurning) {
    constexpr FanDrive weak = {.rpm = 700, .share = 0};
    Bench bench = QuietBench();
    bench.DriveFan(0, weak);
    Pass(bench, 10);
    EXPECT_NEAR(bench.FanRpm(0), 700, 1) << "keeps turning";
    bench.DriveFan(0, {});
    Pass(bench, 10);
    EXPECT_EQ(bench.FanRpm(0), 0);
    bench.DriveFan(0, weak);
    Pass(bench, 10);
    EXPECT_EQ(bench.FanRpm(0), 0) << "does not start";
    bench.DriveFan(0, {.rpm = 2000, .share = 0});
    Pass(bench, 0.7);
    EXPECT_NEAR(bench.FanRpm(0), 0.632 * 2000, 20) << "the lag of its mass";
    bench.DriveFan(0, {.rpm = 100, .share = 0});
    Pass(bench, 10);
    EXPECT_EQ(bench.FanRpm(0), 0) << "too little to keep turning";
}

TEST(BenchTest, FaultsLimitAFan) {
    const struct {
        FanFault fault;
        double share, rpm;
    } cases[] = {{FanFault::None, 1, 8000},
                 {FanFault::None, 2, 8000},
                 {FanFault::Drags, 1, 4000},
                 {FanFault::Drags, 0.3, 2400},
                 {FanFault::Stalled, 1, 0}};
    for (const auto &[fault, share, rpm] : cases) {
        Bench bench = QuietBench();
        bench.settings.fans[0] = fault;
        bench.DriveFan(0, {.rpm = 0, .share = share});
        Pass(bench, 20);
        EXPECT_NEAR(bench.FanRpm(0), rpm, 1);
    }
}

} // namespace
} // namespace ztm::sim
