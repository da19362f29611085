#include "ui/instruments/StripChart.h"

#include "common/At.h"
#include "ui/instruments/Colours.h"
#include "ui/instruments/InstrumentAccess.h"
#include "ui/instruments/StripChartLabels.h"
#include "ui/instruments/StripChartPlot.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr int focusFrame = 2;
constexpr qint64 millisecondsBetweenDescriptions = 2000;

} // namespace

StripChart::StripChart(const ChannelHistory &source, StripChartSetup shown, QWidget *parent)
    : QWidget(parent)
    , history(source)
    , setup(std::move(shown))
    , timeWindow(source, setup.visibleSeconds)
    , columns(std::make_unique<StripChartColumns>(source))
    , plot(new StripChartPlot(*columns, this))
    , limitItems(*plot) {
    MakeInstrumentsAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    // This widget handles all events; the plot only paints.
    plot->setAttribute(Qt::WA_TransparentForMouseEvents);
    plot->setFocusPolicy(Qt::NoFocus);
    plot->setInteractions(QCP::Interactions());
    plot->setPlottingHints(QCP::phCacheLabels);
    plot->setNotAntialiasedElements(QCP::aeAll);
    plot->setLocale(QLocale::c());
    SetupAxes();
    SetupTraces();
    labels = std::make_unique<StripChartLabels>(*plot, setup);
    ApplyPalette();
    connect(plot, &QCustomPlot::beforeReplot, this, &StripChart::BeforeReplot);
    connect(plot, &QCustomPlot::afterLayout, this, [this] {
        labels->Place();
        // Tick labels of another width have moved the plot's edges: update the columns.
        if (columns->Count() != ColumnCount()) {
            Redraw();
        }
    });
}

StripChart::~StripChart() {
    // The traces use the columns until they are deleted.
    delete plot;
}

void StripChart::SetupAxes() {
    const auto range = [](const StripChartSetup::ValueAxis &axis) {
        return QCPRange(axis.minimum, axis.maximum);
    };
    plot->yAxis->setRange(range(setup.left));
    plot->yAxis2->setRange(range(setup.right.value_or(setup.left)));
    plot->yAxis2->setVisible(setup.right.has_value());
    plot->xAxis->setTicker(QSharedPointer<QCPAxisTicker>(
        setup.recorded ? new ElapsedTicker : static_cast<QCPAxisTicker *>(new TimeOfDayTicker)));
    plot->xAxis->setLabel(setup.recorded ? tr("Elapsed time [s]") : QString());
    const QCPLineEnding arrow(QCPLineEnding::esFlatArrow, 9, 9);
    for (QCPAxis *axis : {plot->xAxis, plot->yAxis, plot->yAxis2}) {
        axis->setNumberFormat(QStringLiteral("g"));
        axis->setSubTicks(false);
        axis->setLowerEnding(arrow);
        axis->setUpperEnding(arrow);
        axis->setLabelPadding(2);
        axis->setTickLabelPadding(8); // clear of the arrows
        axis->grid()->setZeroLinePen(Qt::NoPen);
    }
    plot->xAxis->setOffset(10); // keeps its arrows clear of those of the value axes
}

void StripChart::SetupTraces() {
    for (const auto &trace : setup.traces) {
        plot->AddTrace(trace.rightAxis && setup.right ? plot->yAxis2 : plot->yAxis, trace.channel);
    }
}

QStringList StripChart::Labels() const {
    QStringList texts;
    for (const auto &label : setup.labels) {
        texts.append(label.text);
    }
    return texts;
}

void StripChart::SetLabel(int entry, const QString &text) {
    At(setup.labels, entry).text = text;
    labels->ShowText(static_cast<size_t>(entry));
    Redraw();
}

void StripChart::SetTraceName(int trace, const QString &name) {
    At(setup.traces, trace).name = name;
}

void StripChart::SetLabelVerticalPosition(int entry, double fraction) {
    At(setup.labels, entry).position.setY(fraction);
    labels->Invalidate();
    Redraw();
}

