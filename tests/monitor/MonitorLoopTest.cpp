#include "monitor/MonitorLoop.h"

#include "common/NumberText.h"
#include "link/Heaters.h"
#include "link/LinkTest.h"
#include "monitor/Channels.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/TemporaryFile.h"

#include <cmath>

namespace ztm::test {
namespace {

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

class MonitorLoopTest : public LinkTest {
protected:
    MonitorLoopTest() : LinkTest(86400 - 10) {} // a midnight is never far

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

    TemporaryFolder folder;
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
    using Ticks = std::vector<Calls>;
    const Calls local{Read(0x40), Read(0x41)}, remote1{Read(0x42), Read(0x43)},
        remote2{Read(0x44), Read(0x45)}, fan1{Read(0x4A), Read(0x4B)}, fan2{Read(0x4C), Read(0x4D)},
        therm{Read(0x4E)};
    MonitoringEnabled = true;
    for (const auto &[variant, round] :
         {std::pair{ZTM7720, Ticks{local, remote1, remote2, fan1, fan2, therm, local}},
          std::pair{ZTM7710, Ticks{local, remote1, {}, fan1, {}, therm, local}}}) {
        DeviceName = variant;
        MonitorLoop fresh(window);
        Ticks ticks;
        while (ticks.size() < round.size()) {
            ticks.push_back(CallsOf([&] { fresh.Tick(); }));
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

TEST_F(MonitorLoopTest, SpacingsHoldOverMidnightAndDoNotDriftInAnHour) {
    constexpr double hour = 3600;
    LimitMonitorEnabled = true;
    StartLogOf(0, 250);
    window.continuousRead = true;
    Heaters[1].IntervalMs = 700;
    // A duty comes with the first tick above its spacing, and every step of a ramp waits 5 ms.
    const struct {
        const char *what;
        double spacing, waits;
    } duties[] = {{"heater1", 0.7, 0.005}, {"alerts", 0.1, 0}, {"log", 0.25, 0}, {"read", 0.5, 0}};
    for (const double period : {0.030, 0.070, 0.009}) {
        for (const auto &[what, spacing, waits] : duties) {
            Heaters[1].SoftwareControl = waits > 0;
            window.tab = what == duties[3].what ? MainTab::RegisterAccess : MainTab::VisualDisplay;
            const double ticks = std::floor((spacing - waits) / period) + 1;
            EXPECT_NEAR(static_cast<double>(CountIn(hour, what, period)),
                        hour / (ticks * period + waits), 1)
                << what << " " << period;
        }
    }
    clock.Advance(40000);
    EXPECT_EQ(CountIn(0.48, "read"), 1) << "after a pause";
    clock.Advance(86400 - 3600);
    EXPECT_LE(CountIn(0.48, "read"), 1) << "after the clock was set back";
    EXPECT_EQ(CountIn(60, "read"), 118);
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

TEST_F(MonitorLoopTest, ARampRunsUpAndDownAndNeverLeavesWhatItsHeaterTakes) {
    const struct {
        int low, high, increment;
        std::vector<int> sent;
    } cases[] = {
        {20, 26, 2, {20, 22, 24, 26, 24, 22, 20, 22}},
        {0, 100, 40, {0, 40, 80, 100, 60, 20, 0, 40}},
        {-50, 50, 40, {0, 40, 50, 10, 0, 40}},
        {80, 255, 15, {80, 95, 100, 85, 80, 95}},
        {80, 20, 5, {80, 20, 80, 20, 80, 20}},
        {20, 80, 0, {20, 20, 20, 20}},
        {20, 80, -15, {20, 5, 0, 0, 0}},
        {90, 10, -15, {90, 10, 90, 10}},
        {20, 80, 32767, {20, 80, 20, 80}},
        {-2147483647 - 1, 2147483647, -32768, {0, 0, 0}},
    };
    for (const auto &c : cases) {
        for (const size_t heater : {size_t{0}, size_t{1}}) {
            SCOPED_TRACE(testing::Message() << c.low << " to " << c.high << " by " << c.increment);
            const auto increment = static_cast<int16_t>(c.increment);
            Heaters[heater] = {0, true, c.low, c.high, increment, 500, true, true};
            for (const int duty : c.sent) {
                Calls calls{{0xDA, 0, 0, 1, 3},
                            {0xDB, heater == 0 ? duty : 255, heater == 1 ? duty : 255, 0, 0}};
                if (Heaters[heater].StartPending) {
                    calls.erase(calls.begin());
                }
                clock.Advance(0.6);
                window.done.clear();
                EXPECT_EQ(CallsOf([&] { loop.Tick(); }), calls);
                EXPECT_THAT(window.done, ElementsAre("heater" + std::to_string(heater) + " " +
                                                     std::to_string(duty)));
            }
            Heaters[heater].SoftwareControl = false;
        }
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
} // namespace ztm::test
