// What makes the chip's status bits come and go: every one by something that happens on the
// board.

#include "adapter/sim/TestBoard.h"

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace ztm::sim {
namespace {

struct Statuses {
    int first, second, third; ///< without the ALRT bit
    bool operator==(const Statuses &) const = default;
};
constexpr Statuses none = {0, 0, 0};
constexpr int alertBit = 0x01;

std::ostream &operator<<(std::ostream &out, const Statuses &statuses) {
    return out << std::hex << statuses.first << ' ' << statuses.second << ' ' << statuses.third;
}

Statuses ReadStatuses(TestBoard &test) {
    const int third = test.Read(0x51) & ~alertBit;
    const int first = test.Read(0x4F);
    return {first, test.Read(0x50), third};
}

/// Reading a status may change it, so the alert is looked at first.
bool IsAlert(TestBoard &test) {
    return (test.Read(0x51) & alertBit) != 0;
}

using Act = std::function<void(TestBoard &)>;

Act Air(double celsius) {
    return [=](TestBoard &test) {
        test.Arrange([=](BoardSettings &board) { board.bench.ambientCelsius = celsius; });
    };
}
Act Diode(size_t remote, DiodeFault fault) {
    return [=](TestBoard &test) {
        test.Arrange([=](BoardSettings &board) { board.bench.diodes[remote] = fault; });
    };
}
Act Fan(size_t fan, FanFault fault) {
    return [=](TestBoard &test) {
        test.Arrange([=](BoardSettings &board) { board.bench.fans[fan] = fault; });
    };
}
Act Heaters(int first, int second) {
    return [=](TestBoard &test) { test.SetHeaters(first, second); };
}
/// Writes registers before anything happens.
Act Setup(std::initializer_list<std::pair<int, int>> writes) {
    return [writes = std::vector(writes)](TestBoard &test) {
        for (const auto &[address, data] : writes) {
            test.Write(address, data);
        }
    };
}

constexpr double roomCelsius = 24;
constexpr int thermAt50 = 50 + 64;
const Act asItIs = [](TestBoard &) {};
const Act fastFans = [](TestBoard &test) {
    test.WriteRpm(0x2A, 6000);
    test.WriteRpm(0x2C, 6000);
};
const Act room = Air(roomCelsius);
const Act heatersOff = Heaters(0, 0);
// No boost, so that what is over its limit stays there.
const Act thermOfLocal = Setup({{0x0D, thermAt50}, {0x02, 0x86}});
const Act thermEventOfRemote1 = Setup({{0x10, thermAt50}, {0x02, 0x86}, {0x04, 0x02}});
const Act thermTimerOfRemote2 =
    Setup({{0x13, thermAt50}, {0x02, 0x86}, {0x04, 0x24}, {0x01, 0x05}, {0x19, 0x80}});

const struct Cause {
    const char *what;
    Act setup, begin, end;
    Statuses statuses;
    bool alerts; ///< with the masks of a reset
} causes[] = {
    {"cold air", asItIs, Air(5), room, {0x52, 0, 0}, false},
    {"hot air", asItIs, Air(90), room, {0xA4, 0xE0, 0}, true},
    {"heater 1", asItIs, Heaters(100, 0), heatersOff, {0x20, 0, 0}, true},
    {"heater 2", asItIs, Heaters(0, 100), heatersOff, {0x04, 0, 0}, true},
    {"warm air over THERM", thermOfLocal, Air(55), room, {0, 0x80, 0}, false},
    {"heater 1 over THERM", thermEventOfRemote1, Heaters(60, 0), heatersOff, {0, 0x49, 0}, true},
    {"heater 2 over THERM", thermTimerOfRemote2, Heaters(0, 60), heatersOff, {0, 0x39, 0}, true},
    {"open diode 1",
     asItIs,
     Diode(0, DiodeFault::Open),
     Diode(0, DiodeFault::None),
     {0x28, 0x40, 0},
     true},
    {"shorted diode 1",
     asItIs,
     Diode(0, DiodeFault::Shorted),
     Diode(0, DiodeFault::None),
     {0x18, 0, 0},
     true},
    {"open diode 2",
     asItIs,
     Diode(1, DiodeFault::Open),
     Diode(1, DiodeFault::None),
     {0x05, 0x20, 0},
     true},
    {"shorted diode 2",
     asItIs,
     Diode(1, DiodeFault::Shorted),
     Diode(1, DiodeFault::None),
     {0x03, 0, 0},
     true},
    {"stalled fan 1",
     asItIs,
     Fan(0, FanFault::Stalled),
     Fan(0, FanFault::None),
     {0, 0, 0x80},
     true},
    {"stalled fan 2",
     asItIs,
     Fan(1, FanFault::Stalled),
     Fan(1, FanFault::None),
     {0, 0, 0x20},
     true},
    {"dragging fan 1",
     fastFans,
     Fan(0, FanFault::Drags),
     Fan(0, FanFault::None),
     {0, 0, 0x40},
     true},
    {"dragging fan 2",
     fastFans,
     Fan(1, FanFault::Drags),
     Fan(1, FanFault::None),
     {0, 0, 0x10},
     true},
};

constexpr double settlingSeconds = 1800;

TEST(StatusTest, EveryBitComesAndGoesWithItsCauseAndWaitsToBeRead) {
    Statuses covered = none;
    for (const Cause &cause : causes) {
        SCOPED_TRACE(cause.what);
        TestBoard test;
        cause.setup(test);
        test.Pass(settlingSeconds);
        EXPECT_EQ(ReadStatuses(test), none) << "before";
        EXPECT_FALSE(IsAlert(test)) << "before";

        cause.begin(test);
        test.Pass(settlingSeconds);
        EXPECT_EQ(IsAlert(test), cause.alerts);
        EXPECT_EQ(ReadStatuses(test), cause.statuses) << "while it lasts";
        EXPECT_EQ(ReadStatuses(test), cause.statuses) << "read again";

        cause.end(test);
        test.Pass(settlingSeconds);
        Statuses waiting = cause.statuses;
        waiting.second &= ~0x01; // THERM is asserted no more
        EXPECT_EQ(ReadStatuses(test), waiting) << "over, but not read yet";
        EXPECT_EQ(ReadStatuses(test), none) << "over and read";
        EXPECT_FALSE(IsAlert(test)) << "over and read";

        covered.first |= cause.statuses.first;
        covered.second |= cause.statuses.second;
        covered.third |= cause.statuses.third;
    }
    EXPECT_EQ(covered, (Statuses{0xFF, 0xF9, 0xF0})) << "every bit that the chip has";
}

TEST(StatusTest, TheSmallerVariantHasNoSecondRemoteAndFan) {
    for (const Cause &cause : causes) {
        SCOPED_TRACE(cause.what);
        TestBoard test(Variant::ZTM7710);
        cause.setup(test);
        test.Pass(settlingSeconds);
        cause.begin(test);
        test.Pass(settlingSeconds);
        const Statuses statuses = ReadStatuses(test);
        EXPECT_EQ(statuses.first, cause.statuses.first & 0xF8);
        EXPECT_EQ(statuses.second & 0x20, 0);
        EXPECT_EQ(statuses.third, cause.statuses.third & 0xC0);
    }
}

TEST(StatusTest, AnAlertIsWhatNoMaskHides) {
    const struct {
        Act setup, begin;
        std::vector<std::pair<int, int>> hides; ///< masks that together hide the cause
    } cases[] = {
        {asItIs, Air(5), {{0x08, 0x52}}},
        {asItIs, Heaters(100, 0), {{0x08, 0x20}}},
        {asItIs, Diode(1, DiodeFault::Shorted), {{0x08, 0x03}}},
        {thermEventOfRemote1, Heaters(60, 0), {{0x09, 0x0C}}},
        {asItIs, Fan(0, FanFault::Stalled), {{0x0A, 0x80}}},
        {asItIs, Fan(1, FanFault::Stalled), {{0x0A, 0x20}}},
        {fastFans, Fan(0, FanFault::Drags), {{0x0A, 0x40}}},
        {fastFans, Fan(1, FanFault::Drags), {{0x0A, 0x10}}},
    };
    for (const auto &[setup, begin, hides] : cases) {
        TestBoard test;
        setup(test);
        begin(test);
        test.Pass(settlingSeconds);
        for (const int mask : {0x08, 0x09, 0x0A}) {
            test.Write(mask, 0xFF);
        }
        EXPECT_FALSE(IsAlert(test));
        for (const auto &[mask, bits] : hides) {
            test.Write(mask, 0xFF & ~bits);
            EXPECT_TRUE(IsAlert(test)) << mask;
            test.Write(mask, bits);
        }
        for (const int mask : {0x08, 0x09, 0x0A}) {
            test.Write(mask, 0x00);
        }
        EXPECT_TRUE(IsAlert(test));
        test.Write(0x01, test.Read(0x01) | 0x08);
        EXPECT_FALSE(IsAlert(test)) << "switched off";
    }
}

TEST(StatusTest, Mask2HasItsOwnPlacesForTheThermBits) {
    constexpr int onlyPercent = 0xEF;
    constexpr int onlyAsserted = 0xF7;
    constexpr int onlyNow = 0xFB;
    const auto alerts = [](TestBoard &test) {
        std::vector<bool> all;
        for (const int mask : {onlyPercent, onlyAsserted, onlyNow}) {
            test.Write(0x09, mask);
            all.push_back(IsAlert(test));
        }
        return all;
    };
    TestBoard test;
    test.Write(0x02, 0x86);
    test.Write(0x04, 0x52); // a window of 8 s, events of remote 1
    test.Write(0x01, 0x05);
    test.Write(0x19, 0x80);
    test.WriteLimit(0x10, 20);
    EXPECT_EQ(alerts(test), (std::vector{false, false, false}));
    test.Pass(1);
    EXPECT_EQ(alerts(test), (std::vector{false, true, true})) << "no window is over yet";
    test.Pass(20);
    EXPECT_EQ(alerts(test), (std::vector{true, true, true}));
    test.WriteLimit(0x10, 150);
    test.Pass(0.1);
    EXPECT_EQ(alerts(test), (std::vector{true, true, false})) << "over, but not read";
    test.Read(0x50);
    EXPECT_EQ(alerts(test), (std::vector{true, false, false})) << "the window lasts";
    test.Pass(20);
    test.Read(0x50);
    EXPECT_EQ(alerts(test), (std::vector{false, false, false}));
}

TEST(ThermTest, TheOnTimeIsTheShareOfTheLastWindow) {
    const std::pair<int, double> windows[] = {{0, 0.25}, {1, 0.5}, {2, 1}, {3, 2},
                                              {4, 4},    {5, 8},   {6, 8}, {7, 8}};
    for (const auto &[code, window] : windows) {
        TestBoard test;
        test.Write(0x02, 0x86);
        test.Write(0x04, code << 4 | 0x01);
        test.WriteLimit(0x0D, 0); // the board is hotter
        test.Pass(1);
        EXPECT_EQ(test.Read(0x4E), 0) << "timer off";
        test.Write(0x01, 0x05);
        test.Pass(window - 0.1);
        EXPECT_EQ(test.Read(0x4E), 0) << code << ": first window not over";
        test.Pass(0.2);
        EXPECT_EQ(test.Read(0x4E), 255) << code;
        test.Pass(window * 0.4 - 0.1); // 40 % into the second window or a later one
        test.WriteLimit(0x0D, 150);
        test.Pass(window * 0.6 + 0.05);
        if (window >= 1) {
            EXPECT_NEAR(test.Read(0x4E), 255 * 0.4, 255 * 0.05 / window + 2) << code;
        }
        test.Pass(2 * window);
        EXPECT_EQ(test.Read(0x4E), 0) << code;
    }
}

TEST(ThermTest, LastsUntilTheHysteresisIsPassed) {
    for (const int hysteresis : {0, 5, 15}) {
        TestBoard test;
        test.Write(0x02, 0x86);
        test.Write(0x04, 0x02);
        test.Write(0x1A, 0xF0 | hysteresis);
        test.WriteLimit(0x10, 55);
        test.SetHeaters(60, 0);
        test.Pass(600);
        EXPECT_EQ(test.Read(0x50) & 0x01, 0x01) << hysteresis;
        test.SetHeaters(0, 0);
        double atEnd = test.Celsius(0x42);
        while ((test.Read(0x50) & 0x01) != 0 && atEnd > 36) {
            test.Pass(0.025);
            atEnd = test.Celsius(0x42);
        }
        EXPECT_NEAR(atEnd, 55 - hysteresis, 0.1) << hysteresis;
    }
}

} // namespace
} // namespace ztm::sim