double StripChart::LabelVerticalPosition(int entry) const {
    return At(setup.labels, entry).position.y();
}

double StripChart::LastValue(int trace) const {
    return history.LastValue(At(setup.traces, trace).channel);
}

void StripChart::HistoryChanged() {
    if (!isVisible()) {
        return;
    }
    Follow();
    if (QAccessible::isActive() &&
        (!sinceDescribed.isValid() || sinceDescribed.hasExpired(millisecondsBetweenDescriptions))) {
        DescribeLastValues();
    }
}

void StripChart::DescribeLastValues() {
    sinceDescribed.start();
    QStringList values;
    for (const auto &trace : setup.traces) {
        const float value = history.LastValue(trace.channel);
        if (history.HasValues(trace.channel) && !std::isnan(value)) {
            values.append(setup.NameOf(trace) + QLatin1Char(' ') + trace.TextOf(value) +
                          trace.unit);
        }
    }
    setAccessibleDescription(values.join(QStringLiteral(", ")));
}

bool StripChart::CanBeSeen() const {
    return isVisible() && !window()->isMinimized();
}

/// Repaints everything, once per turn of the event loop however often it is called.
void StripChart::Redraw() {
    if (CanBeSeen()) {
        plot->TracesChanged();
        plot->replot(QCustomPlot::rpQueuedReplot);
    }
}

/// Paints only what new samples have changed: more than the traces only if the time axis has to
/// move, and often nothing at all.
void StripChart::Follow() {
    if (!CanBeSeen() || columns->Count() == 0) {
        return;
    }
    const int count = columns->Count();
    const double width = columns->Width();
    if (FirstColumn(width, count) != columns->Begin()) {
        plot->replot(QCustomPlot::rpQueuedReplot);
        return;
    }
    if (ShowTicks(false)) {
        plot->update(plot->Overlay().TickBand());
    }
    const bool noticed = ShowNotice();
    if (ShowOutside(false) || noticed) {
        plot->update();
    }
    const int64_t changed = columns->Update(width, columns->Begin(), count);
    plot->TracesChanged(changed);
    if (changed < columns->End()) {
        RedrawCursor();
    }
}

/// The width of the plot in pixel columns; 0 if there is no room for it.
int StripChart::ColumnCount() const {
    return std::max(0, qRound(PlotRect().width() * plot->bufferDevicePixelRatio()));
}

/// The leftmost of `count` columns that end at the end of the time window.
int64_t StripChart::FirstColumn(double width, int count) const {
    return static_cast<int64_t>(std::floor(timeWindow.End() / width)) + 1 - count;
}

void StripChart::BeforeReplot() {
    const double ratio = devicePixelRatioF();
    if (plot->bufferDevicePixelRatio() != ratio) {
        plot->setBufferDevicePixelRatio(ratio);
        plot->TracesChanged();
    }
    const QRectF rect = PlotRect();
    const int count = ColumnCount();
    if (count == 0) {
        columns->Update(timeWindow.Span(), 0, 0);
        return; // nothing is painted
    }
    const double width = timeWindow.Span() / count;
    const int64_t begin = FirstColumn(width, count);
    plot->TracesChanged(columns->Update(width, begin, count));
    if (overlaid) {
        overlaid->Update(width, begin, count);
        plot->TracesChanged();
    }
    const double start = static_cast<double>(begin) * width;
    plot->xAxis->setRange(start, start + timeWindow.Span());
    // Room for every label; a label's width does not change with the time.
    const int labelWidth = fontMetrics().horizontalAdvance(QStringLiteral("00 00 00"));
    plot->xAxis->ticker()->setTickCount(
        std::max(2, static_cast<int>(rect.width()) / (labelWidth * 3 / 2)));
    for (QCPAxis *axis : {plot->yAxis, plot->yAxis2}) {
        axis->ticker()->setTickCount(
            std::max(2, static_cast<int>(rect.height()) / (3 * fontMetrics().height())));
    }
    ShowNotice();
    ShowOutside(true);
    ShowMeasuringCursors();
    ShowTicks(true);
    UpdateCursor();
}

