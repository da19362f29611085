#include "monitor/MonitorLoop.h"

#include "common/NumberText.h"
#include "link/Heaters.h"
#include "link/LinkState.h"
#include "monitor/Channels.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/TemporaryFile.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ztm {
namespace {

using test::Adapter;
using test::Call;
using test::Read;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double tickSeconds = 0.030;

/// Notes what the tick does to the windows, in order.
struct WindowDouble final : MonitorWindow {
    void SetTimerPeriod(int milliseconds) override { period = milliseconds; }
    MainTab ShownTab() const override { return tab; }
    bool ContinuousReadChecked() const override { return continuousRead; }
    void ReadShownRegister() override { done.emplace_back("read"); }
    void UpdateAlerts() override { done.emplace_back("alerts"); }
    void UpdateGauge() override { done.emplace_back("gauge"); }
    void UpdateCharts() override {
        done.push_back("charts " + std::to_string(MeasurementHistory().SampleCount()));
    }
    void ShowFanSpeed(int fan, const std::string &text) override {
        done.push_back("fan" + std::to_string(fan) + " " + text);
    }
    void ShowLog() override {
        done.push_back("log " + std::to_string(LogEntryCount) + (LoggingActive ? "" : " stopped"));
    }
    void ShowHeaterDuty(int heater, int duty) override {
        done.push_back("heater" + std::to_string(heater) + " " + std::to_string(duty));
    }
    void TickDone() override {}

    int period = 0;
    MainTab tab = MainTab::VisualDisplay;
    bool continuousRead = false;
    std::vector<std::string> done;
};

class MonitorLoopTest : public testing::Test {
protected:
    MonitorLoopTest() {
        test::ResetCore();
        CommsMedium = MediumUSB;
        USBDeviceAddress = 0x50;
        DeviceName = ZTM7720;
    }

    /// Ticks for that long and returns how often the window was told something that starts with
    /// `what`.
    auto CountIn(double seconds, const std::string &what, double period = tickSeconds) {
        window.done.clear();
        const double end = clock.TotalSeconds() + seconds - period / 2;
        while (clock.TotalSeconds() < end) {
            loop.Tick();
            clock.Advance(period);
        }
        return std::count_if(window.done.begin(), window.done.end(),
                             [&](const std::string &done) { return done.rfind(what, 0) == 0; });
    }

    void StartLogOf(int32_t entries, int32_t intervalMs = 100) {
        EXPECT_EQ(StartLog(folder.Path("log"), {{}, intervalMs, entries}), "");
    }

