#include "link/AdapterStartUp.h"

#include "link/LinkTest.h"

#include <filesystem>

namespace ztm::test {
namespace {

using AdapterStartUp = LinkTest;
using Paths = std::vector<std::string>;

const std::string firmwareFile = "\\ZTM7720FW_v3.Hex";

struct LampDouble final : AdapterLamp {
    void SetRed() override { signs += "red "; }
    void SetGreen() override { signs += "green "; }
    void Show() override { signs += "shown "; }
    std::string signs;
};

TEST_F(AdapterStartUp, LoadsTheFirmwareThenPausesThenShakesHands) {
    const Paths path{std::filesystem::canonical("/proc/self/exe").parent_path().string() +
                     firmwareFile};
    const struct {
        bool usbChosen;
        int16_t firmwareResult;
        Paths paths;
        Calls calls;
        double seconds;
        bool failed;
        const char *signs;
    } cases[] = {
        {true, 0, path, {Handshake}, 0.220, false, "red shown green "},
        {true, -1, path, {}, 0, true, "red shown "},
        {false, 0, {}, {}, 0, false, "red "},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.signs);
        StartSession();
        const ClockDouble clock;
        LampDouble lamp;
        AdapterFailed = true;
        Adapter().firmwareResult = c.firmwareResult;
        EXPECT_EQ(CallsOf([&] { StartAdapter(c.usbChosen, lamp); }), c.calls);
        EXPECT_THAT(Adapter().times, testing::Each(testing::DoubleNear(36000.020, 0.001)));
        EXPECT_NEAR(clock.TotalSeconds(), c.seconds, 0.001);
        EXPECT_EQ(Adapter().firmwarePaths, c.paths);
        EXPECT_EQ(AdapterFailed, c.failed);
        EXPECT_EQ(lamp.signs, c.signs);
    }
}

TEST_F(AdapterStartUp, PathBytesAreTheFileSystemsOwnUpToTheLimit) {
    const std::string longest(LongestFirmwarePath - firmwareFile.size(), 'a');
    for (const std::string &folder :
         {std::string("/opt/Prüfstand"), std::string("C:\\Tools"), longest}) {
        EXPECT_EQ(LoadAdapterFirmware(folder), 0);
        EXPECT_EQ(Adapter().firmwarePaths.back(), folder + firmwareFile);
        EXPECT_EQ(FirmwarePathBytes.data(), folder + firmwareFile);
    }
    EXPECT_LT(LoadAdapterFirmware(longest + "a"), 0);
    EXPECT_EQ(Adapter().firmwarePaths.size(), 3U) << "the library was told of it";
}

} // namespace
} // namespace ztm::test
