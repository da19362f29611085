#include "ui/display/VisualDisplayPage.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/MonitorCharts.h"
#include "ui/display/frmBigGraph.h"
#include "ui/display/frmGraphOptions.h"
#include "ui/display/frmSetupLog.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>

namespace ztm {
namespace {

/// The gauges, by the quantity that they show.
struct GaugeKind {
    double minimum;
    double maximum;
    double step; // of the arrow keys
    const char *unit;
    int decimals; // of the caption
    const char *name;
};
constexpr std::array<GaugeKind, 3> gaugeKinds{{
    {-55, 127, 1, "°C", 2, QT_TRANSLATE_NOOP("ztm::VisualDisplayPage", "Temperature")},
    {0, 15000, 100, "RPM", 0, QT_TRANSLATE_NOOP("ztm::VisualDisplayPage", "Fan speed")},
    {0, 100, 1, "%", 2, QT_TRANSLATE_NOOP("ztm::VisualDisplayPage", "THERM%")},
}};

constexpr int temperatureGauge = static_cast<int>(Quantity::Temperature);
constexpr int percentGauge = static_cast<int>(Quantity::ThermPercent);

const Channel &ChannelAt(int channel) {
    return At(Channels, channel);
}

/// The name of a channel on the current variant.
QString NameOf(int channel) {
    return ToQString(ChannelName(channel));
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
    layout->addWidget(NewAlertsFrame(), 0, 1);
    layout->addWidget(NewGaugeFrame(), 1, 1);
    layout->addWidget(NewButtonRow(), 2, 0, 1, 2);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
}

QGroupBox *VisualDisplayPage::NewAlertsFrame() {
    auto *frame = Named(new Frame(tr("Alerts"), this), "fraAlerts");
    auto *group = new QButtonGroup(frame);
    auto *rows = new QGridLayout;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const QString name = ToQString(ChannelAt(channel).Name);
        auto *option = NewOption(IndexedName("optMeasure", channel), name, frame);
        auto *indicator = new ToggleIndicator(frame);
        indicator->setObjectName(IndexedName("tglAlert", channel));
        indicator->setAccessibleName(tr("Alert %1").arg(name));
        indicator->SetKnown(false);
        indicator->setToolTip(tr("Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled"));
        group->addButton(option, channel);
        rows->addWidget(option, channel, 0, Qt::AlignLeft);
        rows->addWidget(indicator, channel, 1);
        At(optMeasure, channel) = option;
        At(tglAlert, channel) = indicator;
    }
    connect(group, &QButtonGroup::idClicked, this, &VisualDisplayPage::optMeasure_Click);

    auto *caption = new QLabel(tr("Select Channel to view value/limits:"), frame);
    caption->setWordWrap(true);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(caption);
    layout->addLayout(rows);
    layout->addStretch();
    return frame;
}

QGroupBox *VisualDisplayPage::NewGaugeFrame() {
    auto *frame = Named(new Frame(this), "fraGauge");
    lblBargraph = Named(new QLabel(tr("None"), frame), "lblBargraph");
    lblBargraph->setAlignment(Qt::AlignCenter);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(lblBargraph);
    for (size_t index = 0; index < Limits.size(); ++index) {
        const GaugeKind &kind = gaugeKinds[index];
        auto *gauge = new Gauge(frame);
        gauge->setObjectName(IndexedName("Limits", index));
        gauge->setAccessibleName(tr(kind.name));
        gauge->setToolTip(tr("Drag the sliders to change the limits"));
        gauge->SetMinimum(kind.minimum);
        gauge->SetMaximum(kind.maximum);
        gauge->SetSingleStep(kind.step);
        gauge->SetHighPointer(kind.maximum);
        gauge->SetNeedleVisible(false);
        gauge->SetLowPointerVisible(static_cast<int>(index) != percentGauge);
        gauge->hide();
        layout->addWidget(gauge, 1);
        Limits[index] = gauge;
    }
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
    connect(cmdEasySetup, &QPushButton::clicked, this, &VisualDisplayPage::cmdEasySetup_Click);
    connect(cmdGraphOptions, &QPushButton::clicked, this,
            &VisualDisplayPage::cmdGraphOptions_Click);
    connect(cmdSetUpLog, &QPushButton::clicked, this, &VisualDisplayPage::cmdSetUpLog_Click);
}

void VisualDisplayPage::SetupMonitorTab() {
    if (!MonitorTabReady) {
        optMeasure[0]->setChecked(true);
        optMeasure_Click(0);
        emit MonitorPeriodWanted();
        LayOutForVariant();
        MonitorTabReady = true;
    }
    if (const int channel = SelectedChannel(); channel >= 0) {
        optMeasure_Click(channel);
    }
}

/// Hides the rows of channels that the variant lacks, closes the gaps and gives the other rows the
/// variant's names.
void VisualDisplayPage::LayOutForVariant() {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        auto *option = At(optMeasure, channel);
        auto *indicator = At(tglAlert, channel);
        option->setVisible(HasChannel(channel));
        indicator->setVisible(HasChannel(channel));
        if (HasChannel(channel)) {
            option->setText(NameOf(channel));
            indicator->setAccessibleName(tr("Alert %1").arg(NameOf(channel)));
        }
    }
    charts->LayOutForVariant();
}

