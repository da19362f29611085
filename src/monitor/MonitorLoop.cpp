#include "monitor/MonitorLoop.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/Heaters.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"

#include <algorithm>

namespace ztm {
namespace {

constexpr double continuousReadSpacingSeconds = 0.5;
constexpr double statusReadSpacingSeconds = 0.1;
constexpr double heaterReadPauseSeconds = 0.005;
constexpr double millisecondsPerSecond = 1000;
constexpr int fullDuty = 100;

constexpr std::array<int, 2> fanChannels{3, 4};

/// A duty that a heater takes, whatever the settings of its ramp are.
int LimitedDuty(int percent) {
    return std::clamp(percent, 0, fullDuty);
}

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
    for (size_t heater = 0; heater < Heaters.size(); ++heater) {
        StepHeater(heater);
    }
}

void MonitorLoop::RepeatRead() {
    if (now - LastContinuousRead > continuousReadSpacingSeconds &&
        window.ShownTab() == MainTab::RegisterAccess && window.ContinuousReadChecked()) {
        LastContinuousRead = now;
        window.ReadShownRegister();
    }
}

void MonitorLoop::Monitor() {
    const bool displayShown = window.ShownTab() == MainTab::VisualDisplay;
    if (MonitoringEnabled) {
        ReadMeasurement(NextChannel);
        NextChannel = NextChannel >= ChannelCount - 1 ? 0 : NextChannel + 1;
    }
    if (now - LastStatusRead > statusReadSpacingSeconds && displayShown && LimitMonitorEnabled) {
        LastStatusRead = now;
        window.UpdateAlerts();
    }
    if (displayShown && BargraphEnabled) {
        window.UpdateGauge();
    }
    if (GraphingEnabled) {
        window.UpdateCharts();
    }
}

void MonitorLoop::ShowFanSpeeds() {
    if (!ManualDialogOpen) {
        return;
    }
    for (size_t fan = 0; fan < fanChannels.size(); ++fan) {
        if (HasChannel(fanChannels[fan])) {
            const float rpm = Measurements[static_cast<size_t>(fanChannels[fan])];
            std::string text = NumberText(rpm);
            window.ShowFanSpeed(static_cast<int>(fan), text.append(" RPM"));
        }
    }
}

void MonitorLoop::Log() {
    if (!LoggingActive) {
        return;
    }
    now = RunningSeconds(); // what the tick has read until here may have taken long
    if (now - LastLogTime > LogInterval / millisecondsPerSecond &&
        (LogEntryCount < MaxLogEntries || MaxLogEntries == 0)) {
        if (LogEntryCount == 0) {
            LogStartTime = RoundHalfToEven(now);
        }
        LastLogTime = now;
        window.WriteLogEntry(LogStartTime);
    }
    if (LoggingActive && MaxLogEntries > 0 && LogEntryCount >= MaxLogEntries) {
        window.StopLogging();
    }
}

void MonitorLoop::StepHeater(size_t heater) {
    HeaterSettings &settings = Heaters[heater];
    if (!settings.SoftwareControl ||
        now - LastStepTime[heater] <= settings.IntervalMs / millisecondsPerSecond) {
        return;
    }
    // Ends beyond what can be sent would never be reached, and the ramp never turn.
    const int low = LimitedDuty(settings.LowPct);
    const int high = LimitedDuty(settings.HighPct);
    if (settings.StartPending) {
        SendHeaterDuty(heater, low);
        settings.StartPending = false;
    } else {
        ReadHeaterDuty();
        Wait(heaterReadPauseSeconds);
        const int step = settings.RampUp ? settings.IncrementPct : -settings.IncrementPct;
        const int next = settings.Pwm + step;
        const bool beforeEnd = settings.RampUp ? next < high : next > low;
        const int end = settings.RampUp ? high : low;
        SendHeaterDuty(heater, beforeEnd ? next : end);
        if (!beforeEnd) {
            settings.RampUp = !settings.RampUp;
        }
    }
    LastStepTime[heater] = now;
}

/// Whatever the ends and the step of a ramp are, a duty stays a percentage.
void MonitorLoop::SendHeaterDuty(size_t heater, int duty) {
    duty = LimitedDuty(duty);
    SetHeaterDuty(heater == 0 ? duty : HeaterUnchanged, heater == 1 ? duty : HeaterUnchanged);
    window.ShowHeaterDuty(static_cast<int>(heater), duty);
}

} // namespace ztm
