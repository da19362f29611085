#include "link/AdapterStartUp.h"

#include "link/LinkState.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace ztm {
namespace {

using test::Adapter;
using testing::ElementsAre;
using testing::IsEmpty;

struct LampDouble final : AdapterLamp {
    void SetRed() override { signs += "red "; }
    void SetGreen() override { signs += "green "; }
    void Show() override { signs += "shown "; }
    std::string signs;
};

class AdapterStartUp : public testing::Test {
protected:
    AdapterStartUp() {
        test::ResetCore();
        CommsMedium = MediumUSB;
    }

    test::ClockDouble clock;
    LampDouble lamp;
};

TEST_F(AdapterStartUp, LoadsTheFirmwareThenPausesThenShakesHands) {
    AdapterFailed = true;
    StartAdapter(true, lamp);
    const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path().string();
    EXPECT_THAT(Adapter().firmwarePaths, ElementsAre(folder + "\\ZTM7720FW_v3.Hex"));
    EXPECT_THAT(Adapter().calls, ElementsAre(test::Handshake));
    EXPECT_NEAR(Adapter().times.at(0), 36000.020, 0.001);
    EXPECT_NEAR(clock.TotalSeconds(), 0.220, 0.001);
    EXPECT_FALSE(AdapterFailed);
    EXPECT_EQ(lamp.signs, "red shown green ");
}

TEST_F(AdapterStartUp, SendsNothingAfterAFailedDownload) {
    Adapter().firmwareResult = -1;
    StartAdapter(true, lamp);
    EXPECT_TRUE(AdapterFailed);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_EQ(lamp.signs, "red shown ");
}

TEST_F(AdapterStartUp, LeavesTheLibraryAloneWithoutTheUsbMedium) {
    StartAdapter(false, lamp);
    EXPECT_FALSE(AdapterFailed);
    EXPECT_THAT(Adapter().firmwarePaths, IsEmpty());
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_EQ(lamp.signs, "red ");
}

TEST_F(AdapterStartUp, PathBytesAreTheFileSystemsOwn) {
    EXPECT_EQ(LoadAdapterFirmware("/opt/Prüfstand"), 0);
    EXPECT_THAT(Adapter().firmwarePaths, ElementsAre("/opt/Prüfstand\\ZTM7720FW_v3.Hex"));
    EXPECT_EQ(LoadAdapterFirmware("C:\\Tools"), 0);
    EXPECT_EQ(std::string(FirmwarePathBytes.data()), "C:\\Tools\\ZTM7720FW_v3.Hex");
}

TEST_F(AdapterStartUp, APathBeyondTheLimitIsAFailedDownload) {
    const std::string longest(LongestFirmwarePath - std::string("\\ZTM7720FW_v3.Hex").size(), 'a');
    EXPECT_EQ(LoadAdapterFirmware(longest), 0);
    EXPECT_EQ(Adapter().firmwarePaths.at(0).size(), LongestFirmwarePath);
    EXPECT_LT(LoadAdapterFirmware(longest + "a"), 0);
    EXPECT_EQ(Adapter().firmwarePaths.size(), 1U) << "the library was told of it";
}

} // namespace
} // namespace ztm