/// The first selected channel; -1 if there is none.
int VisualDisplayPage::SelectedChannel() const {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (At(optMeasure, channel)->isChecked()) {
            return channel;
        }
    }
    return -1;
}

Gauge &VisualDisplayPage::GaugeOf(int channel) const {
    return *At(Limits, ChannelAt(channel).Measures);
}

void VisualDisplayPage::optMeasure_Click(int channel) {
    lblBargraph->setText(At(optMeasure, channel)->text());
    for (auto *gauge : Limits) {
        gauge->setVisible(gauge == &GaugeOf(channel));
    }
    const Channel &selected = ChannelAt(channel);
    if (selected.HighLimit == NoRegister) {
        return;
    }
    const int high = ReadRegister(selected.HighLimit);
    const int low = selected.LowLimit == NoRegister ? 0 : ReadRegister(selected.LowLimit);
    ShowChannelLimits(high, low, selected.Measures == Quantity::Temperature);
}

void VisualDisplayPage::ShowChannelLimits(int high, int low, bool temperature) {
    if (!temperature) {
        Limits[percentGauge]->SetHighPointer(RoundToDecimals(PercentOfByte(high), 2));
        return;
    }
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
}

void VisualDisplayPage::ApplyGaugeLimits(int gauge) {
    const int channel = SelectedChannel();
    // A message takes the focus, which ends a change by keys; nothing may be written behind it.
    if (channel < 0 || static_cast<int>(ChannelAt(channel).Measures) != gauge || IsMessageShown()) {
        return;
    }
    const Channel &selected = ChannelAt(channel);
    if (gauge == temperatureGauge) {
        const double low = Limits[temperatureGauge]->LowPointer();
        WriteRegister(selected.LowLimit, TemperatureByte(low));
        const double high = Limits[temperatureGauge]->HighPointer();
        WriteRegister(selected.HighLimit, TemperatureByte(high));
        SetBands(*Limits[temperatureGauge], low, high);
    } else if (gauge == percentGauge) {
        WriteRegister(selected.HighLimit, PercentByte(Limits[percentGauge]->HighPointer()));
    }
}

void VisualDisplayPage::UpdateAlerts() {
    const auto alarms = ReadAlerts();
    for (size_t channel = 0; channel < alarms.size(); ++channel) {
        tglAlert[channel]->SetAlarm(alarms[channel]);
        tglAlert[channel]->SetKnown(true);
    }
}

void VisualDisplayPage::UpdateGauge() {
    const int channel = SelectedChannel();
    if (channel < 0) {
        return;
    }
    if (!MonitoringEnabled) {
        ReadMeasurement(channel);
    }
    Gauge &gauge = GaugeOf(channel);
    const GaugeKind &kind = At(gaugeKinds, ChannelAt(channel).Measures);
    gauge.SetNeedleVisible(IsMeasured(channel));
    gauge.SetNeedle(At(Measurements, channel));
    gauge.SetCaption(ToQString(NumberText(RoundToDecimals(gauge.Needle(), kind.decimals))) +
                     QString::fromUtf8(kind.unit));
}

void VisualDisplayPage::UpdateCharts() {
    charts->ShowGraphType();
    charts->HistoryChanged();
    if (auto *bigGraph = BigGraphEnabled ? LoadedForm<frmBigGraph>() : nullptr) {
        bigGraph->UpdateCharts();
    }
}

void VisualDisplayPage::cmdEasySetup_Click() {
    MonitoringEnabled = true;
    GraphingEnabled = true;
    LimitMonitorEnabled = true;
    BargraphEnabled = true;
    WriteRegister(Configuration1, ReadRegister(Configuration1) | MonitorBit);
    optMeasure[0]->setChecked(true);
    optMeasure_Click(0);
}

void VisualDisplayPage::cmdGraphOptions_Click() {
    connect(&ShowForm<frmGraphOptions>(this), &frmGraphOptions::Applied, this,
            &VisualDisplayPage::ShowOptions, Qt::UniqueConnection);
}

void VisualDisplayPage::ShowOptions() {
    charts->ShowGraphType();
    if (!LimitMonitorEnabled) {
        for (auto *indicator : tglAlert) {
            indicator->SetKnown(false);
        }
    }
}

void VisualDisplayPage::cmdSetUpLog_Click() {
    ShowForm<frmSetupLog>(this);
}

} // namespace ztm
