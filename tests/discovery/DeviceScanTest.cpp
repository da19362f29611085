#include "discovery/DeviceScan.h"

#include "link/LinkState.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"

#include <gmock/gmock.h>

namespace ztm {
namespace {

using test::Adapter;
using test::Call;
using testing::Each;
using testing::IsEmpty;

struct WindowDouble final : ScanWindow {
    void SetProgressMaximum(int units) override { maximum = units; }
    void SetProgress(double units) override { progress.push_back(units); }
    bool LetEventsRun() override { return ++eventRounds < closedAfter; }

    int maximum = -1;
    std::vector<double> progress;
    int eventRounds = 0;
    int closedAfter = 1000000;
};

class DeviceScan : public testing::Test {
protected:
    DeviceScan() { test::ResetCore(); }

    void Search() { RunSearch({false, false, true}, window); }

    test::ClockDouble clock;
    WindowDouble window;
};

TEST_F(DeviceScan, FindsAChipThatAnswersAtOnce) {
    Adapter().registers[0x3D] = 0x34;
    DeviceName = ZTM7710;
    Search();
    EXPECT_EQ(USBDeviceName, ZTM7720);
    EXPECT_EQ(USBDeviceAddress, 0x50);
    EXPECT_EQ(CommsMedium, MediumUSB);
    EXPECT_EQ(DeviceName, "") << "left from before the search";
    EXPECT_THAT(Adapter().calls, testing::ElementsAre(test::Read(0x3D)));
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001);
    EXPECT_EQ(FoundDeviceEntry(), "An ZTM7720 was found at:50h, on the USB port ");
}

TEST_F(DeviceScan, PollsOnUntilTheChipTellsItsId) {
    int reads = 0;
    Adapter().script = [&](const Call &) {
        Adapter().registers[0x3D] = ++reads > 10 ? 0x33 : 0x00;
        return int16_t{0};
    };
    Search();
    EXPECT_EQ(reads, 11);
    EXPECT_EQ(USBDeviceName, ZTM7710);
}

TEST_F(DeviceScan, GoesOnToTheSecondAddress) {
    Adapter().registers[0x3D] = 0x34;
    Adapter().answersAt = 0x51;
    Search();
    ASSERT_EQ(Adapter().calls.size(), 201U);
    EXPECT_EQ(Adapter().calls[199], test::Read(0x3D, 0x50));
    EXPECT_EQ(Adapter().calls[200], test::Read(0x3D, 0x51));
    EXPECT_EQ(FoundDeviceEntry(), "An ZTM7720 was found at:51h, on the USB port ");
}

TEST_F(DeviceScan, AnUnknownIdIsNoChipAndProgressStaysInRange) {
    Adapter().registers[0x3D] = 0x35;
    Search();
    EXPECT_FALSE(FoundDeviceEntry());
    EXPECT_EQ(USBDeviceAddress, 0x51);
    EXPECT_EQ(Adapter().calls.size(), 400U);
    EXPECT_NEAR(clock.TotalSeconds(), 6.0, 0.05);
    EXPECT_NEAR(Adapter().times[1] - Adapter().times[0], 0.020, 0.001);
    EXPECT_NEAR(Adapter().times[399] - Adapter().times[398], 0.010, 0.001);
    EXPECT_EQ(window.maximum, 33);
    EXPECT_EQ(window.eventRounds, 400);
    EXPECT_TRUE(std::is_sorted(window.progress.begin(), window.progress.end()));
    EXPECT_THAT(window.progress, Each(testing::AllOf(testing::Ge(0), testing::Le(33.001))));
}

TEST_F(DeviceScan, TheReadCountsTowardsTheSpacing) {
    Adapter().script = [&](const Call &) {
        clock.Advance(0.015);
        return int16_t{0};
    };
    Search();
    EXPECT_NEAR(Adapter().times[1] - Adapter().times[0], 0.020, 0.001);
    EXPECT_NEAR(Adapter().times[399] - Adapter().times[398], 0.015, 0.001);
}

TEST_F(DeviceScan, AsksNothingOfAFailedAdapterOrOnOtherMedia) {
    AdapterFailed = true;
    Search();
    EXPECT_EQ(window.maximum, 33);
    AdapterFailed = false;
    RunSearch({true, true, false}, window);
    EXPECT_EQ(window.maximum, 33);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_FALSE(FoundDeviceEntry());
    RunSearch({false, true, true}, window);
    EXPECT_EQ(window.maximum, 66);
}

TEST_F(DeviceScan, StopsWhenItsWindowIsClosed) {
    window.closedAfter = 3;
    Search();
    EXPECT_EQ(Adapter().calls.size(), 3U);
    EXPECT_FALSE(FoundDeviceEntry());
}

TEST_F(DeviceScan, AnotherSearchForgetsTheFirst) {
    Adapter().registers[0x3D] = 0x34;
    Search();
    Adapter().registers[0x3D] = 0;
    Search();
    EXPECT_FALSE(FoundDeviceEntry());
}

TEST_F(DeviceScan, TakesMediumAndVariantFromTheEntry) {
    const struct {
        const char *entry;
        int16_t medium;
        std::string_view name;
    } cases[] = {
        {"An ZTM7720 was found at:50h, on the USB port ", MediumUSB, ZTM7720},
        {"An ZTM7710 was found at:51h, on the USB port ", MediumUSB, ZTM7710},
        {"An Unkown Device was found at:50h, on the USB port ", MediumUSB, ""},
        {"An ZTM7720 was found at:50h", MediumNone, ""},
        {"", MediumNone, ""},
    };
    for (const auto &c : cases) {
        USBDeviceAddress = 0x51;
        DeviceName = ZTM7720;
        TakeDevice(c.entry);
        EXPECT_EQ(CommsMedium, c.medium) << c.entry;
        EXPECT_EQ(DeviceName, c.name) << c.entry;
        EXPECT_EQ(USBDeviceAddress, 0x51) << c.entry;
    }
}

} // namespace
} // namespace ztm
