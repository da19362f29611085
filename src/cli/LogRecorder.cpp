#include "cli/LogRecorder.h"

#include "cli/ExitCodes.h"
#include "common/Clock.h"
#include "monitor/Channels.h"
#include "monitor/MonitorLoop.h"
#include "monitor/MonitorSettings.h"

#include <algorithm>

namespace ztm::cli {
namespace {

constexpr double millisecondsPerSecond = 1000;
constexpr int32_t longestTickMs = 30; // the program's own

/// Nobody looks.
class NoWindow final : public MonitorWindow {
public:
    void SetTimerPeriod(int /*milliseconds*/) override {}
    MainTab ShownTab() const override { return MainTab::Control; }
    bool ContinuousReadChecked() const override { return false; }
    void ReadShownRegister() override {}
    void UpdateAlerts() override {}
    void UpdateGauge() override {}
    void UpdateCharts() override {}
    void ShowFanSpeed(int /*fan*/, const std::string & /*text*/) override {}
    void ShowLog() override {}
    void ShowHeaterDuty(int /*heater*/, int /*duty*/) override {}
    void TickDone() override {}
};

/// Ends the log however it is left.
class RunningLog {
public:
    RunningLog(const std::string &path, const LogSettings &settings) {
        const std::string problem = StartLog(path, settings);
        if (!problem.empty()) {
            throw Failure(FileFailed, path + ": " + problem);
        }
    }
    ~RunningLog() { StopLog(); }
    RunningLog(const RunningLog &) = delete;
    RunningLog &operator=(const RunningLog &) = delete;
};

} // namespace

void RecordLog(const std::string &path, const LogSettings &settings) {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        ReadMeasurement(channel);
    }
    {
        const RunningLog log(path, settings);
        NoWindow window;
        MonitorLoop monitor(window);
        MonitoringEnabled = true;
        MonitorInterval = static_cast<int16_t>(std::clamp(LogInterval, 1, longestTickMs));
        while (LoggingActive) {
            const double tick = RunningSeconds();
            monitor.Tick();
            if (LoggingActive) {
                WaitSince(tick, MonitorInterval / millisecondsPerSecond);
            }
        }
    }
    if (!LogProblem().empty()) {
        throw Failure(FileFailed, path + ": " + LogProblem());
    }
}

} // namespace ztm::cli
