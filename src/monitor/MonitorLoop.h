#pragma once

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
};

/// The periodic driver of the program: one tick per period of the monitor timer.
class MonitorLoop {
public:
    explicit MonitorLoop(MonitorWindow &window) : window(window) {}

    /// Sets the timer's period to `MonitorInterval`, then repeats the register read of the
    /// "Register Access" tab, at most every 0.5 s, while that tab is shown and "Continuous
    /// Read" is checked.
    void Tick();

private:
    MonitorWindow &window;
    float LastContinuousRead = 0; // seconds since midnight
};

} // namespace ztm
