// The adapter and the passing of time; the chip and the bench have tests of their own.

#include "adapter/sim/TestBoard.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace ztm::sim {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// A folder of its own for each test.
class FirmwareTest : public testing::Test {
protected:
    FirmwareTest() { fs::create_directories(folder); }
    ~FirmwareTest() override { fs::remove_all(folder); }

    /// The path of a new file as the program would pass it on.
    std::string File(const std::string &name, const std::string &text) const {
        std::ofstream(folder / name) << text;
        return folder.string() + "\\" + name;
    }

    const fs::path folder =
        fs::path(testing::TempDir()) / ("ztm\\firmware " + std::to_string(getpid()));
};

TEST_F(FirmwareTest, LoadsASoundFileAndRefusesAnyOther) {
    const std::string sound = File("sound.Hex", ":03001000AABBCCBC\n:00000001FF\n");
    const std::string withSlash = (folder / "sound.Hex").string();
    const std::string broken = File("broken.Hex", ":03001000AABBCCBD\n:00000001FF\n");
    const std::string empty = File("empty.Hex", "");
    const std::string missing = folder.string() + "\\missing.Hex";
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string subfolder = folder.string() + "\\folder";
    fs::create_directory(folder / "folder");

    const auto loads = [](const char *path) {
        SimulatedBoard board;
        const bool loaded = board.LoadFirmWare(path) >= 0;
        EXPECT_EQ(board.VendorIORequest(handshakeRequest, 0, 0, 0, 0, nullptr) == 0, loaded);
        return loaded;
    };
    for (const std::string &path : {sound, withSlash}) {
        EXPECT_TRUE(loads(path.c_str())) << path;
    }
    for (const std::string &path : {broken, empty, missing, pipe, subfolder, std::string()}) {
        EXPECT_FALSE(loads(path.c_str())) << path;
    }
    EXPECT_FALSE(loads(nullptr));
}

TEST_F(FirmwareTest, AFailedLoadKeepsTheAdapterRunningAndASecondLoadSwitchesTheHeatersOff) {
    TestBoard test;
    test.SetHeaters(30, 40);
    EXPECT_LT(test.board.LoadFirmWare(File("broken.Hex", ":").c_str()), 0);
    EXPECT_THAT(test.Heaters(), ElementsAre(30, 40));
    EXPECT_EQ(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    EXPECT_THAT(test.Heaters(), ElementsAre(0, 0));
}

TEST(SimulatedBoardTest, KeepsHeaterDutiesWithinZeroToAHundredPercent) {
    const struct {
        int32_t first, second;
        std::array<uint8_t, 2> expected; // on top of the line before
    } steps[] = {
        {20, 80, {20, 80}}, {255, 30, {20, 30}}, {100, 255, {100, 30}},    {101, 254, {100, 100}},
        {0, 1, {0, 1}},     {255, 255, {0, 1}},  {256, 70000, {100, 100}}, {-1, 255, {0, 100}},
    };
    TestBoard test;
    for (const auto &[first, second, expected] : steps) {
        test.SetHeaters(first, second);
        EXPECT_EQ(test.Heaters(), expected) << first << ", " << second;
    }
}

TEST(SimulatedBoardTest, AnswersOnlyAtItsOwnAddress) {
    TestBoard test(Variant::ZTM7710, 0x51);
    for (const int32_t elsewhere : {0x50, 0, -1, 0x151}) {
        EXPECT_EQ(test.ReadAt(elsewhere, 0x3D), 0xFF) << elsewhere;
        EXPECT_EQ(test.board.VendorIORequest(registerRequest, elsewhere, 0x110B, 0, 0, nullptr), 0);
    }
    EXPECT_EQ(test.ReadAt(0x51, 0x3D), 0x33);
    EXPECT_EQ(test.Read(0x0B), 0x8B);
}

TEST(SimulatedBoardTest, NarrowsTheIndexToTwoBytes) {
    TestBoard test;
    EXPECT_EQ(test.Read(0x7FFF003E), 0x41);
    test.Write(0x10B, 0x22); // carries into the data byte
    EXPECT_EQ(test.Read(0x0B), 0x23);
    test.Write(0x0B, -1);
    EXPECT_EQ(test.Read(0x0B), 0xFF);
    test.Write(0x0B, 0x1234);
    EXPECT_EQ(test.Read(0x0B), 0x34);
}

TEST(SimulatedBoardTest, ShowsTheSameHoweverOftenItIsAsked) {
    TestBoard often;
    TestBoard once;
    for (TestBoard *test : {&often, &once}) {
        test->Arrange([](BoardSettings &settings) { settings.bench.isNoisy = true; });
        test->SetHeaters(80, 30);
        test->Write(0x01, 0x81);
        test->WriteRpm(0x2A, 3000);
    }
    constexpr double halfAnHour = 1800;
    const double end = often.seconds + halfAnHour;
    while (often.seconds + 0.03 < end) {
        often.Pass(0.03);
    }
    often.Pass(end - often.seconds);
    once.Pass(halfAnHour);
    EXPECT_EQ(once.AllRegisters(), often.AllRegisters());
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
        const BoardState expected = watched.board.Look();
        const BoardState state = left.board.Look();
        EXPECT_NEAR(state.boardCelsius, expected.boardCelsius, 0.01) << gapSeconds;
        for (size_t i = 0; i < Bench::remoteCount; ++i) {
            EXPECT_NEAR(state.remoteCelsius[i], expected.remoteCelsius[i], 0.01) << gapSeconds;
            EXPECT_NEAR(state.fanRpm[i], expected.fanRpm[i], 0.1) << gapSeconds;
        }
    }
}

