#include "ui/display/MeasurementPanel.h"

#include "common/At.h"
#include "common/ChannelHistory.h"
#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "ui/display/Quantities.h"
#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChartColumns.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ztm {
namespace {

constexpr double secondsBetweenUpdates = 0.25;
constexpr double stepResponse = 0.632; // of a change: 1 - 1/e, one time constant
constexpr int significantDigits = 4;

enum Column { AtA, AtB, Change, Slope, Least, Mean, Greatest, columnCount };

QString Significant(double value) {
    return ToQString(NumberText(QString::number(value, 'g', significantDigits).toDouble()));
}

QString SecondsText(double seconds) {
    return MeasurementPanel::tr("%1 s").arg(seconds, 0, 'f', std::abs(seconds) < 100 ? 3 : 1);
}

QString Marked(bool isExact, const QString &text) {
    return isExact ? text : QStringLiteral("≈ ") + text;
}

/// None after the last sample.
float ValueAt(const MeasuredTrace &trace, double time) {
    return time - 2 * sameMoment > trace.history->LastTime()
               ? Extent::gap
               : trace.history->ValueAt(trace.channel, time);
}

/// A trace at the cursors, both of which must be set.
struct Ends {
    Ends(const MeasuredTrace &trace, const ChartCursors &cursors)
        : timeOfA(cursors.Time(0).value() - trace.shift + sameMoment)
        , timeOfB(cursors.Time(1).value() - trace.shift + sameMoment)
        , atA(ValueAt(trace, timeOfA))
        , atB(ValueAt(trace, timeOfB))
        , isExactA(trace.history->IsRawFrom(timeOfA))
        , isExactB(trace.history->IsRawFrom(timeOfB)) {}

    double timeOfA; // in the history
    double timeOfB;
    float atA;
    float atB;
    bool isExactA;
    bool isExactB;
};

} // namespace

MeasurementPanel::MeasurementPanel(ChartCursors &shared,
                                   std::function<std::vector<MeasuredTrace>()> shownTraces,
                                   QWidget *parent)
    : QWidget(parent), cursors(shared), traces(std::move(shownTraces)) {
    lblSpan = Named(new QLabel(this), "lblSpan");
    lblSpan->setTextFormat(Qt::PlainText);
    lblSpan->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // its tooltip has all
    tblMeasurement = Named(new QTableWidget(0, columnCount, this), "tblMeasurement");
    tblMeasurement->setAccessibleName(tr("Measurement between the cursors"));
    tblMeasurement->setHorizontalHeaderLabels(
        {tr("A"), tr("B"), tr("Δ"), tr("Δ/s"), tr("Least"), tr("Mean"), tr("Greatest")});
    tblMeasurement->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblMeasurement->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblMeasurement->setSelectionMode(QAbstractItemView::SingleSelection);
    tblMeasurement->setTabKeyNavigation(false);
    tblMeasurement->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tblMeasurement->horizontalHeader()->setHighlightSections(false);
    tblMeasurement->horizontalHeader()->setMinimumSectionSize(1);
    tblMeasurement->horizontalHeader()->setStretchLastSection(true);
    tblMeasurement->verticalHeader()->setHighlightSections(false);
    tblMeasurement->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);

    auto *copy = NewButton("cmdCopyMeasurement", tr("Copy Measurement"), this);
    auto *remove = NewButton("cmdRemoveCursors", tr("Remove Cursors"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(remove);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblSpan);
    layout->addWidget(tblMeasurement);
    layout->addLayout(buttons);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum); // all else is the chart's
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
    const auto measured = traces();
    const bool grows = std::any_of(measured.begin(), measured.end(), [&](const auto &trace) {
        return span->to > trace.history->LastTime() + trace.shift - secondsBetweenUpdates;
    });
    const bool otherRows = tblMeasurement->rowCount() != static_cast<int>(measured.size());
    if ((grows && RunningSeconds() >= shownUntil) || otherRows) {
        ShowMeasurement();
    }
}

void MeasurementPanel::ShowMeasurement() {
    const auto measured = traces();
    setVisible(cursors.Between().has_value() && !measured.empty());
    if (isHidden()) {
        return;
    }
    shownUntil = RunningSeconds() + secondsBetweenUpdates;
    tblMeasurement->setRowCount(static_cast<int>(measured.size()));
    for (int row = 0; row < tblMeasurement->rowCount(); ++row) {
        ShowRow(row, At(measured, row));
    }
    FitTable();
    ShowSpan();
}

