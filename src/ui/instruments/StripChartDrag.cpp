#include "ui/instruments/StripChartDrag.h"

#include <qcustomplot.h>

#include <algorithm>

namespace ztm {
namespace {

using Place = StripChartPlace;

constexpr double gripPixels = 24;      // of the arrow at the end of an axis
constexpr double leastFraction = 0.05; // of an axis, the least that a dragged end leaves
constexpr double tremblePixels = 3;
constexpr double smallestValueSpan = 1e-3; // of a value axis
constexpr double largestValueSpan = 1e9;

double LimitedValueSpan(double span) {
    return std::clamp(span, smallestValueSpan, largestValueSpan);
}

Place::Grip GripOf(double fromLower, double length) {
    const double grip = std::min(gripPixels, length / 4);
    return fromLower < grip            ? Place::Grip::LowerEnd
           : fromLower > length - grip ? Place::Grip::UpperEnd
                                       : Place::Grip::Middle;
}

} // namespace

StripChartPlace PlaceAt(QPointF point, const QRectF &plot, bool hasRightAxis) {
    if (plot.contains(point)) {
        return {Place::Part::Plot, Place::Grip::Middle};
    }
    // The corners belong to the value axes, whose ends are nearer.
    const double fromBottom = plot.bottom() - point.y();
    const double fromLeft = point.x() - plot.left();
    if (fromLeft < 0 && fromBottom > -gripPixels / 2) {
        return {Place::Part::LeftAxis, GripOf(fromBottom, plot.height())};
    }
    if (fromLeft > plot.width() && fromBottom > -gripPixels / 2 && hasRightAxis) {
        return {Place::Part::RightAxis, GripOf(fromBottom, plot.height())};
    }
    if (fromBottom < 0) {
        return {Place::Part::TimeAxis, GripOf(fromLeft, plot.width())};
    }
    return {};
}

QPointF FractionOf(QPointF point, const QRectF &plot) {
    return {(point.x() - plot.left()) / std::max(plot.width(), 1.0),
            (plot.bottom() - point.y()) / std::max(plot.height(), 1.0)};
}

void ZoomValues(QCPAxis &axis, double factor, double fraction) {
    const QCPRange old = axis.range();
    const double span = LimitedValueSpan(old.size() * factor);
    const double pivot = old.lower + old.size() * fraction;
    axis.setRange(pivot - span * fraction, pivot + span * (1 - fraction));
}

StripChartDrag::StripChartDrag(StripChartPlace from, QPointF point, const TimeWindow &window,
                               double visibleTo, QCPAxis *valueAxis)
    : place(from)
    , start(point)
    , startWindow(window)
    , end(visibleTo)
    , span(window.Span())
    , axis(valueAxis) {
    if (axis != nullptr) {
        lower = axis->range().lower;
        upper = axis->range().upper;
    }
}

bool StripChartDrag::To(QPointF point, const QRectF &plot, TimeWindow &window) {
    moved = moved || (point - start).manhattanLength() >= tremblePixels;
    if (!moved) {
        return false;
    }
    const QPointF was = FractionOf(start, plot);
    const QPointF now = FractionOf(point, plot);
    if (axis != nullptr) {
        DragValues(was.y(), now.y());
    } else {
        DragTime(was.x(), now.x(), window);
    }
    return true;
}

void StripChartDrag::DragValues(double was, double now) const {
    const double values = upper - lower;
    if (place.grip == Place::Grip::UpperEnd) {
        const double zoomed = LimitedValueSpan(values * was / std::max(now, leastFraction));
        axis->setRange(lower, lower + zoomed);
    } else if (place.grip == Place::Grip::LowerEnd) {
        const double zoomed =
            LimitedValueSpan(values * (1 - was) / std::max(1 - now, leastFraction));
        axis->setRange(upper - zoomed, upper);
    } else {
        axis->setRange(QCPRange(lower, upper) + values * (was - now));
    }
}

void StripChartDrag::DragTime(double was, double now, TimeWindow &window) const {
    if (place.grip == Place::Grip::UpperEnd) {
        const double zoomed = span * was / std::max(now, leastFraction);
        window.Set(end - span + zoomed, zoomed);
    } else if (place.grip == Place::Grip::LowerEnd) {
        window.Set(end, span * (1 - was) / std::max(1 - now, leastFraction));
    } else if (startWindow.IsLive() && was >= now) {
        window.GoLive(); // meanwhile the newest sample may have moved on
    } else {
        window.MoveTo(end + (was - now) * span, span);
    }
}

void StripChartDrag::PutBack(TimeWindow &window) const {
    if (axis != nullptr) {
        axis->setRange(lower, upper);
    } else {
        window = startWindow;
    }
}

} // namespace ztm