TEST(SimulatedBoardTest, AClockThatStepsBackChangesNothing) {
    TestBoard test;
    test.SetHeaters(100, 0);
    test.Pass(100);
    const auto before = test.AllRegisters();
    test.seconds -= 4000;
    EXPECT_EQ(test.AllRegisters(), before);
    test.seconds += 4001;
    EXPECT_NE(test.AllRegisters(), before);
}

TEST(SimulatedBoardTest, TheSeedChoosesTheNoise) {
    const auto readings = [](uint64_t seed, bool isNoisy) {
        TestBoard test;
        test.Arrange([&](BoardSettings &settings) {
            settings.bench.isNoisy = isNoisy;
            settings.bench.noiseSeed = seed;
        });
        std::vector<double> all;
        for (int i = 0; i < 20; ++i) {
            test.Pass(1);
            all.push_back(test.Celsius(0x42));
            all.push_back(test.Rpm(0x4A));
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
    test.Write(0x0B, 0x12);
    test.SetHeaters(100, 100);
    test.Pass(60);
    test.Arrange([](BoardSettings &settings) { settings.isPluggedIn = false; });
    test.Pass(3600);
    const BoardState off = test.board.Look();
    EXPECT_FALSE(off.isFirmwareLoaded);
    EXPECT_EQ(off.fanRpm[0], 0);
    EXPECT_EQ(off.heaterWatts[0], 0);
    test.Arrange([](BoardSettings &settings) { settings.isPluggedIn = true; });
    EXPECT_NE(test.board.VendorIORequest(handshakeRequest, 0, 0, 0, 0, nullptr), 0);
    EXPECT_EQ(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    test.Pass(3600);
    EXPECT_EQ(test.AllRegisters(), fresh) << "also no status left over from the start of the fans";
    EXPECT_EQ(test.Heaters(), (std::array<uint8_t, 2>{0, 0}));
}

TEST(SimulatedBoardTest, AnotherVariantOrAddressIsAnotherBoard) {
    TestBoard test;
    test.Arrange([](BoardSettings &settings) {
        settings.variant = Variant::ZTM7710;
        settings.chipAddress = 0x51;
    });
    EXPECT_FALSE(test.board.Look().isFirmwareLoaded);
    EXPECT_EQ(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    EXPECT_EQ(test.ReadAt(0x51, 0x3D), 0x33);
    EXPECT_EQ(test.ReadAt(0x50, 0x3D), 0xFF);
    EXPECT_EQ(test.board.Look().fanRpm[1], 0) << "a fan that this board has not";
}

TEST(SimulatedBoardTest, CanRefuseFirmwareAndBeSlow) {
    TestBoard test;
    test.Arrange([](BoardSettings &settings) {
        settings.refusesFirmware = true;
        settings.isSlow = true;
    });
    EXPECT_LT(test.board.LoadFirmWare(shippedFirmware.c_str()), 0);
    const double before = test.seconds;
    test.Read(0x3D);
    EXPECT_NEAR(test.seconds - before, 0.020, 1e-9);
}

} // namespace
} // namespace ztm::sim
