#include "ui/display/MonitorCharts.h"

#include "common/At.h"
#include "link/LinkState.h"
#include "monitor/Channels.h"
#include "monitor/Events.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/MeasurementPanel.h"
#include "ui/display/Quantities.h"
#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QVBoxLayout>

#include <initializer_list>

namespace ztm {
namespace {

constexpr QColor colours[ChannelCount] = {{31, 119, 180}, {214, 39, 40},   {230, 120, 0},
                                          {44, 140, 44},  {148, 103, 189}, {150, 95, 75}};

constexpr StripChartSetup::ValueAxis temperatureAxis{0, 120};
constexpr StripChartSetup::ValueAxis fanAxis{0, 8000};

/// Where the columns of labels start, as fractions of a chart's width.
constexpr double leftColumn = 0.12;
constexpr double rightColumn = 0.8;

/// A trace whose label is in that row of one of the columns.
struct Row {
    int channel;
    double column;
    int row;
};

void AddTitle(StripChartSetup &setup, const QString &text, StripChartSetup::Label::Place place) {
    setup.labels.push_back({text, place, {}, {}});
}

void AddTraces(StripChartSetup &setup, std::initializer_list<Row> rows, double rowHeight) {
    for (const Row &row : rows) {
        const Channel &channel = At(Channels, row.channel);
        const bool fan = channel.Measures == Quantity::FanSpeed;
        StripChartSetup::Trace trace;
        trace.channel = row.channel;
        trace.name = ToQString(channel.Name);
        trace.colour = colours[row.channel];
        trace.rightAxis = fan && setup.right.has_value();
        trace.unit = LookOf(channel.Measures).unit;
        trace.decimals = LookOf(channel.Measures).decimals;
        trace.label = static_cast<int>(setup.labels.size());
        setup.traces.push_back(trace);
        setup.labels.push_back({trace.name, StripChartSetup::Label::Place::AtPosition,
                                QPointF(row.column, row.row * rowHeight), trace.colour});
    }
}

StripChartSetup TempSetup(double rowHeight) {
    StripChartSetup setup;
    setup.left = temperatureAxis;
    AddTitle(setup, MonitorCharts::tr("Temperature/THERM%"),
             StripChartSetup::Label::Place::LeftAxisTitle);
    AddTraces(setup,
              {{0, leftColumn, 1}, {1, leftColumn, 2}, {2, leftColumn, 3}, {5, leftColumn, 4}},
              rowHeight);
    return setup;
}

StripChartSetup FanSetup(double rowHeight) {
    StripChartSetup setup;
    setup.left = fanAxis;
    AddTitle(setup, MonitorCharts::tr("Fan Speed"), StripChartSetup::Label::Place::LeftAxisTitle);
    AddTraces(setup, {{3, leftColumn, 1}, {4, leftColumn, 2}}, rowHeight);
    return setup;
}

/// Those of the session's history in the chart that is shown.
std::vector<MeasuredTrace> ShownTraces() {
    std::vector<MeasuredTrace> traces;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const bool isFan = At(Channels, channel).Measures == Quantity::FanSpeed;
        const bool isInChart = GraphType == 1 || (GraphType == 2) == isFan;
        if (isInChart && MeasurementHistory().HasValues(channel)) {
            traces.push_back({&MeasurementHistory(), channel, NameOfChannel(channel)});
        }
    }
    return traces;
}

/// The cursors of all charts of the session.
ChartCursors &SharedCursors() {
    static ChartCursors cursors;
    return cursors;
}

StripChart *NewChart(const char *name, const QString &accessibleName, StripChartSetup setup,
                     QWidget *parent) {
    setup.title = accessibleName;
    setup.emptyNotice = MonitorCharts::tr("Nothing graphed: press Easy Setup");
    auto *chart = new StripChart(MeasurementHistory(), std::move(setup), parent);
    chart->setObjectName(QLatin1String(name));
    chart->setAccessibleName(accessibleName);
    chart->setToolTip(
        MonitorCharts::tr("Drag the arrows at the edges of this graph to zoom in and out"));
    chart->SetEvents({&Events(), EventText});
    QObject::connect(chart, &StripChart::MarkEntered, chart, [](double time, const QString &text) {
        AddEvent(text.toStdString(), NoChannel, time);
    });
    return chart;
}

} // namespace

