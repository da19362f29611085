// The controlling side of the chip, through the board's entries.

#include "adapter/sim/LookupTable.h"
#include "adapter/sim/TestBoard.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace ztm::sim {
namespace {

constexpr uint8_t tach1 = 0x4A;
constexpr uint8_t tach2 = 0x4C;
constexpr uint8_t remote1 = 0x42;
constexpr int manual1 = 0x2A;
constexpr int manual2 = 0x2C;

void Break(TestBoard &test, size_t fan, FanFault fault) {
    test.Arrange([=](BoardSettings &board) { board.bench.fans[fan] = fault; });
}

TEST(FanControlTest, HoldsTheManualSpeedAsFarAsTheFanReaches) {
    TestBoard test;
    EXPECT_NEAR(test.Rpm(tach1), 2400, 5);
    EXPECT_NEAR(test.Rpm(tach2), 2700, 5);
    const std::array<double, 4> steps[] = {{1000, 3000, 1000, 3000},
                                           {7000, 500, 7000, 500},
                                           {15000, 15000, 8000, 9000},
                                           {0, 5000, 2400, 5000}}; // 0 is written as 0xFFFF
    for (const auto &[wanted1, wanted2, shown1, shown2] : steps) {
        test.WriteRpm(manual1, wanted1);
        test.WriteRpm(manual2, wanted2);
        test.Pass(60);
        EXPECT_NEAR(test.Rpm(tach1), shown1, 0.002 * shown1 + 2) << wanted1;
        EXPECT_NEAR(test.Rpm(tach2), shown2, 0.002 * shown2 + 2) << wanted2;
    }
    test.Read(0x51); // 15000 RPM was too much
    test.Write(manual1 + 1, 0);
    test.Write(manual1, 0);
    test.Pass(10);
    EXPECT_EQ(test.Rpm(tach1), 0);
    EXPECT_EQ(test.Read(0x51), 0) << "a fan that is to stand is not stalled";
}

TEST(FanControlTest, TheTachCountsByThePolesField) {
    for (const auto &[poles, factor] :
         {std::pair(2, 2.0), {4, 1.0}, {6, 4.0 / 6}, {8, 0.5}, {1, 4.0}, {15, 4.0 / 15}}) {
        TestBoard test;
        test.Write(0x03, poles << 4 | poles);
        test.Pass(5);
        EXPECT_NEAR(test.Rpm(tach1), 2400 * factor, 5) << poles;
        EXPECT_NEAR(test.Rpm(tach2), 2700 * factor, 5) << poles;
        // What the chip holds is the speed that it reads.
        test.WriteRpm(manual1, 1500);
        test.Pass(60);
        EXPECT_NEAR(test.Rpm(tach1), 1500, 5) << poles;
        EXPECT_NEAR(test.board.Look().fanRpm[0], 1500 / factor, 10) << poles;
    }
    TestBoard test;
    test.Write(0x03, 0x40);
    test.Pass(5);
    EXPECT_EQ(test.Rpm(tach1), 0);
}

/// Seconds until the fan has gone nine tenths of the way from where it is to `rpm`.
double SecondsTo(TestBoard &test, size_t fan, double rpm) {
    const double from = test.board.Look().fanRpm[fan];
    double passed = 0;
    while (std::abs(test.board.Look().fanRpm[fan] - rpm) > 0.1 * std::abs(from - rpm) &&
           passed < 100) {
        test.Pass(0.025);
        passed += 0.025;
    }
    return passed;
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
        const int manual = fan == 0 ? manual1 : manual2;
        for (const auto &[response, ramp, least, most] : paces) {
            TestBoard test;
            test.WriteRpm(manual, 2400);
            test.Pass(30);
            // The other fan's fields hold the other extremes.
            test.Write(0x3C, response << ownShift | (7 - response) << (4 - ownShift));
            test.Write(0x3B, ramp << ownShift | (ramp == 0 ? 1 : 0) << (4 - ownShift));
            for (const double rpm : {6000, 2400}) {
                test.WriteRpm(manual, rpm);
                const double seconds = SecondsTo(test, fan, rpm);
                EXPECT_GE(seconds, least) << fan << ": " << response << ", " << ramp;
                EXPECT_LE(seconds, most) << fan << ": " << response << ", " << ramp;
                test.Pass(60);
            }
        }
    }
}

