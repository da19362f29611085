#include "adapter/sim/SimulatedBoard.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace ztm::sim {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr int16_t registerRequest = 0xDE;
constexpr int16_t handshakeRequest = 0xDF;
constexpr int16_t setHeaterRequest = 0xDB;
constexpr int16_t readHeaterRequest = 0xDA;

constexpr uint8_t local = 0x40;
constexpr uint8_t remote1 = 0x42;
constexpr uint8_t remote2 = 0x44;
constexpr uint8_t tach1 = 0x4A;
constexpr uint8_t tach2 = 0x4C;

/// The firmware file that goes with the program.
const std::string shippedFirmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

/// A board on a clock that stands still until it is told to move.
struct TestBoard {
    explicit TestBoard(Variant variant = Variant::ZTM7720, int32_t address = 0x50)
        : address(address), board(variant, address, [this] { return seconds; }) {
        EXPECT_EQ(board.LoadFirmWare(shippedFirmware.c_str()), 0);
    }

    uint8_t ReadAt(int32_t device, int32_t index) {
        uint8_t reply = 0;
        EXPECT_EQ(board.VendorIORequest(registerRequest, device, index, 1, 1, &reply), 0);
        return reply;
    }
    uint8_t Read(int32_t index) { return ReadAt(address, index); }
    void Write(int registerAddress, int data) {
        const int32_t index = data * 256 + registerAddress;
        EXPECT_EQ(board.VendorIORequest(registerRequest, address, index, 0, 0, nullptr), 0);
    }
    std::map<int, int> AllRegisters() {
        std::map<int, int> all;
        for (int registerAddress = 0; registerAddress < 256; ++registerAddress) {
            all[registerAddress] = Read(registerAddress);
        }
        return all;
    }
    double Celsius(uint8_t low) {
        const int fraction = Read(low);
        return Read(low + 1) + fraction / 256.0 - 64;
    }
    double Rpm(uint8_t low) {
        const int lowByte = Read(low);
        return 4915200.0 / (Read(low + 1) * 256 + lowByte);
    }
    void SetHeaters(int32_t first, int32_t second) {
        EXPECT_EQ(board.VendorIORequest(setHeaterRequest, first, second, 0, 0, nullptr), 0);
    }
    std::array<uint8_t, 2> Heaters() {
        std::array<uint8_t, 3> reply{};
        EXPECT_EQ(board.VendorIORequest(readHeaterRequest, 0, 0, 1, 3, reply.data()), 0);
        return {reply[0], reply[1]};
    }

    double seconds = 5000;
    int32_t address;
    SimulatedBoard board;
};

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
        const int written = ~before & (address == 0x02 ? 0xFE : 0xFF);
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
        test.Write(address, address == 0x02 ? 0x7A : 0x5A);
    }
    EXPECT_NE(test.AllRegisters(), fresh);
    test.Write(0x02, 0xFF);
    EXPECT_EQ(test.AllRegisters(), fresh);
}

TEST_P(VariantTest, ReadingsAreAliveAndPlausible) {
    const bool isZTM7710 = GetParam() == Variant::ZTM7710;
    const struct {
        uint8_t low;
        bool isTach;
        double lowest, highest, leastSpread;
    } channels[] = {
        {local, false, 27, 29, 0.5},   {remote1, false, 33, 37, 1},   {remote2, false, 33, 37, 1},
        {tach1, true, 2000, 3000, 50}, {tach2, true, 2000, 3000, 50},
    };
    for (const auto &channel : channels) {
        if (isZTM7710 && (channel.low == remote2 || channel.low == tach2)) {
            continue;
        }
        TestBoard test(GetParam());
        double least = 1e9;
        double most = 0;
        for (int i = 0; i < 600; ++i, test.seconds += 1) {
            const double value = channel.isTach ? test.Rpm(channel.low) : test.Celsius(channel.low);
            least = std::min(least, value);
            most = std::max(most, value);
        }
        EXPECT_GE(least, channel.lowest) << int{channel.low};
        EXPECT_LE(most, channel.highest) << int{channel.low};
        EXPECT_GE(most - least, channel.leastSpread) << int{channel.low};
    }
}

TEST(SimulatedBoardTest, ReadingTheLowRegisterHoldsTheHighOneForOneRead) {
    for (const uint8_t low : {local, remote1, remote2, tach1, tach2}) {
        TestBoard test;
        test.SetHeaters(100, 100);
        const uint8_t high = test.Read(low + 1);
        test.Read(low);
        // A second board on the same time shows when the high byte has moved on.
        TestBoard unread;
        unread.SetHeaters(100, 100);
        while (unread.Read(low + 1) == high && unread.seconds < 10000) {
            unread.seconds += 1;
        }
        test.seconds = unread.seconds;
        EXPECT_EQ(test.Read(low + 1), high) << int{low};
        EXPECT_EQ(test.Read(low + 1), unread.Read(low + 1)) << int{low};
        EXPECT_NE(test.Read(low + 1), high) << int{low};
    }
}

TEST(SimulatedBoardTest, ResetReleasesAHeldByte) {
    TestBoard test;
    test.Read(remote1);
    test.SetHeaters(100, 0);
    test.seconds += 600;
    test.Write(0x02, 0x01);
    EXPECT_GT(test.Read(remote1 + 1), 64 + 70);
}

