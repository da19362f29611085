// The registers of the chip and its measuring side, through the board's entries.

#include "adapter/sim/TestBoard.h"

#include <set>

namespace ztm::sim {
namespace {

constexpr int none = -1;
/// What the registers from 0x00 to 0x3F of a ZTM7720 hold after a reset.
const std::vector resetValues = {
    0x20, 0x01, 0x84, 0x44, 0x00, 0x0A, 0x01, 0x09, 0x52, 0x10, 0x00, 0x8B, 0x54, 0x95, 0x8B, 0x54,
    0x95, 0x8B, 0x54, 0x95, none, none, 0x00, 0x00, 0x00, 0xFF, 0x05, none, none, none, none, none,
    none, none, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x05, 0x00, 0x11, 0x34, 0x41, 0x00};

void ExpectRegistersOf(Variant variant, bool isLocked) {
    const bool isSmall = variant == Variant::ZTM7710;
    std::set readings = {local, remote1, tach1, remote2, tach2};
    std::vector<int> values = resetValues;
    values.resize(256, 0);
    if (isSmall) {
        readings = {local, remote1, tach1};
        values[0x11] = values[0x12] = values[0x13] = values[0x18] = none;
        values[0x3D] = 0x33;
    }
    TestBoard test(variant);
    const std::vector<int> fresh = test.AllRegisters();
    test.Write({{0x01, isLocked ? 0x41 : 0x01}});
    for (int address = 0; address < 256; ++address) {
        const int value = values[static_cast<size_t>(address)];
        const int before = test.Read(address);
        if (address != 0x01 && !readings.contains(address & ~1)) {
            EXPECT_EQ(before, std::max(value, 0)) << address;
        }
        // Without the lock bit and the reset bit.
        const int written = ~before & (address == 0x01 ? 0xBF : address == 0x02 ? 0xFE : 0xFF);
        test.Write({{address, written}});
        const bool isHeld = isLocked && address >= 0x0B && address <= 0x1A;
        const int expected = value == none || address >= 0x3D || isHeld ? before : written;
        EXPECT_EQ(test.Read(address), address == 0x01 && isLocked ? written | 0x40 : expected)
            << address;
    }
    test.Write({{0x02, 0xFF}});
    EXPECT_EQ(test.AllRegisters(), fresh);
}

TEST(ChipTest, KeepsWhatIsWrittenUntilAResetWhereARegisterIsWritableAndNotLocked) {
    for (const Variant variant : {Variant::ZTM7710, Variant::ZTM7720}) {
        for (const bool isLocked : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << static_cast<int>(variant) << (isLocked ? ", locked" : ""));
            ExpectRegistersOf(variant, isLocked);
        }
    }
}

TEST(ChipTest, ReadingTheLowRegisterHoldsTheHighOneForOneReadOrUntilAReset) {
    for (const int low : {local, remote1, remote2, tach1, tach2}) {
        for (const bool isReset : {false, true}) {
            TestBoard test;
            const int high = test.Read(low + 1);
            test.Read(low);
            // Changes every reading by much.
            test.SetBench({.ambientCelsius = 60, .fans = {FanFault::Stalled, FanFault::Stalled}});
            test.Pass(60);
            if (isReset) {
                test.Write({{0x02, 0x01}});
            } else {
                EXPECT_EQ(test.Read(low + 1), high) << low;
            }
            EXPECT_NE(test.Read(low + 1), high) << low;
        }
    }
}

TEST(ChipTest, TemperaturesHoldWhileMonitoringIsOff) {
    TestBoard test;
    test.SetHeaters(100, 100);
    test.Pass(10);
    const double held = test.Reading(remote1);
    test.Write({{0x01, 0x00}, {0x0E, Limit(0)}});
    test.SetBench({.fans = {FanFault::Stalled}});
    test.Pass(10);
    EXPECT_EQ(test.Reading(remote1), held);
    EXPECT_EQ(test.Read(0x4F), 0) << "nothing new is concluded from it";
    EXPECT_EQ(test.Reading(tach1), 0) << "fans go on";
    test.Write({{0x01, 0x01}});
    test.Pass(1);
    EXPECT_GT(test.Reading(remote1), held + 5);
    EXPECT_EQ(test.Read(0x4F), 0x20);
}

TEST(ChipTest, ConvertsAtItsRate) {
    const std::pair<int, double> rates[] = {{0x00, 25.6},  {0x01, 12.8},  {0x06, 0.4}, {0x09, 0.05},
                                            {0x0A, 0.025}, {0x0F, 0.025}, {0xF0, 25.6}};
    for (const auto &[code, interval] : rates) {
        TestBoard test;
        test.Write({{0x05, code}});
        test.SetHeaters(100, 0);
        // Every conversion shows: at full power the diode warms by more than a step in 25 ms.
        const auto untilTheNext = [&test] {
            const double last = test.Reading(remote1);
            return test.SecondsUntil([&] { return test.Reading(remote1) != last; });
        };
        untilTheNext();
        EXPECT_NEAR(untilTheNext(), interval, 0.01) << code;
    }
}

TEST(ChipTest, AFasterRateDoesNotWaitForTheSlowerOnesEnd) {
    TestBoard test;
    test.Write({{0x05, 0x00}});
    test.Pass(1);
    test.SetHeaters(100, 0);
    const double before = test.Reading(remote1);
    test.Pass(2);
    EXPECT_EQ(test.Reading(remote1), before);
    test.Write({{0x05, 0x0A}});
    test.Pass(0.1);
    EXPECT_GT(test.Reading(remote1), before + 1);
}

TEST(ChipTest, ReadingsAreAliveAndPlausible) {
    const struct {
        int low;
        double lowest, highest, leastSpread;
    } channels[] = {
        {local, 27, 31, 0.4},    {remote1, 32, 39, 1},    {remote2, 32, 39, 1},
        {tach1, 2000, 3000, 50}, {tach2, 2000, 3000, 50},
    };
    for (const auto &[low, lowest, highest, leastSpread] : channels) {
        TestBoard test;
        test.SetBench({}, true);
        const Extremes seen = test.Watch(low, 600);
        EXPECT_GE(seen.least, lowest) << low;
        EXPECT_LE(seen.most, highest) << low;
        EXPECT_GE(seen.Spread(), leastSpread) << low;
    }
}

TEST(ChipTest, AveragingCalmsTheReading) {
    const auto spread = [](int configuration1) {
        TestBoard test;
        test.SetBench({}, true);
        test.Write({{0x01, configuration1}});
        test.Pass(2);
        return test.Watch(local, 5, 0.025).Spread();
    };
    EXPECT_GT(spread(0x01), 0.08);
    EXPECT_LT(spread(0x03), 0.7 * spread(0x01));
}

TEST(ChipTest, AddsTheOffset) {
    const std::pair<int, double> offsets[] = {{0x00, 0}, {0x05, 5}, {0xFB, -5}, {0x7F, 127}};
    for (const auto &[low, offset] : {std::pair(local, 0x16), {remote1, 0x17}, {remote2, 0x18}}) {
        TestBoard test;
        const double plain = test.Reading(low);
        for (const auto &[data, celsius] : offsets) {
            test.Write({{offset, data}});
            test.Pass(0.1);
            EXPECT_NEAR(test.Reading(low), plain + celsius, 0.04) << offset << ": " << data;
        }
        test.Write({{offset, 0x80}});
        test.Pass(0.1);
        EXPECT_EQ(test.Reading(low), -64);
    }
}

TEST(ChipTest, TheFaultQueueIsThatOfItsRegister) {
    for (const int queue : {1, 4, 15}) {
        TestBoard test;
        test.Write({{0x06, 0xF0 | queue}, {0x05, 0x06}}); // a conversion each 0.4 s
        test.Pass(1);
        test.Write({{0x0B, Limit(0)}});
        const double passed = test.SecondsUntil([&] { return test.Read(0x4F) != 0; });
        EXPECT_NEAR(passed, 0.4 * queue - 0.2, 0.21) << queue;
    }
}

TEST(LimitWatchTest, CountsItsQueueAndGoesOnlyBehindItsHysteresis) {
    const struct {
        int queue;
        std::vector<int> excesses;
        std::vector<bool> isExceeded; // after each
    } cases[] = {
        {0, {0, 1, -31, -32, 1}, {0, 1, 1, 0, 1}},
        {1, {5, 0, -40}, {1, 1, 0}},
        {3, {1, 1, 0, 9, 9, 9, -32, 9, 9, 9}, {0, 0, 0, 0, 0, 1, 0, 0, 0, 1}},
    };
    for (const auto &[queue, excesses, isExceeded] : cases) {
        LimitWatch watch;
        std::vector<bool> seen;
        for (const int excess : excesses) {
            watch.Take(excess, 32, queue);
            seen.push_back(watch.IsExceeded());
        }
        EXPECT_EQ(seen, isExceeded) << queue;
    }
}

TEST(EncodingsTest, EncodesFullScaleRoundingAndLimits) {
    const std::pair<double, int> temperatures[] = {
        {0, 0x4000},   {25.375, 0x5960}, {-0.125, 0x3FE0}, {25.38, 0x5960},
        {-64, 0x0000}, {-70, 0x0000},    {191.97, 0xFFF8}, {500, 0xFFF8}};
    const auto word = [](RegisterPair pair) { return pair.high * 256 + pair.low; };
    for (const auto &[celsius, expected] : temperatures) {
        const RegisterPair pair = EncodeTemperature(TemperatureSteps(celsius));
        EXPECT_EQ(word(pair), expected) << celsius;
        EXPECT_NEAR(DecodeTemperature(pair), std::clamp(celsius, -64.0, 191.96875), 0.5 / 32);
    }
    const std::pair<double, int> speeds[] = {{0, 0xFFFF},  {-1, 0xFFFF},   {10, 0xFFFF},
                                             {76, 0xFCA2}, {2000, 0x099A}, {1e9, 1}};
    for (const auto &[rpm, count] : speeds) {
        EXPECT_EQ(word(EncodeTach(rpm)), count) << rpm;
    }
    EXPECT_NEAR(DecodeTach(EncodeTach(2000)), 2000, 1);
    EXPECT_EQ(DecodeTach({0, 0}), 0);
    EXPECT_EQ(DecodeTach({0xFF, 0xFF}), 0);
}

} // namespace
} // namespace ztm::sim
