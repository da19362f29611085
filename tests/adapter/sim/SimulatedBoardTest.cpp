// The adapter and the passing of time; the chip and the bench have tests of their own.

#include "adapter/sim/TestBoard.h"

namespace ztm::sim {
namespace {

using Duties = std::array<int, 2>;

TEST(SimulatedBoardTest, AFailedLoadKeepsTheAdapterRunningAndASecondLoadSwitchesTheHeatersOff) {
    TestBoard test;
    test.SetHeaters(30, 40);
    EXPECT_LT(test.board.LoadFirmWare(""), 0);
    EXPECT_EQ(test.Heaters(), (Duties{30, 40}));
    test.Load();
    EXPECT_EQ(test.Heaters(), (Duties{0, 0}));
}

TEST(SimulatedBoardTest, KeepsHeaterDutiesWithinZeroToAHundredPercent) {
    TestBoard test;
    test.SetHeaters(256, 70000);
    EXPECT_EQ(test.Heaters(), (Duties{100, 100}));
    test.SetHeaters(-1, 255);
    EXPECT_EQ(test.Heaters(), (Duties{0, 100}));
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
    const auto registers = [](double step) {
        TestBoard test;
        test.SetBench({}, true);
        test.SetHeaters(80, 30);
        test.Write({{0x01, 0x81}});
        test.WriteRpm(0x2A, 3000);
        const double end = test.seconds + 1800;
        while (test.seconds + step < end) {
            test.Pass(step);
        }
        test.Pass(end - test.seconds);
        return test.AllRegisters();
    };
    EXPECT_EQ(registers(0.03), registers(1800));
}

TEST(SimulatedBoardTest, SettlesToTheSameAfterAnyGap) {
    TestBoard watched;
    watched.SetHeaters(50, 10);
    for (int i = 0; i < 16; ++i) {
        watched.Pass(1800);
    }
    for (const double gapSeconds : {3600.0, 8 * 3600.0, 30 * 86400.0, 1e12, 1e30}) {
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

TEST(SimulatedBoardTest, PluggedInAnewItHasLostWhatItWasTold) {
    TestBoard test;
    const auto fresh = test.AllRegisters();
    test.Write({{0x0B, 0x12}});
    test.SetHeaters(100, 100);
    test.Pass(60);
    BoardSettings settings = test.board.Settings();
    settings.isPluggedIn = false;
    test.board.Arrange(settings);
    test.Pass(3600);
    const BoardState off = test.board.Look();
    EXPECT_FALSE(off.isFirmwareLoaded);
    EXPECT_EQ(off.fanRpm[0], 0);
    EXPECT_EQ(off.heaterWatts[0], 0);
    settings.isPluggedIn = true;
    test.board.Arrange(settings);
    test.Load();
    test.Pass(3600);
    EXPECT_EQ(test.AllRegisters(), fresh) << "also no status left over from the start of the fans";
    EXPECT_EQ(test.Heaters(), (Duties{0, 0}));
}

TEST(SimulatedBoardTest, AnotherVariantOrAddressIsAnotherBoard) {
    TestBoard test;
    BoardSettings settings = test.board.Settings();
    for (const int32_t address : {0x50, 0x51}) {
        settings.variant = Variant::ZTM7710;
        settings.chipAddress = address;
        test.board.Arrange(settings);
        EXPECT_FALSE(test.board.Look().isFirmwareLoaded);
        test.Load();
        EXPECT_EQ(test.ReadAt(address, 0x3D), 0x33);
    }
    EXPECT_EQ(test.ReadAt(0x50, 0x3D), 0xFF);
    EXPECT_EQ(test.board.Look().fanRpm[1], 0) << "a fan that this board has not";
}

TEST(SimulatedBoardTest, CanRefuseFirmwareAndBeSlow) {
    TestBoard test;
    test.board.Arrange({.refusesFirmware = true, .isSlow = true, .bench = {}});
    EXPECT_LT(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    const double before = test.seconds;
    test.Read(0x3D);
    EXPECT_NEAR(test.seconds - before, 0.020, 1e-9);
}

} // namespace
} // namespace ztm::sim
