#include "discovery/DeviceScan.h"

#include "link/LinkTest.h"

namespace ztm::test {
namespace {

using DeviceScan = LinkTest;

struct WindowDouble final : ScanWindow {
    void SetProgressMaximum(int units) override { maximum = units; }
    void SetProgress(double units) override {
        EXPECT_TRUE(units > progress && units < 33.001) << units;
        progress = units;
    }
    bool LetEventsRun() override { return ++eventRounds < closedAfter; }

    int maximum = -1;
    double progress = 0;
    size_t eventRounds = 0;
    size_t closedAfter = 1000000;
};

TEST_F(DeviceScan, PollsBothAddressesUntilAChipTellsItsId) {
    const std::string at50 = "An ZTM7720 was found at:50h, on the USB port ";
    const struct {
        const char *what;
        uint8_t id;
        int32_t answersAt;
        size_t readsBefore; // the chip tells its id
        double secondsPerRead;
        size_t closedAfter;
        size_t reads;
        double seconds;
        std::optional<std::string> entry;
    } cases[] = {
        {"at once", 0x34, 0x50, 0, 0, 999, 1, 0.02, at50},
        {"the eleventh read", 0x34, 0x50, 10, 0, 999, 11, 0.22, at50},
        {"the other variant", 0x33, 0x50, 0, 0, 999, 1, 0.02,
         "An ZTM7710 was found at:50h, on the USB port "},
        {"at the second address", 0x34, 0x51, 0, 0, 999, 201, 4.01,
         "An ZTM7720 was found at:51h, on the USB port "},
        {"an unknown id", 0x35, 0x50, 0, 0, 999, 400, 6.0, std::nullopt},
        {"reads count towards the spacing", 0, 0x50, 0, 0.015, 999, 400, 7.0, std::nullopt},
        {"a window that is closed", 0, 0x50, 0, 0, 3, 3, 0.06, std::nullopt},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        ResetAdapter(); // what the search before has left stays
        const double start = clock.TotalSeconds();
        Adapter().answersAt = c.answersAt;
        Adapter().script = [&](const Call &) {
            Adapter().registers[0x3D] = Adapter().calls.size() > c.readsBefore ? c.id : uint8_t{0};
            clock.Advance(c.secondsPerRead);
            return int16_t{0};
        };
        CommsMedium = MediumNone;
        DeviceName = ZTM7710;
        WindowDouble window;
        window.closedAfter = c.closedAfter;
        RunSearch({false, false, true}, window);
        Calls calls(std::min<size_t>(c.reads, 200), Read(0x3D, 0x50));
        calls.resize(c.reads, Read(0x3D, 0x51));
        EXPECT_EQ(Adapter().calls, calls);
        EXPECT_NEAR(clock.TotalSeconds() - start, c.seconds, 0.001 + c.seconds / 200);
        EXPECT_EQ(FoundDeviceEntry(), c.entry);
        EXPECT_EQ(USBDeviceAddress, calls.back().value);
        EXPECT_EQ(CommsMedium, MediumUSB);
        EXPECT_EQ(DeviceName, "") << "left from before the search";
        EXPECT_EQ(window.maximum, 33);
        EXPECT_EQ(window.eventRounds, c.reads);
    }
}

TEST_F(DeviceScan, AsksNothingOfAFailedAdapterOrOnOtherMedia) {
    const struct {
        SearchMedia media;
        bool failed;
        int maximum;
    } cases[] = {{{false, false, true}, true, 33},
                 {{true, true, false}, false, 33},
                 {{false, true, true}, true, 66}};
    for (const auto &c : cases) {
        AdapterFailed = c.failed;
        WindowDouble window;
        EXPECT_EQ(CallsOf([&] { RunSearch(c.media, window); }), Calls());
        EXPECT_EQ(window.maximum, c.maximum);
        EXPECT_FALSE(FoundDeviceEntry());
    }
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
} // namespace ztm::test
