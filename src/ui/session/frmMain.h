#pragma once

#include "monitor/MonitorLoop.h"
#include "ui/kit/Form.h"

class QTabWidget;
class QTimer;

namespace ztm {

class AboutPage;
class ControlPage;
class RegisterAccessPage;
class StatusBar;
class VisualDisplayPage;

/// The main window: four tabs, each a class of its own, the status bar and the monitor timer.
/// Loading it starts the adapter; the session start initialises and shows it; closing it ends the
/// program.
class frmMain final : public Form, private MonitorWindow {
    Q_OBJECT

public:
    /// Starts the adapter if the USB medium was chosen.
    explicit frmMain(bool usbChosen);

    /// Sets the session's defaults, texts and derived state, and starts the monitor timer.
    void InitMainWindow();

    RegisterAccessPage &RegisterAccess() { return *registerAccess; }

    /// Stops the monitor ticks and everything else that a timer drives, in every window.
    void StopMonitor();

    QSize sizeHint() const override;

protected:
    void Form_Unload() override;

private:
    void SetupUi();
    void ConnectSignals();

    void SSTab1_Click(int tab);
    void tmrMain_Timer();
    void tmrStatus_Timer();

    void SetTimerPeriod(int milliseconds) override;
    MainTab ShownTab() const override;
    bool ContinuousReadChecked() const override;
    void ReadShownRegister() override;
    void UpdateAlerts() override;
    void UpdateGauge() override;
    void UpdateCharts() override;
    void ShowFanSpeed(int fan, const std::string &text) override;
    void ShowLog() override;
    void ShowHeaterDuty(int heater, int duty) override;
    void TickDone() override;

    QTabWidget *SSTab1;
    AboutPage *about;
    RegisterAccessPage *registerAccess;
    VisualDisplayPage *visualDisplay;
    ControlPage *control;
    StatusBar *stbMain;
    QTimer *tmrMain;
    QTimer *tmrStatus;
    MonitorLoop monitorLoop;
    bool ticking = false;
};

} // namespace ztm
