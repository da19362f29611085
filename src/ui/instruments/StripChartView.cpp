// What part of the history and of the value axes is in sight, and the read-out at the cursor.

#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double shortestSpan = 1;         // seconds
constexpr double longestSpan = 48 * 3600;  // seconds, more than the history holds
constexpr double smallestValueSpan = 1e-3; // of a value axis
constexpr double largestValueSpan = 1e9;
constexpr double fitMargin = 0.05;

} // namespace

QRectF StripChart::PlotRect() const {
    const QRect rect = plot->axisRect()->rect();
    return QRectF(rect).translated(plot->pos());
}

double StripChart::LiveEnd() const {
    return history.IsEmpty() ? windowSpan : history.LastTime();
}

double StripChart::VisibleFrom() const {
    return plot->xAxis->range().lower;
}

double StripChart::VisibleTo() const {
    return plot->xAxis->range().upper;
}

QCPRange StripChart::ValueRange(bool rightAxis) const {
    return (rightAxis && setup.right ? plot->yAxis2 : plot->yAxis)->range();
}

QPointF StripChart::PointOf(double time, double value, bool rightAxis) const {
    const QRectF rect = PlotRect();
    const QCPRange values = ValueRange(rightAxis);
    return {rect.left() + (time - VisibleFrom()) / (VisibleTo() - VisibleFrom()) * rect.width(),
            rect.bottom() - (value - values.lower) / values.size() * rect.height()};
}

/// The window ends at the newest sample at the latest, and never leaves the history.
void StripChart::SetWindow(double end, double span) {
    windowSpan = std::clamp(span, shortestSpan, longestSpan);
    const double earliest = history.IsEmpty() ? 0 : history.FirstTime();
    windowEnd = std::clamp(end, std::min(earliest, LiveEnd()), LiveEnd());
}

void StripChart::ZoomTimeAt(double factor, double fraction) {
    const double span = std::clamp(windowSpan * factor, shortestSpan, longestSpan);
    const double end = live ? LiveEnd() : windowEnd;
    const double pivot = end - windowSpan * (1 - fraction);
    const double newEnd = pivot + span * (1 - fraction);
    // Zooming out of the live view would reach into the future; it stays live instead.
    live = live && newEnd >= end - span * 0.005;
    SetWindow(newEnd, span);
}

void StripChart::ZoomTime(double factor) {
    ZoomTimeAt(factor, live ? 1.0 : 0.5);
}

void StripChart::PanTime(double seconds) {
    const double end = live ? LiveEnd() : windowEnd;
    if (live && seconds > 0) {
        return; // there is nothing beyond
    }
    live = false;
    SetWindow(end + seconds, windowSpan);
}

/// The span that a value axis takes when one is asked for.
double StripChart::ValueSpan(double span) {
    return std::clamp(span, smallestValueSpan, largestValueSpan);
}

void StripChart::ZoomValues(QCPAxis *axis, double factor, double fraction) {
    const QCPRange old = axis->range();
    const double span = ValueSpan(old.size() * factor);
    const double pivot = old.lower + old.size() * fraction;
    axis->setRange(pivot - span * fraction, pivot + span * (1 - fraction));
}

void StripChart::PanValues(double fraction) {
    for (QCPAxis *axis : {plot->yAxis, plot->yAxis2}) {
        axis->moveRange(axis->range().size() * fraction);
    }
}

void StripChart::Fit() {
    for (QCPAxis *axis : {plot->yAxis, plot->yAxis2}) {
        double low = std::numeric_limits<double>::infinity();
        double high = -low;
        for (const auto *trace : plot->Traces()) {
            bool found = false;
            const QCPRange range = trace->getValueRange(found, QCP::sdBoth, {});
            if (found && trace->valueAxis() == axis) {
                low = std::min(low, range.lower);
                high = std::max(high, range.upper);
            }
        }
        if (low <= high) {
            const double margin = high > low ? (high - low) * fitMargin : 1;
            axis->setRange(low - margin, high + margin);
        }
    }
    Redraw();
}

void StripChart::RestoreScales() {
    plot->yAxis->setRange(setup.left.minimum, setup.left.maximum);
    if (setup.right) {
        plot->yAxis2->setRange(setup.right->minimum, setup.right->maximum);
    }
    windowSpan = setup.visibleSeconds;
    Redraw();
}

void StripChart::ShowWholeHistory() {
    if (!history.IsEmpty()) {
        live = true;
        // The column of the newest sample may reach beyond it.
        const double count = std::max(columns->Count(), 2);
        SetWindow(LiveEnd(), (history.LastTime() - history.FirstTime()) * count / (count - 1));
    }
    Redraw();
}

void StripChart::BackToLive() {
    live = true;
    Redraw();
}

void StripChart::SetTraceName(int trace, const QString &name) {
    setup.traces.at(static_cast<size_t>(trace)).name = name;
}

QString StripChart::NameOf(const StripChartSetup::Trace &trace) const {
    const auto label = static_cast<size_t>(trace.label);
    const bool hasLabel =
        trace.label >= 0 && label < setup.labels.size() && !setup.labels[label].text.isEmpty();
    return hasLabel ? setup.labels[label].text : trace.name;
}

QString StripChart::ReadingOf(const StripChartSetup::Trace &trace, int column) const {
    const Extent &extent = columns->At(trace.channel, column);
    const double time = columns->TimeOf(column + 1);
    const auto text = [&](float value) { return QString::number(value, 'f', trace.decimals); };
    if (!extent.any) {
        // Between two samples the older one holds; before the first and after the last none does.
        const float held =
            time > history.LastTime() ? Extent::gap : history.ValueAt(trace.channel, time);
        return std::isnan(held) ? QStringLiteral("–") : text(held) + trace.unit;
    }
    if (std::isnan(extent.low)) {
        return QStringLiteral("–");
    }
    const QString low = text(extent.low);
    const QString high = text(extent.high);
    return (low == high ? low : low + QStringLiteral(" … ") + high) + trace.unit;
}

/// Whether that changed what the cursor shows.
bool StripChart::UpdateCursor() {
    if (!cursorX || columns->Count() == 0) {
        return plot->Overlay().ShowCursor(0, {});
    }
    const double x = std::clamp(*cursorX, 0.0, PlotRect().width() - 1);
    const int column =
        std::clamp(static_cast<int>(x * plot->bufferDevicePixelRatio()), 0, columns->Count() - 1);
    const double time = columns->TimeOf(column);
    std::vector<StripChartOverlay::Row> rows;
    const QLatin1Char colon(':');
    const double width = columns->Width();
    rows.push_back({width >= 1     ? TimeOfDayText(time, colon)
                    : width > 0.05 ? TimeOfDayText(time, colon, 1)
                                   : TimeOfDayText(time, colon, 3),
                    QString(), QColor()});
    for (size_t index = 0; index < setup.traces.size(); ++index) {
        const auto &trace = setup.traces[index];
        if (history.HasValues(trace.channel)) {
            rows.push_back(
                {NameOf(trace), ReadingOf(trace, column), plot->Traces()[index]->pen().color()});
        }
    }
    return plot->Overlay().ShowCursor(x, std::move(rows));
}

void StripChart::RedrawCursor() {
    if (UpdateCursor()) {
        plot->update();
    }
}

QStringList StripChart::CursorText() const {
    QStringList lines;
    for (const auto &row : plot->Overlay().Rows()) {
        lines.append(row.reading.isEmpty() ? row.name : row.name + QLatin1Char(' ') + row.reading);
    }
    return lines;
}

} // namespace ztm
