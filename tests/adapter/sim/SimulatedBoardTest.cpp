// The adapter and the passing of time; the chip and the bench have tests of their own.

#include "adapter/sim/TestBoard.h"

namespace ztm::sim {
namespace {

using Duties = std::array<int, 2>;

TEST(SimulatedBoardTest, KeepsTheHeatersWithinTheirRangeUntilItIsLoadedAnew) {
    TestBoard test;
    test.SetHeaters(256, 70000);
    EXPECT_EQ(test.Heaters(), (Duties{100, 100}));
    test.SetHeaters(-1, 255);
    EXPECT_EQ(test.Heaters(), (Duties{0, 100}));
    test.board.Arrange({.refusesFirmware = true, .bench = {}});
    EXPECT_LT(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    EXPECT_EQ(test.Heaters(), (Duties{0, 100})) << "still running";
    test.board.Arrange({.isSlow = true, .bench = {}});
    const double before = test.seconds;
    test.Load();
    EXPECT_EQ(test.Heaters(), (Duties{0, 0}));
    EXPECT_NEAR(test.seconds - before, 0.020, 1e-9) << "a slow request";
}

TEST(SimulatedBoardTest, ComparesTheWholeAddressAndNarrowsTheIndexToTwoBytes) {
    TestBoard test(Variant::ZTM7710, 0x51);
    for (const int32_t elsewhere : {0x50, 0, -1, 0x151}) {
        EXPECT_EQ(test.ReadAt(elsewhere, 0x3D), 0xFF) << elsewhere;
        test.WriteAt(elsewhere, 0x110B);
    }
    EXPECT_EQ(test.Read(0x0B), 0x8B);
    EXPECT_EQ(test.Read(0x7FFF003D), 0x33);
    const std::pair<int32_t, int> writes[] = {{0x230B, 0x23}, {-0xF5, 0xFF}, {0x12340B, 0x34}};
    for (const auto &[index, expected] : writes) {
        test.WriteAt(0x51, index);
        EXPECT_EQ(test.Read(0x0B), expected);
    }
}

TEST(SimulatedBoardTest, ShowsTheSameHoweverOftenItIsAsked) {
    const auto registers = [](int passes) {
        TestBoard test;
        test.SetBench({}, true);
        test.SetHeaters(80, 30);
        test.Write({{0x01, 0x81}});
        test.WriteRpm(0x2A, 3000);
        for (int i = 0; i < passes; ++i) {
            test.Pass(1800.0 / passes);
        }
        return test.AllRegisters();
    };
    EXPECT_EQ(registers(60'000), registers(1));
}

TEST(SimulatedBoardTest, SettlesToTheSameAfterAnyGap) {
    TestBoard watched;
    watched.SetHeaters(50, 10);
    watched.Pass(3600); // of which nothing is left out
    for (const double gapSeconds : {8 * 3600.0, 30 * 86400.0, 1e12, 1e30}) {
        TestBoard left;
        left.SetHeaters(50, 10);
        left.Pass(gapSeconds);
        EXPECT_EQ(left.AllRegisters(), watched.AllRegisters()) << gapSeconds;
    }
}

TEST(SimulatedBoardTest, AClockThatStepsBackChangesNothing) {
    TestBoard test;
    test.SetHeaters(100, 0);
    test.Pass(100);
    const auto before = test.AllRegisters();
    test.Pass(-4000);
    EXPECT_EQ(test.AllRegisters(), before);
    test.Pass(4001);
    EXPECT_NE(test.AllRegisters(), before);
}

TEST(SimulatedBoardTest, TheSeedChoosesTheNoise) {
    const auto readings = [](uint64_t seed, bool isNoisy) {
        TestBoard test;
        test.SetBench({.noiseSeed = seed}, isNoisy);
        std::vector<double> all;
        for (int i = 0; i < 20; ++i) {
            test.Pass(1);
            all.insert(all.end(), {test.Reading(remote1), test.Reading(tach1)});
        }
        return all;
    };
    EXPECT_EQ(readings(1, true), readings(1, true));
    EXPECT_NE(readings(1, true), readings(2, true));
    EXPECT_EQ(readings(1, false), readings(2, false));
}

TEST(SimulatedBoardTest, PluggedInAnewOrExchangedItHasLostWhatItWasTold) {
    const struct {
        bool isUnplugged;
        Variant variant;
        int32_t address;
    } cases[] = {{true, Variant::ZTM7720, 0x50},
                 {false, Variant::ZTM7710, 0x50},
                 {false, Variant::ZTM7720, 0x51}};
    for (const auto &[isUnplugged, variant, address] : cases) {
        TestBoard test;
        test.Write({{0x0B, 0x12}});
        test.SetHeaters(100, 100);
        test.Pass(60);
        if (isUnplugged) {
            test.board.Arrange({.isPluggedIn = false, .bench = {}});
            test.Pass(3600);
            EXPECT_EQ(test.board.Look().fanRpm[0], 0);
            EXPECT_EQ(test.board.Look().heaterWatts[0], 0);
        }
        test.board.Arrange(
            {.variant = variant, .chipAddress = address, .bench = {.isNoisy = false}});
        EXPECT_FALSE(test.board.Look().isFirmwareLoaded);
        test.Load();
        EXPECT_TRUE(test.board.Look().isFirmwareLoaded);
        EXPECT_EQ(test.Heaters(), (Duties{0, 0}));
        EXPECT_EQ(test.ReadAt(0x50 + 0x51 - address, 0x3D), 0xFF);
        test.Pass(3600);
        test.address = address;
        // Also no status is left over from the start of the fans.
        EXPECT_EQ(test.AllRegisters(), TestBoard(variant, address).AllRegisters());
        EXPECT_EQ(test.board.Look().fanRpm[1] == 0, variant == Variant::ZTM7710);
    }
}

} // namespace
} // namespace ztm::sim