TEST(FanControlTest, SpinsAStandingFanUp) {
    TestBoard test;
    test.Write(manual1 + 1, 0); // a count of 0: stop
    test.Write(manual1, 0);
    test.Pass(10);
    // Less than it takes to start, enough to keep turning.
    test.WriteRpm(manual1, 700);
    test.Pass(10);
    EXPECT_NEAR(test.Rpm(tach1), 700, 5);
    EXPECT_EQ(test.Read(0x51), 0);
}

TEST(FanControlTest, GoesOnTryingToStartAStalledFan) {
    TestBoard test;
    test.WriteRpm(manual1, 3000);
    test.Pass(10);
    Break(test, 0, FanFault::Stalled);
    double passed = 0;
    while ((test.Read(0x51) & 0x80) == 0 && passed < 20) {
        test.Pass(0.1);
        passed += 0.1;
    }
    EXPECT_NEAR(passed, 3, 1) << "the lag of the fan, and 1 s";
    test.Pass(100);
    EXPECT_EQ(test.board.Look().fanRpm[0], 0);
    Break(test, 0, FanFault::None);
    test.Pass(10);
    EXPECT_NEAR(test.Rpm(tach1), 3000, 10);
}

TEST(LookupTableTest, GoesThroughItsPointsInStepsOrLines) {
    constexpr uint8_t steps = 0x80;
    constexpr uint8_t lines = 0x84;
    constexpr uint8_t oneTable = 0x08;
    const std::pair<int, double> points[] = {{30, 1000}, {40, 2000}, {50, 3000}, {60, 4000},
                                             {35, 500},  {45, 1500}, {55, 2500}, {65, 3500}};
    const struct {
        Variant variant;
        int configuration2;
        size_t fan;
        double celsius, rpm;
    } cases[] = {
        {Variant::ZTM7720, steps, 0, 29.9, 0},    {Variant::ZTM7720, steps, 0, 30, 1000},
        {Variant::ZTM7720, steps, 0, 39.9, 1000}, {Variant::ZTM7720, steps, 0, 40, 2000},
        {Variant::ZTM7720, steps, 0, 150, 4000},  {Variant::ZTM7720, steps, 1, 34.9, 0},
        {Variant::ZTM7720, steps, 1, 44.9, 500},  {Variant::ZTM7720, steps, 1, 150, 3500},
        {Variant::ZTM7720, lines, 0, 29.9, 0},    {Variant::ZTM7720, lines, 0, 30, 1000},
        {Variant::ZTM7720, lines, 0, 32.5, 1250}, {Variant::ZTM7720, lines, 0, 59, 3900},
        {Variant::ZTM7720, lines, 0, 61, 4000},   {Variant::ZTM7720, lines, 1, 60, 3000},
        {Variant::ZTM7720, lines, 1, -64, 0},     {Variant::ZTM7710, steps, 0, 64.9, 2500},
        {Variant::ZTM7710, lines, 0, 32.5, 1250}, {Variant::ZTM7710, steps, 0, 66, 3500},
    };
    for (const auto &c : cases) {
        RegisterFile registers(c.variant);
        registers.Write(Configuration2, static_cast<uint8_t>(c.configuration2));
        for (size_t i = 0; i < std::size(points); ++i) {
            registers.Write(static_cast<uint8_t>(LookupTemperature1 + i),
                            static_cast<uint8_t>(points[i].first + 64));
            registers.SetPair(static_cast<uint8_t>(LookupSpeed1 + 2 * i),
                              EncodeTach(points[i].second));
        }
        EXPECT_NEAR(LookUpRpm(registers, c.fan, c.celsius), c.rpm, 2)
            << c.configuration2 << ", fan " << c.fan << ", " << c.celsius;
        // In one table the second fan follows the first one's points.
        registers.Write(Configuration2, static_cast<uint8_t>(c.configuration2 | oneTable));
        EXPECT_EQ(LookUpRpm(registers, 1, 32.5), LookUpRpm(registers, 0, 32.5));
    }
}

