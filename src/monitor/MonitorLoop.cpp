#include "monitor/MonitorLoop.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/Traffic.h"
#include "monitor/Channels.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"

namespace ztm {
namespace {

constexpr double continuousReadSpacingSeconds = 0.5;
constexpr double statusReadSpacingSeconds = 0.1;
constexpr double millisecondsPerSecond = 1000;

constexpr std::array<int, 2> fanChannels{3, 4};

} // namespace

void MonitorLoop::Tick() {
    window.SetTimerPeriod(MonitorInterval);
    now = RunningSeconds();
    RepeatRead();
    if (window.ShownTab() != MainTab::RegisterAccess || MonitorInReadWrite) {
        Monitor();
    }
    ShowFanSpeeds();
    Log();
    StepHeaters();
    window.TickDone();
}

void MonitorLoop::RepeatRead() {
    if (now - LastContinuousRead > continuousReadSpacingSeconds &&
        window.ShownTab() == MainTab::RegisterAccess && window.ContinuousReadChecked()) {
        LastContinuousRead = now;
        const Requester continuousRead("Continuous Read");
        window.ReadShownRegister();
    }
}

void MonitorLoop::Monitor() {
    const Requester monitor(MonitorRequester);
    const bool displayShown = window.ShownTab() == MainTab::VisualDisplay;
    if (MonitoringEnabled) {
        ReadMeasurement(NextChannel);
        NextChannel = NextChannel >= ChannelCount - 1 ? 0 : NextChannel + 1;
        KeepRecentMeasurements();
    }
    if (now - LastStatusRead > statusReadSpacingSeconds && displayShown && LimitMonitorEnabled) {
        LastStatusRead = now;
        const Requester alerts(AlertsRequester);
        window.UpdateAlerts();
    }
    if (displayShown && BargraphEnabled) {
        const Requester gauge(GaugeRequester);
        window.UpdateGauge();
    }
    if (GraphingEnabled) {
        RecordMeasurements();
        window.UpdateCharts();
    }
}

void MonitorLoop::ShowFanSpeeds() {
    if (!ManualDialogOpen) {
        return;
    }
    int fan = 0;
    for (const int channel : fanChannels) {
        if (HasChannel(channel)) {
            window.ShowFanSpeed(fan, NumberText(At(Measurements, channel)).append(" RPM"));
        }
        ++fan;
    }
}

void MonitorLoop::Log() {
    if (!LoggingActive) {
        return;
    }
    now = RunningSeconds(); // the reads of this tick may have taken long
    WatchLogFile();
    if (LoggingActive && now - LastLogTime > LogInterval / millisecondsPerSecond &&
        (LogEntryCount < MaxLogEntries || MaxLogEntries == 0)) {
        if (LogEntryCount == 0) {
            LogStartTime = RoundHalfToEven(now);
        }
        LastLogTime = now;
        WriteLogEntry(LogStartTime);
        window.ShowLog();
    }
    if (LoggingActive && MaxLogEntries > 0 && LogEntryCount >= MaxLogEntries) {
        StopLog();
    }
    if (!LoggingActive) {
        window.ShowLog();
    }
}

void MonitorLoop::StepHeaters() {
    const Requester heaterRamp("Heater Ramp");
    int heater = 0;
    for (HeaterRamp &ramp : ramps) {
        if (const auto duty = ramp.Step(now)) {
            window.ShowHeaterDuty(heater, *duty);
        }
        ++heater;
    }
}

} // namespace ztm
