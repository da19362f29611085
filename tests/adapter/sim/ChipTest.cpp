// The registers of the chip and its measuring side, through the board's entries.

#include "adapter/sim/TestBoard.h"

namespace ztm::sim {
namespace {

constexpr int none = -1;
/// What the registers from 0x00 to 0x3F of a ZTM7720 hold after a reset.
const std::vector resetValues = {
    0x20, 0x01, 0x84, 0x44, 0x00, 0x0A, 0x01, 0x09, 0x52, 0x10, 0x00, 0x8B, 0x54, 0x95, 0x8B, 0x54,
    0x95, 0x8B, 0x54, 0x95, none, none, 0x00, 0x00, 0x00, 0xFF, 0x05, none, none, none, none, none,
    none, none, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x05, 0x00, 0x11, 0x34, 0x41, 0x00};

TEST(ChipTest, KeepsWhatIsWrittenUntilAResetWhereARegisterIsWritableAndNotLocked) {
    for (const Variant variant : {Variant::ZTM7710, Variant::ZTM7720}) {
        const bool isSmall = variant == Variant::ZTM7710;
        std::vector<int> values = resetValues;
        values.resize(256, 0);
        if (isSmall) {
            values[0x11] = values[0x12] = values[0x13] = values[0x18] = none;
            values[0x3D] = 0x33;
        }
        for (const bool isLocked : {false, true}) {
            SCOPED_TRACE(testing::Message() << isSmall << isLocked);
            TestBoard test(variant);
            const std::vector<int> fresh = test.AllRegisters();
            test.Write({{0x01, isLocked ? 0x41 : 0x01}});
            for (int address = 0; address < 256; ++address) {
                const int value = values[static_cast<size_t>(address)];
                const int before = test.Read(address);
                const bool isReading = (address >= local && address < (isSmall ? remote2 : 0x46)) ||
                                       (address >= tach1 && address < (isSmall ? tach2 : 0x4E));
                if (address != 0x01 && !isReading) {
                    EXPECT_EQ(before, std::max(value, 0)) << address;
                }
                const int lockOrReset = address == 0x01 ? 0x40 : address == 0x02 ? 0x01 : 0x00;
                const int written = ~before & 0xFF & ~lockOrReset;
                test.Write({{address, written}});
                const bool isHeld = isLocked && address >= 0x0B && address <= 0x1A;
                int expected = value == none || address >= 0x3D || isHeld ? before : written;
                expected |= isLocked && address == 0x01 ? 0x40 : 0x00;
                EXPECT_EQ(test.Read(address), expected) << address;
            }
            test.Write({{0x02, 0xFF}});
            EXPECT_EQ(test.AllRegisters(), fresh);
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

TEST(ChipTest, ConvertsAtItsRateAndWaitsForNoSlowerOnesEnd) {
    const std::pair<int, double> rates[] = {{0x00, 25.6},  {0x01, 12.8},  {0x06, 0.4}, {0x09, 0.05},
                                            {0x0A, 0.025}, {0x0F, 0.025}, {0xF0, 25.6}};
    for (const auto &[code, interval] : rates) {
        TestBoard test;
        test.Write({{0x05, 0x00}});
        test.Pass(2);
        test.SetHeaters(100, 0);
        // Every conversion shows: at full power the diode warms by more than a step in 25 ms.
        const auto untilTheNext = [&test] {
            const double last = test.Reading(remote1);
            return test.SecondsUntil([&] { return test.Reading(remote1) != last; });
        };
        test.Write({{0x05, code}});
        EXPECT_LT(untilTheNext(), interval + 0.01) << code;
        EXPECT_NEAR(untilTheNext(), interval, 0.01) << code;
    }
}

TEST(ChipTest, ReadingsAreAliveAndPlausibleAndAveragingCalmsThem) {
    constexpr int averaging = 0x03; // Configuration1
    const struct {
        int low, configuration1;
        double seconds, lowest, highest, leastSpread, mostSpread;
    } channels[] = {
        {local, 0x01, 600, 27, 31, 0.4, 4},        {remote1, 0x01, 600, 32, 39, 1, 7},
        {remote2, 0x01, 600, 32, 39, 1, 7},        {tach1, 0x01, 600, 2000, 3000, 50, 1000},
        {tach2, 0x01, 600, 2000, 3000, 50, 1000},  {local, 0x01, 5, 27, 31, 0.08, 4},
        {local, averaging, 5, 27, 31, 0.01, 0.06},
    };
    for (const auto &c : channels) {
        TestBoard test;
        test.SetBench({}, true);
        test.Write({{0x01, c.configuration1}});
        const Extremes seen = test.Watch(c.low, c.seconds, c.seconds / 200);
        EXPECT_GE(seen.least, c.lowest) << c.low;
        EXPECT_LE(seen.most, c.highest) << c.low;
        EXPECT_GE(seen.Spread(), c.leastSpread) << c.low;
        EXPECT_LE(seen.Spread(), c.mostSpread) << c.low;
    }
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
