#pragma once

#include "monitor/Channels.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QGroupBox;
class QLabel;
class QPushButton;

namespace ztm {

class AlertList;
class Gauge;
class LimitBoxes;
class MonitorCharts;

/// The tab "Visual Display": the strip charts, the channels with their alarm states, the gauge of
/// the selected one, whose pointers show and set its limits, and the buttons for the set-up.
class VisualDisplayPage final : public QWidget {
    Q_OBJECT

public:
    explicit VisualDisplayPage(QWidget *parent = nullptr);

    /// On the first call lays the page out for the variant. Then runs the click of the selected
    /// channel, which reads its limits.
    void SetupMonitorTab();

    void UpdateAlerts();
    void UpdateGauge();

    /// Shows new history data in the charts.
    void UpdateCharts();

    /// Shows what the tick has measured.
    void TickDone();

    /// Opens the dialog of the options.
    void cmdGraphOptions_Click();

signals:
    /// Asks for the monitor timer's period, on the first visit.
    void MonitorPeriodWanted();

private:
    void SetupUi();
    QGroupBox *NewGaugeFrame();
    QWidget *NewButtonRow();
    void ConnectSignals();

    Gauge &GaugeOf(int channel) const;
    void ShowChannelLimits(int high, int low, bool temperature);
    void TrackGaugePointers(int gauge);
    void ShowPointers();
    void EnterLimit(void (Gauge::*setPointer)(double), double value);
    void ApplyGaugeLimits(int gauge);

    void ShowOptions();
    void ShowEvents(MonitorCharts *opener);
    void ShowTime(double time);
    void optMeasure_Click(int channel);
    void ShowChannel(int channel);
    void cmdEasySetup_Click();
    void cmdSetUpLog_Click();
    void OpenLog();

    bool MonitorTabReady = false;

    MonitorCharts *charts;
    QPointer<MonitorCharts> eventsOpener; // where the window of events leads to
    AlertList *alerts;
    std::array<Gauge *, 3> Limits; // temperature, fan speed, THERM%
    LimitBoxes *limitBoxes;
    QLabel *lblBargraph;
    QPushButton *cmdEasySetup;
    QPushButton *cmdGraphOptions;
    QPushButton *cmdSetUpLog;
};

} // namespace ztm
