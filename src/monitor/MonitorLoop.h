#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace ztm {

/// Positions of the main window's tabs.
enum class MainTab : int { About = 0, RegisterAccess = 1, VisualDisplay = 2, Control = 3 };

/// The windows as the monitor tick sees them.
class MonitorWindow {
public:
    virtual ~MonitorWindow() = default;
    virtual void SetTimerPeriod(int milliseconds) = 0;
    virtual MainTab ShownTab() const = 0;

    virtual bool ContinuousReadChecked() const = 0;
    virtual void ReadShownRegister() = 0;

    virtual void UpdateAlerts() = 0;
    virtual void UpdateGauge() = 0;
    virtual void UpdateCharts() = 0;

    /// Shows the measured speed of fan 0 or 1 in the manual speed dialog.
    virtual void ShowFanSpeed(int fan, const std::string &text) = 0;

    /// Appends an entry to the measurement log, whose times count from `startTime`.
    virtual void WriteLogEntry(double startTime) = 0;
    virtual void StopLogging() = 0;

    /// Shows the duty in percent of heater 0 or 1.
    virtual void ShowHeaterDuty(int heater, int duty) = 0;
};

/// The periodic driver of the program: one tick per period of the monitor timer. Its spacings
/// are measured on RunningSeconds; a midnight stretches none of them, and a clock set back or a
/// pause makes at most one duty come early, never a burst.
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
    void StepHeater(size_t heater);
    void SendHeaterDuty(size_t heater, int duty);

    MonitorWindow &window;
    double now = 0; // of this tick, RunningSeconds like the times below
    double LastContinuousRead = 0;
    double LastStatusRead = 0;
    double LastLogTime = 0;
    std::array<double, 2> LastStepTime{};
    int NextChannel = 0;
};

} // namespace ztm
