// The registers of the chip and its measuring side, through the board's entries.

#include "adapter/sim/TestBoard.h"

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

namespace ztm::sim {
namespace {

constexpr uint8_t local = 0x40;
constexpr uint8_t remote1 = 0x42;
constexpr uint8_t remote2 = 0x44;
constexpr uint8_t tach1 = 0x4A;
constexpr uint8_t tach2 = 0x4C;

bool IsWithin(int address, std::initializer_list<std::pair<int, int>> ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [address](auto range) {
        return address >= range.first && address <= range.second;
    });
}

bool IsPresent(Variant variant, int address) {
    const bool onlyZTM7720 =
        IsWithin(address, {{0x11, 0x13}, {0x18, 0x18}, {0x44, 0x45}, {0x4C, 0x4D}});
    return !IsWithin(address, {{0x14, 0x15}, {0x1B, 0x21}, {0x46, 0x49}, {0x52, 0xFF}}) &&
           !(onlyZTM7720 && variant == Variant::ZTM7710);
}

class VariantTest : public testing::TestWithParam<Variant> {};
INSTANTIATE_TEST_SUITE_P(Both, VariantTest, testing::Values(Variant::ZTM7710, Variant::ZTM7720));

TEST_P(VariantTest, KeepsWhatIsWrittenToWritableRegistersAndNothingElse) {
    TestBoard test(GetParam());
    for (int address = 0; address < 256; ++address) {
        const int before = test.Read(address);
        // Without the lock bit and the reset bit.
        const int written = ~before & (address == 0x01 ? 0xBF : address == 0x02 ? 0xFE : 0xFF);
        test.Write(address, written);
        const bool isWritable = IsPresent(GetParam(), address) && address < 0x3D;
        EXPECT_EQ(test.Read(address), isWritable ? written : before) << address;
        if (!IsPresent(GetParam(), address)) {
            EXPECT_EQ(before, 0) << address;
        }
    }
}

TEST_P(VariantTest, ResetRestoresThePowerOnValues) {
    TestBoard test(GetParam());
    const auto fresh = test.AllRegisters();
    const bool isZTM7710 = GetParam() == Variant::ZTM7710;
    const int known[][2] = {{0x01, 0x01},
                            {0x02, 0x84},
                            {0x0B, 0x8B},
                            {0x39, 0xFF},
                            {0x3E, 0x41},
                            {0x4F, 0x00},
                            {0x11, isZTM7710 ? 0x00 : 0x8B},
                            {0x3D, isZTM7710 ? 0x33 : 0x34}};
    for (const auto &[address, value] : known) {
        EXPECT_EQ(fresh.at(address), value) << address;
    }

    for (int address = 0; address < 256; ++address) {
        test.Write(address, address == 0x02 ? 0x7A : 0x5A); // 0x5A in Configuration1 locks
    }
    EXPECT_NE(test.AllRegisters(), fresh);
    test.Write(0x02, 0xFF);
    EXPECT_EQ(test.AllRegisters(), fresh);
}

TEST_P(VariantTest, TheLockHoldsLimitsAndItselfUntilAReset) {
    TestBoard test(GetParam());
    test.Write(0x01, 0x41);
    for (int address = 0; address < 0x3D; ++address) {
        if (address == 0x01 || address == 0x02 || !IsPresent(GetParam(), address)) {
            continue;
        }
        const int before = test.Read(address);
        test.Write(address, before ^ 0x10);
        const bool isLocked = address >= 0x0B && address <= 0x1A;
        EXPECT_EQ(test.Read(address), isLocked ? before : before ^ 0x10) << address;
    }
    test.Write(0x01, 0x80);
    EXPECT_EQ(test.Read(0x01), 0xC0);
    test.Write(0x02, 0x01);
    test.Write(0x0B, 0x12);
    EXPECT_EQ(test.Read(0x0B), 0x12);
}

TEST_P(VariantTest, ReadingsAreAliveAndPlausible) {
    const struct {
        uint8_t low;
        bool isTach;
        double lowest, highest, leastSpread;
    } channels[] = {
        {local, false, 27, 31, 0.4},   {remote1, false, 32, 39, 1},   {remote2, false, 32, 39, 1},
        {tach1, true, 2000, 3000, 50}, {tach2, true, 2000, 3000, 50},
    };
    const bool isZTM7710 = GetParam() == Variant::ZTM7710;
    for (const auto &channel : channels) {
        if (isZTM7710 && (channel.low == remote2 || channel.low == tach2)) {
            continue;
        }
        TestBoard test(GetParam());
        test.Arrange([](BoardSettings &settings) { settings.bench.isNoisy = true; });
        Extremes values;
        for (int i = 0; i < 600; ++i, test.Pass(1)) {
            values.Take(channel.isTach ? test.Rpm(channel.low) : test.Celsius(channel.low));
        }
        EXPECT_GE(values.least, channel.lowest) << int{channel.low};
        EXPECT_LE(values.most, channel.highest) << int{channel.low};
        EXPECT_GE(values.most - values.least, channel.leastSpread) << int{channel.low};
    }
}

/// Changes every reading by much.
void Upset(TestBoard &test) {
    test.Arrange([](BoardSettings &settings) {
        settings.bench.ambientCelsius = 60;
        settings.bench.fans = {FanFault::Stalled, FanFault::Stalled};
    });
    test.Pass(60);
}

TEST(ChipTest, ReadingTheLowRegisterHoldsTheHighOneForOneRead) {
    for (const uint8_t low : {local, remote1, remote2, tach1, tach2}) {
        TestBoard test;
        const uint8_t high = test.Read(low + 1);
        test.Read(low);
        Upset(test);
        EXPECT_EQ(test.Read(low + 1), high) << int{low};
        EXPECT_NE(test.Read(low + 1), high) << int{low};
    }
}

TEST(ChipTest, ResetReleasesAHeldByte) {
    TestBoard test;
    const uint8_t high = test.Read(remote1 + 1);
    test.Read(remote1);
    Upset(test);
    test.Write(0x02, 0x01);
    EXPECT_NE(test.Read(remote1 + 1), high);
}

TEST(ChipTest, TemperaturesHoldWhileMonitoringIsOff) {
    TestBoard test;
    test.SetHeaters(100, 100);
    test.Pass(10);
    const double held = test.Celsius(remote1);
    test.Write(0x01, 0x00);
    test.Arrange([](BoardSettings &settings) { settings.bench.fans[0] = FanFault::Stalled; });
    test.WriteLimit(0x0E, 0);
    test.Pass(10);
    EXPECT_EQ(test.Celsius(remote1), held);
    EXPECT_EQ(test.Read(0x4F), 0) << "nothing new is concluded from it";
    EXPECT_EQ(test.Rpm(tach1), 0) << "fans go on";
    test.Write(0x01, 0x01);
    test.Pass(1);
    EXPECT_GT(test.Celsius(remote1), held + 5);
    EXPECT_EQ(test.Read(0x4F), 0x20);
}

TEST(ChipTest, ConvertsAtItsRate) {
    const std::pair<int, double> rates[] = {{0x00, 25.6},  {0x01, 12.8},  {0x06, 0.4}, {0x09, 0.05},
                                            {0x0A, 0.025}, {0x0F, 0.025}, {0xF0, 25.6}};
    for (const auto &[code, interval] : rates) {
        TestBoard test;
        test.Write(0x05, code);
        test.SetHeaters(100, 0);
        // Every conversion shows: at full power the diode warms by more than a step in 25 ms.
        int conversions = 0;
        const double passing = interval * 8;
        double last = test.Celsius(remote1);
        for (double passed = 0; passed < passing; passed += 0.025) {
            test.Pass(0.025);
            const double now = test.Celsius(remote1);
            conversions += now != last ? 1 : 0;
            last = now;
        }
        EXPECT_NEAR(conversions, 8, 1) << code;
    }
}

TEST(ChipTest, AFasterRateDoesNotWaitForTheSlowerOnesEnd) {
    TestBoard test;
    test.Write(0x05, 0x00);
    test.Pass(1);
    test.SetHeaters(100, 0);
    const double before = test.Celsius(remote1);
    test.Pass(2);
    EXPECT_EQ(test.Celsius(remote1), before);
    test.Write(0x05, 0x0A);
    test.Pass(0.1);
    EXPECT_GT(test.Celsius(remote1), before + 1);
}

TEST(ChipTest, AveragingCalmsTheReading) {
    const auto spread = [](bool isAveraging) {
        TestBoard test;
        test.Arrange([](BoardSettings &settings) { settings.bench.isNoisy = true; });
        test.Write(0x01, isAveraging ? 0x03 : 0x01);
        test.Pass(2);
        Extremes values;
        for (int i = 0; i < 200; ++i, test.Pass(0.025)) {
            values.Take(test.Celsius(local));
        }
        return values.most - values.least;
    };
    EXPECT_GT(spread(false), 0.08);
    EXPECT_LT(spread(true), 0.7 * spread(false));
}

TEST(ChipTest, AddsTheOffset) {
    const std::pair<int, double> offsets[] = {{0x00, 0}, {0x05, 5}, {0xFB, -5}, {0x7F, 127}};
    for (const auto &[low, offset] : {std::pair(local, 0x16), {remote1, 0x17}, {remote2, 0x18}}) {
        for (const auto &[data, celsius] : offsets) {
            TestBoard test;
            const double plain = test.Celsius(low);
            test.Write(offset, data);
            test.Pass(0.1);
            EXPECT_NEAR(test.Celsius(low), plain + celsius, 0.04) << offset << ": " << data;
        }
        TestBoard test;
        test.Write(offset, 0x80);
        test.Pass(0.1);
        EXPECT_EQ(test.Celsius(low), -64);
    }
}

TEST(LimitWatchTest, CountsItsQueueAndGoesOnlyBehindItsHysteresis) {
    constexpr int hysteresis = 32;
    const struct {
        int queue;
        std::vector<std::pair<int, bool>> readings; // excess, exceeded after it
    } cases[] = {
        {0, {{0, false}, {1, true}, {-31, true}, {-32, false}, {1, true}}},
        {1, {{5, true}, {0, true}, {-40, false}}},
        {3,
         {{1, false},
          {1, false},
          {0, false},
          {9, false},
          {9, false},
          {9, true},
          {-32, false},
          {9, false},
          {9, false},
          {9, true}}},
    };
    for (const auto &[queue, readings] : cases) {
        LimitWatch watch;
        int number = 0;
        for (const auto &[excess, isExceeded] : readings) {
            watch.Take(excess, hysteresis, queue);
            EXPECT_EQ(watch.IsExceeded(), isExceeded) << queue << ", reading " << number;
            ++number;
        }
    }
}

TEST(ChipTest, TheFaultQueueIsThatOfItsRegister) {
    for (const int queue : {1, 4, 15}) {
        TestBoard test;
        test.Write(0x06, 0xF0 | queue);
        test.Write(0x05, 0x06); // a conversion each 0.4 s
        test.Pass(1);
        test.WriteLimit(0x0B, 0);
        double passed = 0;
        while (test.Read(0x4F) == 0 && passed < 20) {
            test.Pass(0.1);
            passed += 0.1;
        }
        EXPECT_NEAR(passed, 0.4 * queue - 0.2, 0.21) << queue;
    }
}

} // namespace
} // namespace ztm::sim
