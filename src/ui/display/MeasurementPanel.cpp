#include "ui/display/MeasurementPanel.h"

#include "common/At.h"
#include "common/Clock.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/Quantities.h"
#include "ui/instruments/ChartCursors.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>

#include <cmath>

namespace ztm {
namespace {

constexpr double secondsBetweenUpdates = 0.25;
constexpr double stepResponse = 0.632; // of a change: 1 - 1/e, one time constant
constexpr int significantDigits = 4;

enum Column { AtA, AtB, Change, Slope, Least, Mean, Greatest, columnCount };

/// The channels of the chart that is shown.
std::vector<int> ShownChannels() {
    std::vector<int> channels;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const bool isFan = At(Channels, channel).Measures == Quantity::FanSpeed;
        const bool isInChart = GraphType == 1 || (GraphType == 2) == isFan;
        if (isInChart && MeasurementHistory().HasValues(channel)) {
            channels.push_back(channel);
        }
    }
    return channels;
}

QString Significant(double value) {
    return QString::number(value, 'g', significantDigits);
}

QString SecondsText(double seconds) {
    return MeasurementPanel::tr("%1 s").arg(seconds, 0, 'f', seconds < 100 ? 3 : 1);
}

} // namespace

MeasurementPanel::MeasurementPanel(ChartCursors &shared, QWidget *parent)
    : QWidget(parent), cursors(shared) {
    lblSpan = Named(new QLabel(this), "lblSpan");
    auto *copy = NewButton("cmdCopyMeasurement", tr("Copy Measurement"), this);
    auto *remove = NewButton("cmdRemoveCursors", tr("Remove Cursors"), this);
    tblMeasurement = Named(new QTableWidget(0, columnCount, this), "tblMeasurement");
    tblMeasurement->setAccessibleName(tr("Measurement between the cursors"));
    tblMeasurement->setHorizontalHeaderLabels(
        {tr("A"), tr("B"), tr("Δ"), tr("Δ/s"), tr("Least"), tr("Mean"), tr("Greatest")});
    tblMeasurement->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblMeasurement->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblMeasurement->setSelectionMode(QAbstractItemView::SingleSelection);
    tblMeasurement->setTabKeyNavigation(false);
    tblMeasurement->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    tblMeasurement->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);

    auto *line = new QHBoxLayout;
    line->addWidget(lblSpan, 1);
    line->addWidget(copy);
    line->addWidget(remove);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tblMeasurement);
    layout->addLayout(line);
    connect(copy, &QPushButton::clicked, this, &MeasurementPanel::Copy);
    connect(remove, &QPushButton::clicked, &cursors, &ChartCursors::Remove);
    connect(&cursors, &ChartCursors::Changed, this, &MeasurementPanel::ShowMeasurement);
    connect(tblMeasurement, &QTableWidget::currentCellChanged, this, &MeasurementPanel::ShowSpan);
    hide();
}

void MeasurementPanel::HistoryChanged() {
    const auto span = cursors.Between();
    if (!span || !isVisible()) {
        return;
    }
    const bool grows = span->to > MeasurementHistory().LastTime() - secondsBetweenUpdates;
    const bool otherRows = tblMeasurement->rowCount() != static_cast<int>(ShownChannels().size());
    if ((grows && RunningSeconds() >= shownUntil) || otherRows) {
        ShowMeasurement();
    }
}

void MeasurementPanel::ShowMeasurement() {
    const auto channels = ShownChannels();
    setVisible(cursors.Between().has_value() && !channels.empty());
    if (isHidden()) {
        return;
    }
    shownUntil = RunningSeconds() + secondsBetweenUpdates;
    tblMeasurement->setRowCount(static_cast<int>(channels.size()));
    for (int row = 0; row < tblMeasurement->rowCount(); ++row) {
        ShowRow(row, At(channels, row));
    }
    const int frame = 2 * tblMeasurement->frameWidth();
    tblMeasurement->setFixedHeight(tblMeasurement->horizontalHeader()->sizeHint().height() +
                                   tblMeasurement->verticalHeader()->length() + frame);
    ShowSpan();
}

void MeasurementPanel::ShowRow(int row, int channel) {
    const ChannelHistory &history = MeasurementHistory();
    const auto [from, to] = cursors.Between().value();
    const float first = history.ValueAt(channel, from);
    const float last = history.ValueAt(channel, to);
    const Statistics statistics = history.StatisticsOf(channel, from, to);
    const QString unit = LookOfChannel(channel).unit;
    const auto text = [&](double value) {
        return std::isnan(value) ? QStringLiteral("–") : ValueText(channel, value);
    };
    const auto approximate = [&](double value) {
        return (statistics.isExact || std::isnan(value) ? QString() : QStringLiteral("≈ ")) +
               text(value);
    };
    const double change = static_cast<double>(last) - first;
    const double slope = change / (to - from);
    std::array<QString, columnCount> texts;
    texts[AtA] = text(first);
    texts[AtB] = text(last);
    texts[Change] = text(change);
    texts[Slope] = std::isfinite(slope) ? Significant(slope) + unit + QStringLiteral("/s")
                                        : QStringLiteral("–");
    texts[Least] = approximate(statistics.low);
    texts[Mean] = approximate(statistics.mean);
    texts[Greatest] = approximate(statistics.high);
    tblMeasurement->setVerticalHeaderItem(row, new QTableWidgetItem(NameOfChannel(channel)));
    for (int column = 0; column < columnCount; ++column) {
        auto *item = new QTableWidgetItem(At(texts, column));
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        tblMeasurement->setItem(row, column, item);
    }
}

/// The span of time, and the step response of the channel that is selected in the table.
void MeasurementPanel::ShowSpan() {
    const auto span = cursors.Between();
    if (!span) {
        return;
    }
    QString text = tr("Δt %1").arg(SecondsText(span->to - span->from));
    const auto channels = ShownChannels();
    const int row = std::max(tblMeasurement->currentRow(), 0);
    if (row < static_cast<int>(channels.size())) {
        const int channel = At(channels, row);
        const ChannelHistory &history = MeasurementHistory();
        const float first = history.ValueAt(channel, span->from);
        const float last = history.ValueAt(channel, span->to);
        const auto level = static_cast<float>(first + stepResponse * (last - first));
        const double reached = history.TimeOfReaching(channel, span->from, span->to, first, level);
        if (first != last && !std::isnan(reached)) {
            text += tr("; %1: 63 % of the change after %2")
                        .arg(NameOfChannel(channel),
                             (history.IsRawFrom(span->from) ? QString() : QStringLiteral("≈ ")) +
                                 SecondsText(reached - span->from));
        }
    }
    lblSpan->setText(text);
}

void MeasurementPanel::Copy() const {
    QStringList lines{lblSpan->text()};
    QStringList header{QString()};
    for (int column = 0; column < columnCount; ++column) {
        header += tblMeasurement->horizontalHeaderItem(column)->text();
    }
    lines += header.join(QLatin1Char('\t'));
    for (int row = 0; row < tblMeasurement->rowCount(); ++row) {
        QStringList cells{tblMeasurement->verticalHeaderItem(row)->text()};
        for (int column = 0; column < columnCount; ++column) {
            cells += tblMeasurement->item(row, column)->text();
        }
        lines += cells.join(QLatin1Char('\t'));
    }
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

} // namespace ztm