/// Gives the table the height of its rows, and its columns the width of their texts and an equal
/// share of what room is left.
void MeasurementPanel::FitTable() {
    const QAbstractItemView &view = *tblMeasurement;
    QHeaderView &columns = *tblMeasurement->horizontalHeader();
    const QHeaderView &rows = *tblMeasurement->verticalHeader();
    const int frame = 2 * tblMeasurement->frameWidth();
    std::array<int, columnCount> widths{};
    for (int column = 0; column < columnCount; ++column) {
        At(widths, column) =
            std::max(view.sizeHintForColumn(column), columns.sectionSizeHint(column));
    }
    const int left = width() - rows.sizeHint().width() - frame -
                     std::accumulate(widths.begin(), widths.end(), 0);
    for (int column = 0; column < columnCount; ++column) {
        columns.resizeSection(column, At(widths, column) + std::max(0, left / columnCount));
    }
    tblMeasurement->setFixedHeight(
        columns.sizeHint().height() + rows.length() + frame +
        (left < 0 ? tblMeasurement->horizontalScrollBar()->sizeHint().height() : 0));
}

void MeasurementPanel::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    FitTable();
}

void MeasurementPanel::ShowRow(int row, const MeasuredTrace &trace) {
    const Ends ends(trace, cursors);
    const auto [from, to] = cursors.Between().value();
    const Statistics statistics = trace.history->StatisticsOf(
        trace.channel, from - trace.shift - sameMoment, to - trace.shift + sameMoment);
    const int decimals = LookOfChannel(trace.channel).decimals;
    const auto valueText = [&](bool isExact, double value) {
        return std::isfinite(value)
                   ? Marked(isExact, ToQString(NumberText(RoundToDecimals(value, decimals))))
                   : QStringLiteral("–");
    };
    const double change = static_cast<double>(ends.atB) - ends.atA;
    const double slope = change / (ends.timeOfB - ends.timeOfA);
    const bool isChangeExact = ends.isExactA && ends.isExactB;
    std::array<QString, columnCount> texts;
    texts[AtA] = valueText(ends.isExactA, ends.atA);
    texts[AtB] = valueText(ends.isExactB, ends.atB);
    texts[Change] = valueText(isChangeExact, change);
    texts[Slope] =
        std::isfinite(slope) ? Marked(isChangeExact, Significant(slope)) : QStringLiteral("–");
    texts[Least] = valueText(statistics.isExact, statistics.low);
    texts[Mean] = valueText(statistics.isExact, statistics.mean);
    texts[Greatest] = valueText(statistics.isExact, statistics.high);
    tblMeasurement->setVerticalHeaderItem(row, new QTableWidgetItem(tr("%1 [%2]").arg(
                                                   trace.name, LookOfChannel(trace.channel).unit)));
    for (int column = 0; column < columnCount; ++column) {
        auto *item = new QTableWidgetItem(At(texts, column));
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        tblMeasurement->setItem(row, column, item);
    }
}

/// The span of time from A to B, and the step response of the trace that is selected in the table.
void MeasurementPanel::ShowSpan() {
    if (!cursors.Between()) {
        return;
    }
    const auto measured = traces();
    const int row = std::max(tblMeasurement->currentRow(), 0);
    const QString text =

        tr("Δt %1").arg(SecondsText(*cursors.Time(1) - *cursors.Time(0))) +
        (row < static_cast<int>(measured.size()) ? StepText(At(measured, row)) : QString());
    lblSpan->setText(text);
    lblSpan->setToolTip(text);
}

/// How long after A the trace has made 63 % of its change to B; empty if that cannot be said.
QString MeasurementPanel::StepText(const MeasuredTrace &trace) const {
    const Ends ends(trace, cursors);
    const auto level = static_cast<float>(ends.atA + stepResponse * (ends.atB - ends.atA));
    const double reached =
        trace.history->TimeOfReaching(trace.channel, ends.timeOfA, ends.timeOfB, ends.atA, level);
    if (ends.atA == ends.atB || std::isnan(reached)) {
        return {};
    }
    return tr("; %1: 63 % of the change after %2")
        .arg(trace.name, Marked(ends.isExactA, SecondsText(reached - ends.timeOfA)));
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