/// One table of eight points for both fans, as the lookup dialog proposes it.
constexpr std::array<std::pair<int, double>, 8> curve = {{{30, 1000},
                                                          {40, 2300},
                                                          {50, 3500},
                                                          {60, 4000},
                                                          {70, 4700},
                                                          {80, 5500},
                                                          {90, 6000},
                                                          {100, 7500}}};

double CurveRpm(double celsius) {
    for (size_t i = 1; i < curve.size(); ++i) {
        if (celsius < curve[i].first) {
            const auto &[t0, r0] = curve[i - 1];
            const auto &[t1, r1] = curve[i];
            return r0 + (r1 - r0) * (celsius - t0) / (t1 - t0);
        }
    }
    return curve.back().second;
}

void SetAutomatic(TestBoard &test, int sources, int hysteresis = 5) {
    for (int i = 0; i < 8; ++i) {
        test.WriteLimit(0x22 + i, curve[static_cast<size_t>(i)].first);
        test.WriteRpm(0x2A + 2 * i, curve[static_cast<size_t>(i)].second);
    }
    test.Write(0x02, 0x8C); // lines, one table
    test.Write(0x07, sources);
    test.Write(0x3A, hysteresis);
    test.Write(0x01, 0x81);
}

TEST(FanControlTest, EachFanFollowsItsSource) {
    const struct {
        Variant variant;
        int fan, source, heated;
        bool follows;
    } cases[] = {
        {Variant::ZTM7720, 0, 0, 0, false}, {Variant::ZTM7720, 0, 1, 0, true},
        {Variant::ZTM7720, 0, 1, 1, false}, {Variant::ZTM7720, 0, 2, 1, true},
        {Variant::ZTM7720, 0, 2, 0, false}, {Variant::ZTM7720, 1, 1, 0, true},
        {Variant::ZTM7720, 1, 1, 1, false}, {Variant::ZTM7720, 1, 2, 1, true},
        {Variant::ZTM7720, 1, 0, 1, false}, {Variant::ZTM7710, 0, 1, 0, true},
        {Variant::ZTM7710, 0, 2, 0, true},  {Variant::ZTM7710, 0, 0, 0, false},
    };
    for (const auto &c : cases) {
        TestBoard test(c.variant);
        SetAutomatic(test, c.source << 2 * c.fan); // the other fan follows the board
        test.Write(0x02, 0x8E);                    // no boost
        test.SetHeaters(c.heated == 0 ? 80 : 0, c.heated == 1 ? 80 : 0);
        test.Pass(600);
        EXPECT_EQ(test.Rpm(c.fan == 0 ? tach1 : tach2) > 3000, c.follows)
            << c.fan << ", " << c.source << ", " << c.heated;
    }
}

TEST(FanControlTest, RunsAtFullSpeedWhenToldOrInDanger) {
    const double full = 8000;
    TestBoard source;
    SetAutomatic(source, 0x0B);
    source.Pass(30);
    EXPECT_NEAR(source.Rpm(tach1), full, 10);

    for (const DiodeFault fault : {DiodeFault::Open, DiodeFault::Shorted}) {
        TestBoard diode;
        SetAutomatic(diode, 0x05);
        diode.Write(0x02, 0x8E); // no boost
        diode.Arrange([=](BoardSettings &board) { board.bench.diodes[0] = fault; });
        diode.Pass(30);
        EXPECT_NEAR(diode.Rpm(tach1), full, 10);
    }

    TestBoard boost;
    boost.WriteRpm(manual1, 1500);
    boost.WriteLimit(0x13, 20); // of the other diode
    boost.Pass(30);
    EXPECT_NEAR(boost.Rpm(tach1), full, 10);
    boost.Write(0x02, 0x86);
    boost.Pass(30);
    EXPECT_NEAR(boost.Rpm(tach1), 1500, 10) << "boost disabled";
}