/// Returns whether the notice has changed.
bool StripChart::ShowNotice() {
    using Place = StripChartOverlay::Notice::Place;
    const bool any = std::any_of(setup.traces.begin(), setup.traces.end(), [this](const auto &one) {
        return history.HasValues(one.channel);
    });
    if (!any) {
        return plot->Overlay().SetNotice({Place::Middle, setup.emptyNotice});
    }
    return plot->Overlay().SetNotice(
        {Place::Top, IsLive() || setup.recorded ? QString() : notLiveNotice});
}

/// Marks the traces whose newest value is beyond its axis. Returns whether others are than before;
/// `anew` if names or colours may have changed.
bool StripChart::ShowOutside(bool anew) {
    std::array<int, ChannelHistory::channelCount> now{};
    for (size_t index = 0; index < setup.traces.size(); ++index) {
        const auto &trace = setup.traces[index];
        const QCPRange range = ValueRange(trace.rightAxis);
        const float value = history.LastValue(trace.channel);
        if (history.HasValues(trace.channel)) {
            now[index] = value > range.upper ? 1 : value < range.lower ? -1 : 0;
        }
    }
    if (now == outside && !anew) {
        return false;
    }
    outside = now;
    std::vector<StripChartOverlay::Mark> marks;
    for (size_t index = 0; index < setup.traces.size(); ++index) {
        if (now[index] != 0) {
            const auto &trace = setup.traces[index];
            marks.push_back({setup.NameOf(trace), plot->Traces()[index]->pen().color(),
                             now[index] > 0, trace.rightAxis && setup.right.has_value()});
        }
    }
    plot->Overlay().SetMarks(std::move(marks));
    return true;
}

void StripChart::SetLimits(const LimitLines &lines) {
    if (limits != lines) {
        limits = lines;
        ShowLimits();
        Redraw();
    }
}

void StripChart::ShowLimits() {
    limitItems.Hide();
    for (size_t index = 0; index < setup.traces.size(); ++index) {
        if (setup.traces[index].channel == limits.channel) {
            auto *trace = plot->Traces()[index];
            limitItems.Show(limits, *trace->valueAxis(), trace->pen().color());
        }
    }
}

void StripChart::ApplyPalette() {
    const QColor ground = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    plot->setBackground(ground);
    for (QCPAxis *axis : {plot->xAxis, plot->yAxis, plot->yAxis2}) {
        axis->setBasePen(ink);
        axis->setTickPen(ink);
        axis->setTickLabelColor(ink);
        axis->setLabelColor(ink);
        axis->setTickLabelFont(font());
        axis->setLabelFont(font());
        axis->grid()->setPen(Mix(ground, ink, 0.18));
    }
    for (size_t index = 0; index < plot->Traces().size(); ++index) {
        plot->Traces()[index]->setPen(
            Readable(setup.traces[index % setup.traces.size()].colour, ground));
    }
    ShowLimits();
    // Room for half a label at every end, and for the arrows.
    const int halfTime = fontMetrics().horizontalAdvance(QStringLiteral("00 00 00")) / 2;
    plot->axisRect()->setMinimumMargins(QMargins(std::max(20, halfTime),
                                                 std::max(12, fontMetrics().height() / 2 + 2),
                                                 std::max(24, halfTime), 16));
    labels->SetPalette(palette(), font());
    plot->Overlay().SetPalette(palette(), font());
    Redraw();
}

void StripChart::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        ApplyPalette();
    }
}

void StripChart::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    Redraw();
}

void StripChart::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    plot->setGeometry(rect().adjusted(focusFrame, focusFrame, -focusFrame, -focusFrame));
}

void StripChart::paintEvent(QPaintEvent * /*event*/) {
    // The part of this widget around the plot is the frame.
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
}

} // namespace ztm
