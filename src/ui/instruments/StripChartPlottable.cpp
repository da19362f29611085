#include "ui/instruments/StripChartPlottable.h"

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "ui/kit/Text.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

/// In lines as thick as a trace.
constexpr int dashLength = 6;
constexpr int dashPeriod = 10;

} // namespace

double TimeOfDayTicker::getTickStep(const QCPRange &range) {
    return std::max(1.0, QCPAxisTickerTime::getTickStep(range));
}

QString TimeOfDayTicker::getTickLabel(double tick, const QLocale & /*locale*/, QChar /*format*/,
                                      int /*precision*/) {
    return TimeOfDayText(tick, QLatin1Char(' '));
}

QString ElapsedTicker::getTickLabel(double tick, const QLocale & /*locale*/, QChar /*format*/,
                                    int /*precision*/) {
    return ToQString(NumberText(RoundToDecimals(tick, 3)));
}

bool IsExport(const QCPPainter &painter) {
    return painter.modes().testFlag(QCPPainter::pmNoCaching);
}

QRect DevicePlotRect(const QCPAxisRect &rect, double ratio) {
    return {qRound(rect.left() * ratio), qRound(rect.top() * ratio), qRound(rect.width() * ratio),
            qRound(rect.height() * ratio)};
}

StripChartPlottable::StripChartPlottable(QCPAxis *timeAxis, QCPAxis *valueAxis,
                                         const StripChartColumns &source, int channelIndex)
    : QCPAbstractPlottable(timeAxis, valueAxis), columns(source), channel(channelIndex) {
    setSelectable(QCP::stNone);
}

double StripChartPlottable::selectTest(const QPointF & /*point*/, bool /*onlySelectable*/,
                                       QVariant * /*details*/) const {
    return -1;
}

QCPRange StripChartPlottable::getKeyRange(bool &found, QCP::SignDomain /*domain*/) const {
    found = !columns.History().IsEmpty();
    return found ? QCPRange(columns.History().FirstTime(), columns.History().LastTime())
                 : QCPRange();
}

QCPRange StripChartPlottable::getValueRange(bool &found, QCP::SignDomain /*domain*/,
                                            const QCPRange & /*keys*/) const {
    const Extent whole = columns.Whole(channel);
    found = whole.low <= whole.high;
    return found ? QCPRange(whole.low, whole.high) : QCPRange();
}

StripChartPlottable::ValueScale StripChartPlottable::Scale() const {
    const double ratio = mParentPlot->bufferDevicePixelRatio();
    const QCPRange range = mValueAxis->range();
    ValueScale result;
    result.rect = DevicePlotRect(*mKeyAxis->axisRect(), ratio);
    result.thickness = std::max(1, qRound(ratio));
    result.highest = range.upper;
    // Both ends of the range are in sight.
    const double pixels = result.rect.height() - result.thickness;
    result.pixelsPerUnit = range.size() > 0 && pixels > 0 ? pixels / range.size() : 0;
    return result;
}

/// The library shifts it up by a pixel; the lowest row must stay.
QRect StripChartPlottable::clipRect() const {
    return QCPAbstractPlottable::clipRect().adjusted(0, 1, 0, 1);
}

void StripChartPlottable::draw(QCPPainter *painter) {
    if (!IsExport(*painter) || columns.Count() == 0) {
        return;
    }
    const double ratio = mParentPlot->bufferDevicePixelRatio();
    painter->save();
    painter->setAntialiasing(false);
    painter->scale(1 / ratio, 1 / ratio);
    painter->translate(Scale().rect.topLeft());
    painter->setPen(Qt::NoPen);
    Paint(*painter, 0, 0);
    painter->restore();
}

void StripChartPlottable::Paint(QPainter &painter, int from, int origin) {
    scale = Scale();
    if (scale.pixelsPerUnit == 0) {
        return;
    }
    firstColumn = from;
    originColumn = origin;
    CollectSegments(from);
    painter.setBrush(mPen.color());
    painter.drawRects(segments);
}

void StripChartPlottable::drawLegendIcon(QCPPainter *painter, const QRectF &rect) const {
    painter->fillRect(QRectF(rect.left(), rect.center().y(), rect.width(), 1), mPen.color());
}

/// The column of a time, limited for times far away.
int StripChartPlottable::IndexOf(double time) const {
    constexpr int64_t farAway = 1'000'000;
    return static_cast<int>(
        std::clamp(columns.ColumnOf(time) - columns.Begin(), -farAway, farAway));
}