TEST(FanControlTest, TheLookupHysteresisHoldsTheSpeedWhileItCools) {
    TestBoard test;
    SetAutomatic(test, 0x00, 10); // both fans by the slow board
    const auto air = [&](double celsius) {
        test.Arrange([=](BoardSettings &board) { board.bench.ambientCelsius = celsius; });
        test.Pass(1800);
        return test.Celsius(0x40);
    };
    const double warm = air(50);
    const double warmRpm = test.Rpm(tach1);
    EXPECT_NEAR(warmRpm, CurveRpm(warm), 30);
    const double cooler = air(44);
    ASSERT_GT(warm - cooler, 3);
    EXPECT_NEAR(test.Rpm(tach1), warmRpm, 30) << "not yet";
    const double cool = air(35);
    EXPECT_NEAR(test.Rpm(tach1), CurveRpm(cool + 10), 30) << "at its distance";
    const double warmAgain = air(44);
    EXPECT_NEAR(test.Rpm(tach1), CurveRpm(std::max(warmAgain, cool + 10)), 30);
}

TEST(FanControlTest, AClosedLoopSettlesOnItsCurveFromColdAndFromHot) {
    constexpr int hysteresis = 5;
    const struct {
        const char *what;
        int heaterBefore;
        double rpmBefore;
        bool isNoisy;
        double mostCelsius, mostRpm; ///< how far the settled loop may wander
    } cases[] = {{"cold", 0, 8000, false, 0.1, 10},
                 {"hot", 100, 1200, false, 0.1, 10},
                 {"cold, with noise", 0, 8000, true, 2.5, 150},
                 {"hot, with noise", 100, 1200, true, 2.5, 150}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        TestBoard test;
        test.Arrange([&](BoardSettings &board) { board.bench.isNoisy = c.isNoisy; });
        test.Write(0x02, 0x86); // the hot start shall stay hot
        test.WriteRpm(manual1, c.rpmBefore);
        test.WriteRpm(manual2, c.rpmBefore);
        test.SetHeaters(c.heaterBefore, c.heaterBefore);
        test.Pass(3600);
        const double before = test.Celsius(remote1);
        SetAutomatic(test, 0x05, hysteresis);
        test.SetHeaters(60, 0);
        test.Pass(1800);
        Extremes celsius;
        Extremes rpm;
        for (int i = 0; i < 600; ++i) {
            test.Pass(1);
            celsius.Take(test.Celsius(remote1));
            rpm.Take(test.Rpm(tach1));
        }
        EXPECT_GT(std::abs(before - celsius.most), 10) << "it came from far";
        EXPECT_LT(celsius.most - celsius.least, c.mostCelsius);
        EXPECT_LT(rpm.most - rpm.least, c.mostRpm);
        EXPECT_GE(rpm.least, CurveRpm(celsius.least) - c.mostRpm);
        EXPECT_LE(rpm.most, CurveRpm(celsius.most + hysteresis) + c.mostRpm);
    }
}

TEST(FanControlTest, AClosedLoopInStepsStaysAtOneOrSwingsWithinItsHysteresis) {
    constexpr int hysteresis = 3;
    constexpr double lagCelsius = 0.5;
    // At 60 % the heat needs the speed between two steps; at 37 % 2300 RPM are too few and 3500
    // too many.
    const struct {
        int heater;
        double coolest, hottest, slowest, fastest;
    } cases[] = {{60, 50, 60, 3500, 3500},
                 {37, 50 - hysteresis - lagCelsius, 50 + lagCelsius, 2300, 3500}};
    for (const auto &c : cases) {
        TestBoard test;
        SetAutomatic(test, 0x05, hysteresis);
        test.Write(0x02, 0x88); // steps
        test.SetHeaters(c.heater, 0);
        test.Pass(1800);
        Extremes celsius;
        Extremes rpm;
        for (int i = 0; i < 1800; ++i) {
            test.Pass(1);
            celsius.Take(test.Celsius(remote1));
            rpm.Take(test.Rpm(tach1));
        }
        EXPECT_GT(celsius.least, c.coolest) << c.heater;
        EXPECT_LT(celsius.most, c.hottest) << c.heater;
        EXPECT_NEAR(rpm.least, c.slowest, 20) << c.heater;
        EXPECT_NEAR(rpm.most, c.fastest, 20) << c.heater;
    }
}

} // namespace
} // namespace ztm::sim