    test::TemporaryFolder folder;
    test::ClockDouble clock{86400 - 10}; // a midnight is never far
    WindowDouble window;
    MonitorLoop loop{window};
};

TEST_F(MonitorLoopTest, AnIdleTickOnlySetsThePeriod) {
    MonitorInterval = 77;
    loop.Tick();
    EXPECT_EQ(window.period, 77);
    EXPECT_THAT(window.done, IsEmpty());
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(MonitorLoopTest, DutiesComeInTheirOrder) {
    window.tab = MainTab::RegisterAccess;
    window.continuousRead = true;
    MonitorInReadWrite = true;
    GraphingEnabled = LimitMonitorEnabled = BargraphEnabled = true;
    ManualDialogOpen = true;
    StartLogOf(0);
    Measurements = {0, 0, 0, 1200, 900, 0};
    Heaters[1].SoftwareControl = Heaters[1].StartPending = true;
    loop.Tick();
    EXPECT_THAT(window.done, ElementsAre("read", "charts 1", "fan0 1200 RPM", "fan1 900 RPM",
                                         "log 1", "heater1 20"));
    EXPECT_EQ(LogStartTime, 86390);
    window.done.clear();
    window.tab = MainTab::VisualDisplay;
    DeviceName = ZTM7710;
    loop.Tick();
    EXPECT_THAT(window.done, ElementsAre("alerts", "gauge", "charts 2", "fan0 1200 RPM"));
}

TEST_F(MonitorLoopTest, OneChannelIsReadPerTickRoundRobin) {
    using Ticks = std::vector<std::vector<Call>>;
    const std::vector<Call> local{Read(0x40), Read(0x41)}, remote1{Read(0x42), Read(0x43)},
        remote2{Read(0x44), Read(0x45)}, fan1{Read(0x4A), Read(0x4B)}, fan2{Read(0x4C), Read(0x4D)},
        therm{Read(0x4E)};
    MonitoringEnabled = true;
    for (const auto &[variant, round] :
         {std::pair{ZTM7720, Ticks{local, remote1, remote2, fan1, fan2, therm, local}},
          std::pair{ZTM7710, Ticks{local, remote1, {}, fan1, {}, therm, local}}}) {
        DeviceName = variant;
        MonitorLoop fresh(window);
        Ticks ticks;
        for (size_t tick = 0; tick < round.size(); ++tick) {
            Adapter().calls.clear();
            fresh.Tick();
            ticks.push_back(Adapter().calls);
        }
        EXPECT_EQ(ticks, round) << variant;
    }
}

TEST_F(MonitorLoopTest, TheRegisterTabStopsMeasurementsUnlessAsked) {
    MonitoringEnabled = GraphingEnabled = true;
    window.tab = MainTab::RegisterAccess;
    loop.Tick();
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_THAT(window.done, IsEmpty());
    MonitorInReadWrite = true;
    loop.Tick();
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x40), Read(0x41)));
    EXPECT_THAT(window.done, ElementsAre("charts 1")) << "one sample more";
}

TEST_F(MonitorLoopTest, SpacingsHoldOverMidnightWithoutABurst) {
    LimitMonitorEnabled = true;
    EXPECT_EQ(CountIn(60, "alerts"), 500); // every fourth tick: the first above 0.1 s
    window.tab = MainTab::RegisterAccess;
    window.continuousRead = true;
    EXPECT_EQ(CountIn(60, "read"), 118); // every 17th tick
    clock.Advance(40000);
    EXPECT_EQ(CountIn(0.48, "read"), 1) << "after a pause";
    clock.Advance(86400 - 3600);
    EXPECT_LE(CountIn(0.48, "read"), 1) << "after the clock was set back";
    EXPECT_EQ(CountIn(60, "read"), 118);
}

TEST_F(MonitorLoopTest, SpacingsDoNotDriftInAnHour) {
    constexpr double hour = 3600;
    LimitMonitorEnabled = true;
    StartLogOf(0, 250);
    window.continuousRead = true;
    Heaters[1].SoftwareControl = true;
    Heaters[1].IntervalMs = 700;
    // A duty comes with the first tick above its spacing, and every step of a ramp waits 5 ms.
    const auto expected = [](double spacing, double period, double waits) {
        return hour / ((std::floor((spacing - waits) / period) + 1) * period + waits);
    };
    for (const double period : {0.030, 0.070, 0.009}) {
        window.tab = MainTab::VisualDisplay;
        EXPECT_NEAR(static_cast<double>(CountIn(hour, "heater1", period)),
                    expected(0.7, period, 0.005), 1)
            << period;
        Heaters[1].SoftwareControl = false;
        EXPECT_NEAR(static_cast<double>(CountIn(hour, "alerts", period)), expected(0.1, period, 0),
                    1)
            << period;
        EXPECT_NEAR(static_cast<double>(CountIn(hour, "log", period)), expected(0.25, period, 0), 1)
            << period;
        window.tab = MainTab::RegisterAccess;
        EXPECT_NEAR(static_cast<double>(CountIn(hour, "read", period)), expected(0.5, period, 0), 1)
            << period;
        Heaters[1].SoftwareControl = true;
    }
}

TEST_F(MonitorLoopTest, TheLogStopsOnTheTickThatWritesItsLastEntry) {
    StartLogOf(3);
    CountIn(1.2, "");
    EXPECT_THAT(window.done, ElementsAre("log 1", "log 2", "log 3", "log 3 stopped"));
    StartLogOf(0);
    EXPECT_EQ(CountIn(6, "log"), 50);
    EXPECT_TRUE(LoggingActive);
}