/// Where the line enters a column.
StripChartPlottable::Pen StripChartPlottable::PenBefore(int column) const {
    if (column > 0) {
        return {column - 1, columns.At(channel, column - 1).last};
    }
    const ChannelHistory &history = columns.History();
    const double before = history.TimeBefore(columns.HistoryTimeOf(0));
    if (std::isnan(before)) {
        return {-1, Extent::gap};
    }
    return {IndexOf(before), history.ValueAt(channel, before)};
}

void StripChartPlottable::CollectSegments(int from) {
    segments.clear();
    Pen pen = PenBefore(from);
    for (int column = from; column < columns.Count(); ++column) {
        const Extent &extent = columns.At(channel, column);
        if (!extent.any) {
            continue;
        }
        double low = extent.low;
        double high = extent.high;
        if (!std::isnan(extent.first) && !std::isnan(pen.value)) {
            const double entry = Join(pen.column, pen.value, column, extent.first);
            low = std::fmin(low, entry);
            high = std::fmax(high, entry);
        }
        if (low <= high) {
            AddSegment(column, low, high);
        }
        pen = {column, extent.last};
    }
    // The line goes on to the first sample beyond the right edge.
    const ChannelHistory &history = columns.History();
    const double after = history.TimeFrom(columns.HistoryTimeOf(columns.Count()));
    if (!std::isnan(after) && !std::isnan(pen.value)) {
        const float next = history.MinMax(channel, after, std::nextafter(after, 1e18)).first;
        if (!std::isnan(next)) {
            Join(pen.column, pen.value, IndexOf(after), next);
        }
    }
}

/// Fills the columns between two samples. The line of each starts at the value where that of the
/// one before ends. Returns the value where the line enters the column `to`.
double StripChartPlottable::Join(int from, double fromValue, int to, double toValue) {
    const double slope = (toValue - fromValue) / (to - from);
    const auto endOf = [&](int column) { return fromValue + slope * (column - from); };
    const int end = std::min(to, columns.Count());
    for (int column = std::max(from + 1, firstColumn); column < end; ++column) {
        const auto [low, high] = std::minmax({endOf(column - 1), endOf(column)});
        AddSegment(column, low, high);
    }
    return endOf(to - 1);
}

/// Dashes keep their places while the chart scrolls. A steep part is dashed along its height, each
/// column a little further, so that no part disappears as a whole.
void StripChartPlottable::AddDashes(const QRect &segment, int column) {
    const int64_t period = int64_t{dashPeriod} * scale.thickness;
    const int64_t length = int64_t{dashLength} * scale.thickness;
    const int64_t place = columns.Begin() + column;
    const bool isSteep = segment.height() > 2 * scale.thickness;
    int64_t phase = ((place + (isSteep ? segment.top() : 0)) % period + period) % period;
    if (!isSteep) {
        if (phase < length) {
            segments.append(segment);
        }
        return;
    }
    for (int y = segment.top(); y <= segment.bottom(); phase = 0) {
        const int64_t on = std::min<int64_t>(length - phase, segment.bottom() + 1 - y);
        if (on > 0) {
            segments.append(QRect(segment.left(), y, 1, static_cast<int>(on)));
        }
        y += static_cast<int>(period - phase);
    }
}

/// Segments stay within the plot, even in file formats that cannot clip; neighbours of the same
/// height are merged.
void StripChartPlottable::AddSegment(int column, double low, double high) {
    const int height = scale.rect.height();
    const auto rowOf = [&](double value) {
        return qRound(std::clamp((scale.highest - value) * scale.pixelsPerUnit,
                                 -1.0 * scale.thickness, 1.0 * height));
    };
    const int top = std::max(0, rowOf(high));
    const int bottom = std::min(height, rowOf(low) + scale.thickness);
    if (top >= bottom) {
        return;
    }
    const QRect segment((originColumn + column) % columns.Count(), top, 1, bottom - top);
    if (dashed) {
        AddDashes(segment, column);
        return;
    }
    if (!segments.isEmpty()) {
        QRect &previous = segments.back();
        if (previous.top() == segment.top() && previous.height() == segment.height() &&
            previous.right() + 1 == segment.left()) {
            previous.setRight(segment.right());
            return;
        }
    }
    segments.append(segment);
}

} // namespace ztm