TEST(SimulatedBoardTest, EachHeaterWarmsItsOwnRemoteWithALag) {
    const std::pair<uint8_t, uint8_t> heatedAndOther[] = {{remote1, remote2}, {remote2, remote1}};
    for (const auto &[heated, other] : heatedAndOther) {
        TestBoard test;
        test.SetHeaters(heated == remote1 ? 100 : 0, heated == remote2 ? 100 : 0);
        EXPECT_NEAR(test.Celsius(heated), 35, 2);
        test.seconds += 20;
        EXPECT_NEAR(test.Celsius(heated), 35 + 45 * 0.632, 2);
        test.seconds += 300;
        EXPECT_NEAR(test.Celsius(heated), 35 + 45, 2);
        EXPECT_NEAR(test.Celsius(other), 35, 2);
        EXPECT_NEAR(test.Celsius(local), 28, 1);
        test.SetHeaters(0, 0);
        test.seconds += 300;
        EXPECT_NEAR(test.Celsius(heated), 35, 2);
    }
}

TEST_P(VariantTest, StatusShowsWhichTemperaturesAreOutsideTheirLimits) {
    const struct {
        uint8_t limit, value, status1;
        bool masked;
    } cases[] = {{0x0B, 0, 0x80, false},  {0x0C, 255, 0x40, true}, {0x0E, 0, 0x20, false},
                 {0x0F, 255, 0x10, true}, {0x11, 0, 0x04, false},  {0x12, 255, 0x02, true}};
    for (const auto &c : cases) {
        TestBoard test(GetParam());
        EXPECT_EQ(test.Read(0x4F), 0);
        EXPECT_EQ(test.Read(0x51), 0);
        test.Write(c.limit, c.value);
        const bool there = GetParam() == Variant::ZTM7720 || c.limit < 0x11;
        EXPECT_EQ(test.Read(0x4F), there ? c.status1 : 0);
        EXPECT_EQ(test.Read(0x51), there && !c.masked ? 0x01 : 0);
        test.Write(0x08, 0x00);
        EXPECT_EQ(test.Read(0x51), there ? 0x01 : 0);
    }
}

TEST(SimulatedBoardTest, TemperaturesHoldWhileMonitoringIsOff) {
    TestBoard test;
    test.SetHeaters(100, 100);
    test.seconds += 10;
    const double held = test.Celsius(remote1);
    const double rpm = test.Rpm(tach1);
    test.Write(0x01, 0x00);
    test.seconds += 10;
    EXPECT_EQ(test.Celsius(remote1), held);
    EXPECT_NE(test.Rpm(tach1), rpm);
    test.Write(0x01, 0x01);
    EXPECT_GT(test.Celsius(remote1), held + 5);
}

TEST(SimulatedBoardTest, ShowsTheSameHoweverOftenItIsPolledAndHoweverLongTheGap) {
    for (const double gapSeconds : {8 * 3600.0, 30 * 86400.0, 1e12}) {
        TestBoard polled;
        TestBoard left;
        polled.SetHeaters(50, 10);
        left.SetHeaters(50, 10);
        for (int i = 0; i < 1000; ++i) {
            polled.seconds += gapSeconds / 1000;
            polled.Read(0);
        }
        left.seconds = polled.seconds;
        EXPECT_EQ(left.AllRegisters(), polled.AllRegisters()) << gapSeconds;
        EXPECT_NEAR(left.Celsius(remote1), 35 + 22.5, 2) << gapSeconds;
        EXPECT_NEAR(left.Celsius(remote2), 35 + 4.5, 2) << gapSeconds;
    }
}

TEST(SimulatedBoardTest, AClockThatStepsBackChangesNothing) {
    TestBoard test;
    test.seconds += 100;
    const auto before = test.AllRegisters();
    test.seconds -= 4000;
    EXPECT_EQ(test.AllRegisters(), before);
}

TEST(EncodingsTest, EncodesFullScaleRoundingAndLimits) {
    const struct {
        double celsius;
        int low, high;
    } temperatures[] = {{0, 0x00, 0x40},      {25.375, 0x60, 0x59}, {-0.125, 0xE0, 0x3F},
                        {25.38, 0x60, 0x59},  {-64, 0x00, 0x00},    {-70, 0x00, 0x00},
                        {191.97, 0xF8, 0xFF}, {500, 0xF8, 0xFF}};
    for (const auto &[celsius, low, high] : temperatures) {
        EXPECT_EQ(EncodeTemperature(celsius).low, low) << celsius;
        EXPECT_EQ(EncodeTemperature(celsius).high, high) << celsius;
    }
    const std::pair<double, int> speeds[] = {{0, 0xFFFF},  {-1, 0xFFFF},   {10, 0xFFFF},
                                             {76, 0xFCA2}, {2000, 0x099A}, {1e9, 1}};
    for (const auto &[rpm, count] : speeds) {
        EXPECT_EQ(EncodeTach(rpm).high * 256 + EncodeTach(rpm).low, count) << rpm;
    }
}

} // namespace
} // namespace ztm::sim