TEST_F(MonitorLoopTest, TheFirstElapsedTimeOfALogIsNearZeroOnASlowBus) {
    Adapter().script = [this](const Call & /*call*/) {
        clock.Advance(0.1);
        return int16_t{0};
    };
    MonitoringEnabled = true;
    for (int tenths = 0; tenths < 10; ++tenths) {
        clock.Advance(std::ceil(RunningSeconds()) - RunningSeconds() + 0.05 + tenths / 10.0);
        StartLogOf(1);
        CountIn(tickSeconds, "log");
        EXPECT_EQ(LogEntryCount, 1);
        EXPECT_LE(std::abs(NumericValue(LogLine)), 0.5) << tenths;
    }
}

TEST_F(MonitorLoopTest, ARampRunsUpAndDownBetweenItsEnds) {
    Heaters[0].SoftwareControl = Heaters[0].StartPending = Heaters[0].RampUp = true;
    Adapter().script = [](const Call &call) {
        if (call.request == 0xDB) {
            EXPECT_EQ(call.index, 255) << "the other heater is left alone";
            Adapter().heaterReply[0] = static_cast<uint8_t>(call.value);
        }
        return int16_t{0};
    };
    std::vector<std::string> expected;
    const auto expect = [&](int from, int to, int step) {
        for (int duty = from; duty != to + step; duty += step) {
            expected.push_back("heater0 " + std::to_string(duty));
        }
    };
    expect(20, 80, 2);
    expect(78, 20, -2);
    expect(22, 24, 2);
    while (window.done.size() < expected.size()) {
        loop.Tick();
        clock.Advance(0.6);
    }
    EXPECT_EQ(window.done, expected);
}

TEST_F(MonitorLoopTest, OddRampSettingsNeverLeaveWhatAHeaterTakes) {
    const struct {
        int low, high, increment;
        std::vector<int> sent;
    } cases[] = {
        {-50, 50, 40, {0, 40, 50, 10, 0, 40}}, {80, 255, 15, {80, 95, 100, 85, 80, 95}},
        {80, 20, 5, {80, 20, 80, 20, 80, 20}}, {20, 80, 0, {20, 20, 20, 20}},
        {20, 80, -15, {20, 5, 0, 0, 0}},       {90, 10, -15, {90, 10, 90, 10}},
        {20, 80, 32767, {20, 80, 20, 80}},     {-2147483647 - 1, 2147483647, -32768, {0, 0, 0}},
    };
    Adapter().script = [](const Call &call) {
        if (call.request == 0xDB) {
            EXPECT_EQ(call.value, 255);
            Adapter().heaterReply[1] = static_cast<uint8_t>(call.index);
        }
        return int16_t{0};
    };
    for (const auto &c : cases) {
        auto &ramp = Heaters[1];
        ramp.SoftwareControl = ramp.StartPending = ramp.RampUp = true;
        ramp.LowPct = c.low;
        ramp.HighPct = c.high;
        ramp.IncrementPct = static_cast<int16_t>(c.increment);
        window.done.clear();
        std::vector<std::string> expected;
        for (const int duty : c.sent) {
            expected.push_back("heater1 " + std::to_string(duty));
            clock.Advance(0.6);
            loop.Tick();
        }
        EXPECT_EQ(window.done, expected) << c.low << " to " << c.high << " by " << c.increment;
    }
}

TEST_F(MonitorLoopTest, RampsStepByTheirOwnIntervals) {
    for (auto &heater : Heaters) {
        heater.SoftwareControl = heater.StartPending = true;
    }
    Heaters[1].IntervalMs = 1000;
    const auto first = CountIn(20.4, "heater0");
    EXPECT_NEAR(static_cast<double>(first), 40, 1);
    EXPECT_NEAR(static_cast<double>(window.done.size()) - static_cast<double>(first), 20, 1);
}

} // namespace
} // namespace ztm
