#include "ui/instruments/StripChartPlottable.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr int secondsPerDay = 86400;

} // namespace

QString TimeOfDayText(double seconds, QChar separator) {
    const auto whole = static_cast<int64_t>(std::floor(seconds + 1e-6));
    const auto ofDay = static_cast<int>((whole % secondsPerDay + secondsPerDay) % secondsPerDay);
    const auto twoDigits = [](int number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    return twoDigits(ofDay / 3600) + separator + twoDigits(ofDay / 60 % 60) + separator +
           twoDigits(ofDay % 60);
}

QString TimeOfDayText(double seconds, QChar separator, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::floor(seconds * scale + 0.5) / scale;
    const auto fraction = qRound((rounded - std::floor(rounded)) * scale);
    return TimeOfDayText(rounded, separator) + QLatin1Char('.') +
           QStringLiteral("%1").arg(fraction, decimals, 10, QLatin1Char('0'));
}

double TimeOfDayTicker::getTickStep(const QCPRange &range) {
    return std::max(1.0, QCPAxisTickerTime::getTickStep(range));
}

QString TimeOfDayTicker::getTickLabel(double tick, const QLocale & /*locale*/, QChar /*format*/,
                                      int /*precision*/) {
    return TimeOfDayText(tick, QLatin1Char(' '));
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

void StripChartPlottable::draw(QCPPainter *painter) {
    const double ratio = mParentPlot->bufferDevicePixelRatio();
    const QRect rect = mKeyAxis->axisRect()->rect();
    const QCPRange range = mValueAxis->range();
    if (columns.Count() == 0 || !(range.size() > 0)) {
        return;
    }
    left = std::round(rect.left() * ratio);
    bottom = (rect.top() + rect.height()) * ratio;
    ceiling = rect.top() * ratio;
    pixelsPerUnit = rect.height() * ratio / range.size();
    lowest = range.lower;
    thickness = std::max(1.0, std::round(ratio));
    CollectSegments();
    // In whole device pixels, which the painter fills directly.
    painter->save();
    painter->setAntialiasing(false);
    painter->scale(1 / ratio, 1 / ratio);
    painter->setPen(Qt::NoPen);
    painter->setBrush(mPen.color());
    painter->drawRects(segments);
    painter->restore();
}

void StripChartPlottable::drawLegendIcon(QCPPainter *painter, const QRectF &rect) const {
    painter->fillRect(QRectF(rect.left(), rect.center().y(), rect.width(), 1), mPen.color());
}

void StripChartPlottable::CollectSegments() {
    segments.clear();
    const ChannelHistory &history = columns.History();
    const auto columnOf = [this](double time) {
        constexpr int64_t farAway = 1'000'000;
        return static_cast<int>(
            std::clamp(columns.ColumnOf(time) - columns.Begin(), -farAway, farAway));
    };
    // The line comes in from the last sample before the left edge.
    const double before = history.TimeBefore(columns.TimeOf(0));
    int last = -1;
    float lastValue = Extent::gap;
    if (!std::isnan(before)) {
        last = columnOf(before);
        lastValue = history.ValueAt(channel, before);
    }
    for (int column = 0; column < columns.Count(); ++column) {
        const Extent &extent = columns.At(channel, column);
        if (!extent.any) {
            continue;
        }
        double low = extent.low;
        double high = extent.high;
        if (!std::isnan(extent.first) && !std::isnan(lastValue)) {
            Join(last, lastValue, column, extent.first);
            if (last + 1 == column) {
                low = std::fmin(low, lastValue);
                high = std::fmax(high, lastValue);
            }
        }
        if (low <= high) {
            AddSegment(column, low, high);
        }
        last = column;
        lastValue = extent.last;
    }
    // And it leaves for the first one beyond the right edge.
    const double after = history.TimeFrom(columns.TimeOf(columns.Count()));
    if (!std::isnan(after) && !std::isnan(lastValue)) {
        const float next = history.MinMax(channel, after, std::nextafter(after, 1e18)).first;
        if (!std::isnan(next)) {
            Join(last, lastValue, columnOf(after), next);
        }
    }
}

/// Fills the columns between two samples that are further apart than a column.
void StripChartPlottable::Join(int from, double fromValue, int to, double toValue) {
    const double slope = (toValue - fromValue) / (to - from);
    for (int column = std::max(from + 1, 0); column < std::min(to, columns.Count()); ++column) {
        const double start = fromValue + slope * (column - from - 0.5);
        AddSegment(column, std::min(start, start + slope), std::max(start, start + slope));
    }
}

/// A segment keeps to the plot's height with a little room, so that coordinates stay small
/// however far the axis is zoomed in; neighbours of the same height become one.
void StripChartPlottable::AddSegment(int column, double low, double high) {
    const double room = 4 * thickness;
    const auto rowOf = [&](double value) {
        return static_cast<int>(std::floor(
            std::clamp(bottom - (value - lowest) * pixelsPerUnit, ceiling - room, bottom + room)));
    };
    const int top = rowOf(high);
    const QRect segment(static_cast<int>(left) + column, top, 1,
                        rowOf(low) - top + static_cast<int>(thickness));
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

StripChartCursor::StripChartCursor(QCustomPlot *plot)
    : QCPLayerable(plot, QStringLiteral("overlay")) {}

void StripChartCursor::Show(double x, std::vector<Row> readings) {
    position = x;
    rows = std::move(readings);
}

void StripChartCursor::applyDefaultAntialiasingHint(QCPPainter *painter) const {
    painter->setAntialiasing(false);
}

void StripChartCursor::draw(QCPPainter *painter) {
    if (rows.empty()) {
        return;
    }
    const QRectF plot = mParentPlot->axisRect()->rect();
    painter->fillRect(QRectF(plot.left() + position, plot.top(), 1, plot.height()), ink);

    const QFontMetricsF metrics(painter->font());
    const double space = metrics.horizontalAdvance(QLatin1Char(' '));
    double nameWidth = 0;
    double readingWidth = 0;
    for (const Row &row : rows) {
        nameWidth = std::max(nameWidth, metrics.horizontalAdvance(row.name));
        readingWidth = std::max(readingWidth, metrics.horizontalAdvance(row.reading));
    }
    const double margin = 2 * space;
    const double swatch = metrics.height() * 0.6;
    const double width = margin * 2 + swatch + space + nameWidth + margin + readingWidth;
    const double height = static_cast<double>(rows.size()) * metrics.height() + margin;
    double x = plot.left() + position + margin;
    if (x + width > plot.right()) {
        x = std::max(plot.left(), plot.left() + position - margin - width);
    }
    QRectF box(x, plot.bottom() - height - margin, width, height);
    painter->setPen(ink);
    painter->setBrush(ground);
    painter->drawRect(box);
    QRectF line(box.left() + margin, box.top() + margin / 2, width - 2 * margin, metrics.height());
    for (const Row &row : rows) {
        if (row.colour.isValid()) {
            painter->fillRect(QRectF(line.left(), line.center().y() - 1, swatch, 3), row.colour);
        }
        painter->setPen(ink);
        painter->drawText(line.adjusted(swatch + space, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                          row.name);
        painter->drawText(line, Qt::AlignRight | Qt::AlignVCenter, row.reading);
        line.translate(0, metrics.height());
    }
}

} // namespace ztm
