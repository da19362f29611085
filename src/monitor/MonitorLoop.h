#pragma once

#include "monitor/HeaterRamp.h"

#include <array>
#include <string>

namespace ztm {

/// Positions of the main window's tabs.
enum class MainTab : int { About = 0, RegisterAccess = 1, VisualDisplay = 2, Control = 3 };

/// Who asks for what a tick reads, unless the user has asked for it.
inline constexpr char MonitorRequester[] = "Monitor";
inline constexpr char AlertsRequester[] = "Alerts";
inline constexpr char GaugeRequester[] = "Gauge";

/// The windows as seen by the monitor tick.
class MonitorWindow {
public:
    virtual ~MonitorWindow() = default;
    virtual void SetTimerPeriod(int milliseconds) = 0;
    virtual MainTab ShownTab() const = 0;

    virtual bool ContinuousReadChecked() const = 0;
    virtual void ReadShownRegister() = 0;

    virtual void UpdateAlerts() = 0;
    virtual void UpdateGauge() = 0;
    /// Draws new history data.
    virtual void UpdateCharts() = 0;

    /// Shows the measured speed of fan 0 or 1 in the manual speed dialog.
    virtual void ShowFanSpeed(int fan, const std::string &text) = 0;

    /// Shows the progress of the measurement log, or that it has stopped.
    virtual void ShowLog() = 0;

    /// Shows the duty in percent of heater 0 or 1.
    virtual void ShowHeaterDuty(int heater, int duty) = 0;

    /// The last call of a tick.
    virtual void TickDone() = 0;
};

/// The periodic driver of the program: one tick per period of the monitor timer. Its intervals are
/// measured with RunningSeconds: neither midnight nor a clock set back stretches them, and after a
/// pause each comes once, never in a burst.
class MonitorLoop {
public:
    explicit MonitorLoop(MonitorWindow &window) : window(window) {}

    /// Does what is due, in this order: timer period, continuous read, one measurement with the
    /// displays, fan speeds of the manual dialog, log entry, heater ramps.
    void Tick();

private:
    void RepeatRead();
    void Monitor();
    void ShowFanSpeeds();
    void Log();
    void StepHeaters();

    MonitorWindow &window;
    double now = 0; // of this tick, RunningSeconds like the times below
    double LastContinuousRead = 0;
    double LastStatusRead = 0;
    double LastLogTime = 0;
    int NextChannel = 0;
    std::array<HeaterRamp, 2> ramps{HeaterRamp(0), HeaterRamp(1)};
};

} // namespace ztm
