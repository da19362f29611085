// What makes the chip's status bits come and go: every one by something that happens on the
// board.

#include "adapter/sim/TestBoard.h"

namespace ztm::sim {
namespace {

constexpr int alertBit = 0x01;

/// Bits of the three status registers without ALRT, or of the three masks.
using Bits = std::array<int, 3>;
constexpr Bits none = {};

Bits ReadStatuses(TestBoard &test) {
    return {test.Read(0x4F), test.Read(0x50), test.Read(0x51) & ~alertBit};
}

/// Changes no other status than the third.
bool IsAlert(TestBoard &test) {
    return (test.Read(0x51) & alertBit) != 0;
}

constexpr auto sound = DiodeFault::None;
constexpr auto open = DiodeFault::Open;
constexpr auto shorted = DiodeFault::Shorted;
constexpr auto turns = FanFault::None;
constexpr auto drags = FanFault::Drags;
constexpr auto stalled = FanFault::Stalled;

// No boost, so that what is over its limit stays there.
const Writes thermOfLocal = {{0x0D, Limit(50)}, {0x02, 0x86}};
const Writes thermEventOfRemote1 = {{0x10, Limit(50)}, {0x02, 0x86}, {0x04, 0x02}};
const Writes thermTimerOfRemote2 = {
    {0x13, Limit(50)}, {0x02, 0x86}, {0x04, 0x24}, {0x01, 0x05}, {0x19, 0x80}};
const Writes fastFans = {{0x2B, 0x03}, {0x2A, 0x33}, {0x2D, 0x03}, {0x2C, 0x33}}; // 6000 RPM

const struct Cause {
    const char *what;
    Writes setup;
    BenchSettings bench;
    std::pair<int, int> heaters;
    Bits statuses;
    Bits alerts; ///< the masks' bits that each hide a part of the alert
} causes[] = {
    {"cold air", {}, {.ambientCelsius = 5}, {0, 0}, {0x52, 0, 0}, {0x52, 0, 0}},
    {"hot air", {}, {.ambientCelsius = 90}, {0, 0}, {0xA4, 0xE0, 0}, {0xA4, 0, 0}},
    {"heater 1", {}, {}, {100, 0}, {0x20, 0, 0}, {0x20, 0, 0}},
    {"heater 2", {}, {}, {0, 100}, {0x04, 0, 0}, {0x04, 0, 0}},
    {"warm air", thermOfLocal, {.ambientCelsius = 55}, {0, 0}, {0, 0x80, 0}, {0, 0, 0}},
    {"THERM of heater 1", thermEventOfRemote1, {}, {60, 0}, {0, 0x49, 0}, {0, 0x0C, 0}},
    {"THERM of heater 2", thermTimerOfRemote2, {}, {0, 60}, {0, 0x39, 0}, {0, 0x1C, 0}},
    {"open diode 1", {}, {.diodes = {open}}, {0, 0}, {0x28, 0x40, 0}, {0x28, 0, 0}},
    {"shorted diode 1", {}, {.diodes = {shorted}}, {0, 0}, {0x18, 0, 0}, {0x18, 0, 0}},
    {"open diode 2", {}, {.diodes = {sound, open}}, {0, 0}, {0x05, 0x20, 0}, {0x05, 0, 0}},
    {"shorted diode 2", {}, {.diodes = {sound, shorted}}, {0, 0}, {0x03, 0, 0}, {0x03, 0, 0}},
    {"stalled fan 1", {}, {.fans = {stalled}}, {0, 0}, {0, 0, 0x80}, {0, 0, 0x80}},
    {"stalled fan 2", {}, {.fans = {turns, stalled}}, {0, 0}, {0, 0, 0x20}, {0, 0, 0x20}},
    {"dragging fan 1", fastFans, {.fans = {drags}}, {0, 0}, {0, 0, 0x40}, {0, 0, 0x40}},
    {"dragging fan 2", fastFans, {.fans = {turns, drags}}, {0, 0}, {0, 0, 0x10}, {0, 0, 0x10}},
};

constexpr double settlingSeconds = 1800;

void Arrange(TestBoard &test, const BenchSettings &bench, std::pair<int, int> heaters) {
    test.SetBench(bench);
    test.SetHeaters(heaters.first, heaters.second);
    test.Pass(settlingSeconds);
}

/// A board on which that has just happened.
void Bring(TestBoard &test, const Cause &cause) {
    test.Write(cause.setup);
    test.Pass(settlingSeconds);
    EXPECT_EQ(ReadStatuses(test), none) << "before";
    EXPECT_FALSE(IsAlert(test)) << "before";
    Arrange(test, cause.bench, cause.heaters);
}

/// The bits of the masks that hide something when all others do not.
Bits Alerts(TestBoard &test) {
    Bits alerts{};
    for (size_t mask = 0; mask < alerts.size(); ++mask) {
        for (int bit = 0x01; bit < 0x100; bit <<= 1) {
            test.Write({{0x08, 0xFF}, {0x09, 0xFF}, {0x0A, 0xFF}});
            EXPECT_FALSE(IsAlert(test));
            test.Write({{0x08 + static_cast<int>(mask), 0xFF & ~bit}});
            alerts[mask] |= IsAlert(test) ? bit : 0;
        }
    }
    return alerts;
}

TEST(StatusTest, EveryBitComesAndGoesWithItsCauseAndWaitsToBeRead) {
    Bits covered{};
    for (const Cause &cause : causes) {
        SCOPED_TRACE(cause.what);
        TestBoard test;
        Bring(test, cause);
        const auto &[first, second, third] = cause.alerts;
        EXPECT_EQ(IsAlert(test), (first & ~0x52) || (second & ~0x10) || third) << "reset masks";
        const int configuration1 = test.Read(0x01);
        test.Write({{0x01, configuration1 | 0x08}});
        EXPECT_EQ(Alerts(test), none) << "switched off";
        test.Write({{0x01, configuration1}});
        EXPECT_EQ(Alerts(test), cause.alerts);
        EXPECT_EQ(ReadStatuses(test), cause.statuses) << "while it lasts";
        EXPECT_EQ(ReadStatuses(test), cause.statuses) << "read again";

        Arrange(test, {}, {0, 0});
        if (third == 0) { // is read with the alert
            EXPECT_EQ(Alerts(test), (Bits{first, second & ~0x04, 0})) << "over, but not read yet";
        }
        Bits waiting = cause.statuses;
        waiting[1] &= ~0x01; // THERM is asserted no more
        EXPECT_EQ(ReadStatuses(test), waiting) << "over, but not read yet";
        EXPECT_EQ(ReadStatuses(test), none) << "over and read";
        EXPECT_EQ(Alerts(test), none) << "over and read";

        for (size_t i = 0; i < covered.size(); ++i) {
            covered[i] |= cause.statuses[i];
        }
    }
    EXPECT_EQ(covered, (Bits{0xFF, 0xF9, 0xF0})) << "every bit that the chip has";
}

TEST(StatusTest, TheSmallerVariantHasNoSecondRemoteAndFan) {
    for (const Cause &cause : causes) {
        SCOPED_TRACE(cause.what);
        TestBoard test(Variant::ZTM7710);
        Bring(test, cause);
        const Bits statuses = ReadStatuses(test);
        EXPECT_EQ(statuses[0], cause.statuses[0] & 0xF8);
        EXPECT_EQ(statuses[1] & 0x20, 0);
        EXPECT_EQ(statuses[2], cause.statuses[2] & 0xC0);
    }
}

TEST(ThermTest, TheOnTimeIsTheShareOfTheLastWindow) {
    const std::pair<int, double> windows[] = {{0, 0.25}, {1, 0.5}, {2, 1}, {3, 2},
                                              {4, 4},    {5, 8},   {6, 8}, {7, 8}};
    for (const auto &[code, window] : windows) {
        SCOPED_TRACE(code);
        TestBoard test;
        // The board is hotter than its limit.
        test.Write({{0x02, 0x86}, {0x04, code << 4 | 0x01}, {0x0D, Limit(0)}});
        test.Pass(1);
        EXPECT_EQ(test.Read(0x4E), 0) << "timer off";
        test.Write({{0x01, 0x05}});
        EXPECT_NEAR(test.SecondsUntil([&] { return test.Read(0x4E) != 0; }), window, 1e-6);
        EXPECT_EQ(test.Read(0x4E), 255);
        test.Pass(window * 0.4); // into the second window
        test.Write({{0x0D, Limit(150)}});
        test.Pass(window * 0.6);
        EXPECT_NEAR(test.Read(0x4E), 255 * 0.4, 1);
        test.Pass(window);
        EXPECT_EQ(test.Read(0x4E), 0);
    }
}

TEST(StatusTest, ACauseLastsUntilItsHysteresisIsPassed) {
    const struct {
        std::pair<int, int> setup;
        int status, bit;
        double celsius; // at its end
    } cases[] = {{{0x0E, Limit(55)}, 0x4F, 0x20, 54},
                 {{0x1A, 0xF0}, 0x50, 0x01, 55},
                 {{0x1A, 0xF5}, 0x50, 0x01, 50},
                 {{0x1A, 0xFF}, 0x50, 0x01, 40}};
    for (const auto &c : cases) {
        TestBoard test;
        test.Write({{0x02, 0x86}, {0x04, 0x02}, {0x10, Limit(55)}, c.setup});
        test.SetHeaters(60, 0);
        test.Pass(600);
        EXPECT_EQ(test.Read(c.status) & c.bit, c.bit) << c.celsius;
        test.SetHeaters(0, 0);
        test.SecondsUntil([&] { return (test.Read(c.status) & c.bit) == 0; });
        EXPECT_NEAR(test.Reading(remote1), c.celsius, 0.1);
    }
}

} // namespace
} // namespace ztm::sim
