// The controlling side of the chip, through the board's entries.

#include "adapter/sim/LookupTable.h"
#include "adapter/sim/TestBoard.h"

#include <cmath>

namespace ztm::sim {
namespace {

constexpr int manual1 = 0x2A;
constexpr int manual2 = 0x2C;

// Configuration2
constexpr int steps = 0x80;
constexpr int lines = 0x84;
constexpr int oneTable = 0x08;
constexpr int noBoost = 0x02;

TEST(FanControlTest, HoldsTheManualSpeedAsFarAsTheFanReaches) {
    const struct {
        int counts[2];
        double shown[2];
        int status3;
    } steps[] = {{{0xFFFF, 0xFFFF}, {2400, 2700}, 0}, // told nothing
                 {{4915, 1638}, {1000, 3000}, 0},
                 {{702, 9830}, {7000, 500}, 0},
                 {{328, 328}, {8000, 9000}, 0x51}, // too much
                 {{0xFFFF, 983}, {2400, 5000}, 0},
                 {{0, 983}, {0, 5000}, 0},       // to stand, which is no stall
                 {{7022, 983}, {700, 5000}, 0}}; // less than it takes to start
    TestBoard test;
    for (const auto &[counts, shown, status3] : steps) {
        for (int fan = 0; fan < 2; ++fan) {
            test.Write({{manual1 + 2 * fan + 1, counts[fan] >> 8},
                        {manual1 + 2 * fan, counts[fan] & 0xFF}});
        }
        test.Pass(60);
        for (int fan = 0; fan < 2; ++fan) {
            EXPECT_NEAR(test.Reading(tach1 + 2 * fan), shown[fan], 0.002 * shown[fan] + 2)
                << counts[fan];
        }
        test.Read(0x51); // of the step before
        EXPECT_EQ(test.Read(0x51), status3) << counts[0];
    }
}

TEST(FanControlTest, TheTachCountsByThePolesField) {
    for (const int poles : {0, 1, 2, 4, 6, 8, 15}) {
        const double factor = poles == 0 ? 0 : 4.0 / poles;
        TestBoard test;
        test.Write({{0x03, poles << 4 | poles}});
        test.Pass(5);
        EXPECT_NEAR(test.Reading(tach1), 2400 * factor, 5) << poles;
        EXPECT_NEAR(test.Reading(tach2), 2700 * factor, 5) << poles;
        if (poles != 0) { // what the chip holds is the speed that it reads
            test.WriteRpm(manual1, 1500);
            test.Pass(60);
            EXPECT_NEAR(test.Reading(tach1), 1500, 5) << poles;
            EXPECT_NEAR(test.board.Look().fanRpm[0], 1500 / factor, 10) << poles;
        }
    }
}

TEST(FanControlTest, ResponseAndRampSetThePaceOfEachFan) {
    // The fan's own lag makes 1.6 s; after 8 updates nine tenths of the way are demanded.
    const struct {
        int response, ramp;
        double least, most;
    } paces[] = {{0, 0, 6, 9},     {1, 0, 3.2, 5}, {2, 0, 2, 3.5},   {5, 0, 1.6, 2.2},
                 {7, 0, 1.6, 1.8}, {7, 1, 15, 18}, {7, 2, 7.5, 9.5}, {7, 7, 2.2, 3.5}};
    for (const size_t fan : {size_t{0}, size_t{1}}) {
        const int ownShift = fan == 0 ? 0 : 4;
        for (const auto &[response, ramp, least, most] : paces) {
            TestBoard test;
            double from = 2400;
            test.WriteRpm(fan == 0 ? manual1 : manual2, from);
            test.Pass(30);
            // The other fan's fields hold the other extremes.
            test.Write({{0x3C, response << ownShift | (7 - response) << (4 - ownShift)},
                        {0x3B, ramp << ownShift | (ramp == 0 ? 1 : 0) << (4 - ownShift)}});
            for (const double to : {6000.0, 2400.0}) {
                test.WriteRpm(fan == 0 ? manual1 : manual2, to);
                const double seconds = test.SecondsUntil([&] {
                    return std::abs(test.board.Look().fanRpm[fan] - to) < 0.1 * std::abs(from - to);
                });
                EXPECT_GE(seconds, least) << fan << ": " << response << ", " << ramp;
                EXPECT_LE(seconds, most) << fan << ": " << response << ", " << ramp;
                test.Pass(60);
                from = to;
            }
        }
    }
}

TEST(FanControlTest, GoesOnTryingToStartAStalledFan) {
    TestBoard test;
    const auto untilStalled = [&test] {
        return test.SecondsUntil([&] { return (test.Read(0x51) & 0x80) != 0; });
    };
    test.WriteRpm(manual1, 3000);
    test.Pass(10);
    test.SetBench({.fans = {FanFault::Stalled}});
    EXPECT_NEAR(untilStalled(), 3, 1) << "the lag of the fan, and 1 s";
    test.Write({{manual1 + 1, 0}, {manual1, 0}}); // to stand
    test.Pass(1);
    test.Read(0x51);
    test.WriteRpm(manual1, 3000);
    EXPECT_NEAR(untilStalled(), 2, 0.1) << "of spinning up";
    test.Pass(100);
    EXPECT_EQ(test.board.Look().fanRpm[0], 0);
    test.SetBench({});
    test.Pass(10);
    EXPECT_NEAR(test.Reading(tach1), 3000, 10);
}

TEST(LookupTableTest, GoesThroughItsPointsInStepsOrLines) {
    constexpr auto small = Variant::ZTM7710;
    constexpr auto large = Variant::ZTM7720;
    const std::pair<int, double> points[] = {{30, 1000}, {40, 2000}, {50, 3000}, {60, 4000},
                                             {35, 500},  {45, 1500}, {55, 2500}, {65, 3500}};
    const struct {
        Variant variant;
        int configuration2;
        size_t fan;
        double celsius, rpm;
    } cases[] = {
        {large, steps, 0, 29.9, 0},    {large, steps, 0, 30, 1000},   {large, steps, 0, 39.9, 1000},
        {large, steps, 0, 40, 2000},   {large, steps, 0, 150, 4000},  {large, steps, 1, 34.9, 0},
        {large, steps, 1, 44.9, 500},  {large, steps, 1, 150, 3500},  {large, lines, 0, 29.9, 0},
        {large, lines, 0, 30, 1000},   {large, lines, 0, 32.5, 1250}, {large, lines, 0, 59, 3900},
        {large, lines, 0, 61, 4000},   {large, lines, 1, 60, 3000},   {large, lines, 1, -64, 0},
        {small, steps, 0, 64.9, 2500}, {small, lines, 0, 32.5, 1250}, {small, steps, 0, 66, 3500},
    };
    for (const auto &[variant, configuration2, fan, celsius, rpm] : cases) {
        RegisterFile registers(variant);
        registers.Write(Configuration2, static_cast<uint8_t>(configuration2));
        for (size_t i = 0; i < std::size(points); ++i) {
            registers.Write(static_cast<uint8_t>(LookupTemperature1 + i),
                            static_cast<uint8_t>(Limit(points[i].first)));
            registers.SetPair(static_cast<uint8_t>(LookupSpeed1 + 2 * i),
                              EncodeTach(points[i].second));
        }
        EXPECT_NEAR(LookUpRpm(registers, fan, celsius), rpm, 2)
            << configuration2 << ", fan " << fan << ", " << celsius;
        // In one table the second fan follows the first one's points.
        registers.Write(Configuration2, static_cast<uint8_t>(configuration2 | oneTable));
        EXPECT_EQ(LookUpRpm(registers, 1, 32.5), LookUpRpm(registers, 0, 32.5));
    }
}

/// The table of all tests from here on, between its points.
double CurveRpm(double celsius) {
    return 100 * (celsius - 20);
}

void SetAutomatic(TestBoard &test, int configuration2, int sources, int hysteresis = 5) {
    for (int i = 0; i < 8; ++i) {
        test.Write({{0x22 + i, Limit(30 + 10 * i)}});
        test.WriteRpm(0x2A + 2 * i, CurveRpm(30 + 10 * i));
    }
    test.Write(
        {{0x02, configuration2 | oneTable}, {0x07, sources}, {0x3A, hysteresis}, {0x01, 0x81}});
}

TEST(FanControlTest, EachFanFollowsItsSourceOrRunsAtFullSpeed) {
    enum Pace { Slow, Fast, Full };
    const struct {
        Variant variant;
        int sources;
        std::pair<int, int> heaters;
        DiodeFault diode1;
        Pace first, second;
    } cases[] = {
        {Variant::ZTM7720, 0x00, {80, 80}, DiodeFault::None, Slow, Slow},
        {Variant::ZTM7720, 0x09, {80, 0}, DiodeFault::None, Fast, Slow},
        {Variant::ZTM7720, 0x09, {0, 80}, DiodeFault::None, Slow, Fast},
        {Variant::ZTM7720, 0x06, {80, 0}, DiodeFault::None, Slow, Fast},
        {Variant::ZTM7720, 0x06, {0, 80}, DiodeFault::None, Fast, Slow},
        {Variant::ZTM7720, 0x0B, {0, 0}, DiodeFault::None, Full, Slow},
        {Variant::ZTM7720, 0x0D, {0, 0}, DiodeFault::None, Slow, Full},
        {Variant::ZTM7720, 0x09, {0, 0}, DiodeFault::Open, Full, Slow},
        {Variant::ZTM7720, 0x06, {0, 0}, DiodeFault::Shorted, Slow, Full},
        {Variant::ZTM7710, 0x00, {80, 0}, DiodeFault::None, Slow, Slow},
        {Variant::ZTM7710, 0x01, {80, 0}, DiodeFault::None, Fast, Slow},
        {Variant::ZTM7710, 0x02, {80, 0}, DiodeFault::None, Fast, Slow},
    };
    const auto pace = [](double rpm) { return rpm > 7990 ? Full : rpm > 3000 ? Fast : Slow; };
    for (const auto &c : cases) {
        TestBoard test(c.variant);
        SetAutomatic(test, lines | noBoost, c.sources);
        test.SetBench({.diodes = {c.diode1}});
        test.SetHeaters(c.heaters.first, c.heaters.second);
        test.Pass(600);
        EXPECT_EQ(pace(test.Reading(tach1)), c.first) << &c - cases;
        EXPECT_EQ(pace(test.Reading(tach2)), c.second) << &c - cases;
    }
}

TEST(FanControlTest, BoostsBothFansOverAnyThermLimitUnlessThatIsDisabled) {
    for (const int thermLimit : {0x0D, 0x10, 0x13}) {
        TestBoard test;
        test.WriteRpm(manual1, 1500);
        test.Write({{thermLimit, Limit(20)}});
        test.Pass(30);
        EXPECT_NEAR(test.Reading(tach1), 8000, 10);
        EXPECT_NEAR(test.Reading(tach2), 9000, 10);
        test.Write({{0x02, 0x84 | noBoost}});
        test.Pass(30);
        EXPECT_NEAR(test.Reading(tach1), 1500, 10);
    }
}

TEST(FanControlTest, AClosedLoopSettlesOnItsCurveOrSwingsWithinItsHysteresis) {
    const struct {
        const char *what;
        int heaterBefore;
        double rpmBefore;
        int configuration2, heater;
        bool isNoisy;
        Extremes celsius, rpm; // of the settled loop; on the curve, or the hysteresis above it
    } cases[] = {
        {"lines from cold", 0, 8000, lines, 60, false, {54.8, 54.8}, {3478, 3478}},
        {"lines from hot", 100, 1200, lines, 60, false, {53.8, 53.8}, {3675, 3675}},
        {"lines from cold, with noise", 0, 8000, lines, 60, true, {53.7, 55.3}, {3486, 3585}},
        {"lines from hot, with noise", 100, 1200, lines, 60, true, {53.2, 54.9}, {3564, 3665}},
        {"steps, one of which fits", 0, 8000, steps, 60, false, {57.7, 57.7}, {3000, 3000}},
        {"steps, between two", 0, 8000, steps, 32, false, {47, 50}, {2000, 3000}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        TestBoard test;
        test.SetBench({}, c.isNoisy);
        test.Write({{0x02, 0x86}}); // the hot start shall stay hot
        test.WriteRpm(manual1, c.rpmBefore);
        test.WriteRpm(manual2, c.rpmBefore);
        test.SetHeaters(c.heaterBefore, c.heaterBefore);
        test.Pass(3600);
        const double before = test.Reading(remote1);
        SetAutomatic(test, c.configuration2, 0x05, 3);
        test.SetHeaters(c.heater, 0);
        test.Pass(1800);
        const Extremes celsius = test.Watch(remote1, 600);
        const Extremes rpm = test.Watch(tach1, 600);
        EXPECT_GT(std::abs(before - celsius.most), 10) << "it came from far";
        EXPECT_NEAR(celsius.least, c.celsius.least, c.isNoisy ? 1 : 0.1);
        EXPECT_NEAR(celsius.most, c.celsius.most, c.isNoisy ? 1 : 0.1);
        EXPECT_NEAR(rpm.least, c.rpm.least, c.isNoisy ? 60 : 5);
        EXPECT_NEAR(rpm.most, c.rpm.most, c.isNoisy ? 60 : 5);
    }
}

} // namespace
} // namespace ztm::sim
