#include "ui/display/VisualDisplayPage.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/AlertList.h"
#include "ui/display/LimitBoxes.h"
#include "ui/display/MonitorCharts.h"
#include "ui/display/Quantities.h"
#include "ui/display/frmBigGraph.h"
#include "ui/display/frmEvents.h"
#include "ui/display/frmGraphOptions.h"
#include "ui/display/frmLogView.h"
#include "ui/display/frmSetupLog.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/StripChartLimits.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QGridLayout>
#include <QLabel>

namespace ztm {
namespace {

constexpr int temperatureGauge = static_cast<int>(Quantity::Temperature);
constexpr int percentGauge = static_cast<int>(Quantity::ThermPercent);

const Channel &ChannelAt(int channel) {
    return At(Channels, channel);
}

void SetBands(Gauge &gauge, double start, double end) {
    gauge.SetBand0Start(start);
    gauge.SetBand0End(end);
    gauge.SetBand1Start(start);
    gauge.SetBand1End(end);
}

} // namespace

VisualDisplayPage::VisualDisplayPage(QWidget *parent) : QWidget(parent) {
    SetupUi();
    ConnectSignals();
}

void VisualDisplayPage::SetupUi() {
    charts = new MonitorCharts({0.06, 0.06}, this);
    auto *layout = new QGridLayout(this);
    layout->addWidget(charts, 0, 0, 2, 1);
    layout->addWidget(NewButtonRow(), 2, 0);
    alerts = Named(new AlertList(this), "fraAlerts");
    layout->addWidget(alerts, 0, 1);
    layout->addWidget(NewGaugeFrame(), 1, 1, 2, 1);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
}

QGroupBox *VisualDisplayPage::NewGaugeFrame() {
    auto *frame = Named(new Frame(this), "fraGauge");
    lblBargraph = Named(new QLabel(tr("None"), frame), "lblBargraph");
    lblBargraph->setAlignment(Qt::AlignCenter);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(lblBargraph);
    for (size_t index = 0; index < Limits.size(); ++index) {
        const QuantityLook &look = LookOf(static_cast<Quantity>(index));
        auto *gauge = new Gauge(frame);
        gauge->setObjectName(IndexedName("Limits", index));
        gauge->setAccessibleName(look.name);
        gauge->setToolTip(tr("Drag the sliders to change the limits"));
        gauge->SetMinimum(look.minimum);
        gauge->SetMaximum(look.maximum);
        gauge->SetSingleStep(look.step);
        gauge->SetHighPointer(look.maximum);
        gauge->SetNeedleVisible(false);
        gauge->SetLowPointerVisible(static_cast<int>(index) != percentGauge);
        gauge->hide();
        layout->addWidget(gauge, 1);
        Limits[index] = gauge;
    }
    limitBoxes = new LimitBoxes(frame);
    layout->addWidget(limitBoxes);
    return frame;
}

QWidget *VisualDisplayPage::NewButtonRow() {
    auto *row = new QWidget(this);
    cmdEasySetup = NewButton("cmdEasySetup", tr("Easy Setup"), row);
    cmdGraphOptions = NewButton("cmdGraphOptions", tr("Options"), row);
    cmdSetUpLog = NewButton("cmdSetUpLog", tr("Setup Log"), row);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (auto *button : {cmdEasySetup, cmdGraphOptions, cmdSetUpLog}) {
        layout->addWidget(button);
    }
    layout->addStretch();
    return row;
}

void VisualDisplayPage::ConnectSignals() {
    for (size_t index = 0; index < Limits.size(); ++index) {
        const int gauge = static_cast<int>(index);
        connect(Limits[index], &Gauge::PointerMoving, this,
                [this, gauge] { TrackGaugePointers(gauge); });
        connect(Limits[index], &Gauge::PointerChanged, this,
                [this, gauge] { ApplyGaugeLimits(gauge); });
    }
    connect(charts, &MonitorCharts::EventsWanted, this, &VisualDisplayPage::ShowEvents);
    connect(charts, &MonitorCharts::OpenLogRequested, this, &VisualDisplayPage::OpenLog);
    connect(alerts, &AlertList::ChannelChosen, this, &VisualDisplayPage::optMeasure_Click);
    connect(limitBoxes, &LimitBoxes::LowEntered, this,
            [this](double value) { EnterLimit(&Gauge::SetLowPointer, value); });
    connect(limitBoxes, &LimitBoxes::HighEntered, this,
            [this](double value) { EnterLimit(&Gauge::SetHighPointer, value); });
    connect(cmdEasySetup, &QPushButton::clicked, this, &VisualDisplayPage::cmdEasySetup_Click);
    connect(cmdGraphOptions, &QPushButton::clicked, this,
            &VisualDisplayPage::cmdGraphOptions_Click);
    connect(cmdSetUpLog, &QPushButton::clicked, this, &VisualDisplayPage::cmdSetUpLog_Click);
}

void VisualDisplayPage::SetupMonitorTab() {
    if (!MonitorTabReady) {
        alerts->Select(0);
        ShowChannel(0);
        emit MonitorPeriodWanted();
        alerts->LayOutForVariant();
        charts->LayOutForVariant();
        MonitorTabReady = true;
    }
    if (const int channel = alerts->SelectedChannel(); channel >= 0) {
        ShowChannel(channel);
    }
}

Gauge &VisualDisplayPage::GaugeOf(int channel) const {
    return *At(Limits, ChannelAt(channel).Measures);
}

void VisualDisplayPage::optMeasure_Click(int channel) {
    const Requester option("Gauge Channel");
    ShowChannel(channel);
}

void VisualDisplayPage::ShowChannel(int channel) {
    lblBargraph->setText(alerts->TextOf(channel));
    for (auto *gauge : Limits) {
        gauge->setVisible(gauge == &GaugeOf(channel));
    }
    limitBoxes->SetChannel(channel);
    const Channel &selected = ChannelAt(channel);
    if (selected.HighLimit != NoRegister) {
        const int high = ReadRegister(selected.HighLimit);
        const int low = selected.LowLimit == NoRegister ? 0 : ReadRegister(selected.LowLimit);
        ShowChannelLimits(high, low, selected.Measures == Quantity::Temperature);
    }
    ShowPointers();
}

void VisualDisplayPage::ShowChannelLimits(int high, int low, bool temperature) {
    if (!temperature) {
        Limits[percentGauge]->SetHighPointer(RoundToDecimals(PercentOfByte(high), 2));
        return;
    }
    limitBoxes->SetChipLimits(CelsiusOfByte(low), CelsiusOfByte(high));
    Gauge &gauge = *Limits[temperatureGauge];
    gauge.SetLowPointer(CelsiusOfByte(low));
    gauge.SetHighPointer(CelsiusOfByte(high));
    SetBands(gauge, gauge.LowPointer(), gauge.HighPointer());
}

void VisualDisplayPage::TrackGaugePointers(int gauge) {
    if (gauge == temperatureGauge) {
        SetBands(*Limits[temperatureGauge], Limits[temperatureGauge]->LowPointer(),
                 Limits[temperatureGauge]->HighPointer());
    }
    ShowPointers();
}

/// Shows the pointers of the selected channel's gauge as numbers, and as lines in the charts where
/// they are limits of the chip.
void VisualDisplayPage::ShowPointers() {
    const int channel = alerts->SelectedChannel();
    if (channel < 0) {
        return;
    }
    const Gauge &gauge = GaugeOf(channel);
    limitBoxes->ShowPointers(gauge.LowPointer(), gauge.HighPointer(), gauge.IsPointerHeld());
    const Channel &selected = ChannelAt(channel);
    LimitLines lines{.channel = channel};
    if (selected.HighLimit != NoRegister) {
        lines.high = gauge.HighPointer();
    }
    if (selected.LowLimit != NoRegister) {
        lines.low = gauge.LowPointer();
    }
    charts->ShowLimits(lines);
    if (auto *bigGraph = LoadedForm<frmBigGraph>()) {
        bigGraph->Charts().ShowLimits(lines);
    }
}

/// Does what releasing the pointer at a value does.
void VisualDisplayPage::EnterLimit(void (Gauge::*setPointer)(double), double value) {
    const int gauge = static_cast<int>(ChannelAt(alerts->SelectedChannel()).Measures);
    (At(Limits, gauge)->*setPointer)(value);
    TrackGaugePointers(gauge);
    ApplyGaugeLimits(gauge);
}

void VisualDisplayPage::ApplyGaugeLimits(int gauge) {
    const int channel = alerts->SelectedChannel();
    ShowPointers();
    // A message takes the focus, which ends a change by keys; nothing may be written behind it.
    if (channel < 0 || static_cast<int>(ChannelAt(channel).Measures) != gauge || IsMessageShown()) {
        return;
    }
    const Requester limits("Limits");
    const Channel &selected = ChannelAt(channel);
    if (gauge == temperatureGauge) {
        const double low = Limits[temperatureGauge]->LowPointer();
        WriteRegister(selected.LowLimit, TemperatureByte(low));
        const double high = Limits[temperatureGauge]->HighPointer();
        WriteRegister(selected.HighLimit, TemperatureByte(high));
        limitBoxes->SetChipLimits(low, high);
        SetBands(*Limits[temperatureGauge], low, high);
    } else if (gauge == percentGauge) {
        WriteRegister(selected.HighLimit, PercentByte(Limits[percentGauge]->HighPointer()));
    }
}

void VisualDisplayPage::UpdateAlerts() {
    alerts->ShowAlerts(ReadAlerts());
}

void VisualDisplayPage::UpdateGauge() {
    const int channel = alerts->SelectedChannel();
    if (channel < 0) {
        return;
    }
    if (!MonitoringEnabled) {
        ReadMeasurement(channel);
    }
    Gauge &gauge = GaugeOf(channel);
    gauge.SetNeedleVisible(IsMeasured(channel));
    gauge.SetNeedle(At(Measurements, channel));
    gauge.SetCaption(ValueText(channel, gauge.Needle()));
}

void VisualDisplayPage::UpdateCharts() {
    charts->ShowGraphType();
    charts->HistoryChanged();
    if (auto *bigGraph = BigGraphEnabled ? LoadedForm<frmBigGraph>() : nullptr) {
        bigGraph->UpdateCharts();
    }
}

void VisualDisplayPage::TickDone() {
    if (isVisible()) {
        alerts->ShowValues();
    }
    if (auto *events = LoadedForm<frmEvents>()) {
        events->Follow();
    }
}

void VisualDisplayPage::cmdEasySetup_Click() {
    const Requester easySetup("Easy Setup");
    ResetExtremes();
    MonitoringEnabled = true;
    GraphingEnabled = true;
    LimitMonitorEnabled = true;
    BargraphEnabled = true;
    WriteRegister(Configuration1, ReadRegister(Configuration1) | MonitorBit);
    alerts->Select(0);
    ShowChannel(0);
}

void VisualDisplayPage::cmdGraphOptions_Click() {
    connect(&ShowForm<frmGraphOptions>(this), &frmGraphOptions::Applied, this,
            &VisualDisplayPage::ShowOptions, Qt::UniqueConnection);
}

void VisualDisplayPage::ShowOptions() {
    charts->ShowGraphType();
    ShowPointers(); // a full-screen graph may have opened
    if (auto *bigGraph = LoadedForm<frmBigGraph>()) {
        connect(&bigGraph->Charts(), &MonitorCharts::EventsWanted, this,
                &VisualDisplayPage::ShowEvents, Qt::UniqueConnection);
        connect(&bigGraph->Charts(), &MonitorCharts::OpenLogRequested, this,
                &VisualDisplayPage::OpenLog, Qt::UniqueConnection);
    }
    if (!LimitMonitorEnabled) {
        alerts->ForgetAlerts();
    }
}

void VisualDisplayPage::ShowEvents(MonitorCharts *opener) {
    eventsOpener = opener;
    connect(&ShowForm<frmEvents>(opener), &frmEvents::Chosen, this, &VisualDisplayPage::ShowTime,
            Qt::UniqueConnection);
}

void VisualDisplayPage::ShowTime(double time) {
    (eventsOpener ? eventsOpener.data() : charts)->ShowTime(time);
}

void VisualDisplayPage::cmdSetUpLog_Click() {
    ShowForm<frmSetupLog>(this);
}

void VisualDisplayPage::OpenLog() {
    auto *asker = qobject_cast<QWidget *>(sender()); // the charts here or full-screen
    const QString path = AskLog(asker);
    if (!path.isEmpty()) {
        ShowForm<frmLogView>(asker).OpenLog(path);
    }
}

} // namespace ztm