/// Trace 5 of the combined chart is THERM%, but its label comes last, after those of the fans.
StripChartSetup CombinedChartSetup(double rowHeight) {
    StripChartSetup setup;
    setup.left = temperatureAxis;
    setup.right = fanAxis;
    AddTitle(setup, MonitorCharts::tr("Temperature/THERM%"),
             StripChartSetup::Label::Place::LeftAxisTitle);
    AddTraces(setup, {{0, leftColumn, 1}, {1, leftColumn, 2}, {2, leftColumn, 3}}, rowHeight);
    AddTitle(setup, MonitorCharts::tr("Fan Speed"), StripChartSetup::Label::Place::RightAxisTitle);
    AddTraces(setup, {{3, rightColumn, 1}, {4, rightColumn, 2}, {5, leftColumn, 4}}, rowHeight);
    return setup;
}

MonitorCharts::MonitorCharts(const LabelRows &rows, QWidget *parent)
    : QWidget(parent)
    , stpTempFan(NewChart("stpTempFan", tr("Temperatures and fan speeds over time"),
                          CombinedChartSetup(rows.combined), this))
    , stpTemp(NewChart("stpTemp", tr("Temperatures over time"), TempSetup(rows.temperature), this))
    , stpFan(NewChart("stpFan", tr("Fan speeds over time"), FanSetup(rows.temperature), this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        layout->addWidget(chart, 1);
        connect(chart, &StripChart::EventsWanted, this, [this] { emit EventsWanted(this); });
        chart->hide();
        chart->ShareCursors(SharedCursors());
        connect(chart, &StripChart::ClearWanted, this, &MonitorCharts::ClearHistory);
        connect(chart, &StripChart::OpenLogRequested, this, &MonitorCharts::OpenLogRequested);
    }
    measurement = new MeasurementPanel(SharedCursors(), ShownTraces, this);
    layout->addWidget(measurement);
    ShowGraphType();
}

void MonitorCharts::ShowGraphType() {
    StripChart *shown = GraphType == 1   ? stpTempFan
                        : GraphType == 2 ? stpFan
                        : GraphType == 3 ? stpTemp
                                         : nullptr;
    if (shown == nullptr || !shown->isHidden()) {
        return;
    }
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        chart->setVisible(chart == shown);
    }
}

void MonitorCharts::LayOutForVariant() {
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        chart->SetDevice(ToQString(DeviceName));
    }
    if (!HasOneFan()) {
        return;
    }
    const QString remote = ToQString(Channels[1].NameZTM7710);
    const QString nothing;
    stpTempFan->SetLabel(3, nothing);
    stpTempFan->SetLabelVerticalPosition(7, stpTempFan->LabelVerticalPosition(3));
    stpTempFan->SetLabel(2, remote);
    stpTempFan->SetLabel(5, nothing);
    stpTempFan->SetLabel(6, nothing);
    stpTemp->SetLabel(2, remote);
    stpTemp->SetLabel(3, nothing);
    stpTemp->SetLabelVerticalPosition(4, stpTemp->LabelVerticalPosition(3));
    stpFan->SetLabel(1, nothing);
    stpFan->SetLabel(2, nothing);
    // A single fan needs no label, but the read-outs still name it.
    const QString fan = ToQString(Channels[3].NameZTM7710);
    stpTempFan->SetTraceName(3, fan);
    stpFan->SetTraceName(0, fan);
}

void MonitorCharts::ShowLimits(const LimitLines &lines) {
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        chart->SetLimits(lines);
    }
}

void MonitorCharts::ShowTime(double time) {
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        chart->ShowTime(time);
    }
}

void MonitorCharts::HistoryChanged() {
    for (auto *chart : {stpTempFan, stpTemp, stpFan}) {
        chart->HistoryChanged();
    }
    measurement->HistoryChanged();
}

/// Measuring goes on.
void MonitorCharts::ClearHistory() {
    if (AskYesNo(tr("Forget all that the charts show?"), tr("Clear History"))) {
        ResetMeasurementHistory();
        SharedCursors().Remove();
        HistoryChanged();
    }
}

} // namespace ztm
