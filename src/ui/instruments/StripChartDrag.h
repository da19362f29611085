#pragma once

#include "ui/instruments/TimeWindow.h"

#include <QPointF>
#include <QRectF>

class QCPAxis;

namespace ztm {

/// What a point of a strip chart belongs to, and whether it is at the end of an axis, where the
/// mouse stretches the axis instead of moving it.
struct StripChartPlace {
    enum class Part { None, Plot, TimeAxis, LeftAxis, RightAxis };
    enum class Grip { Middle, LowerEnd, UpperEnd };

    Part part = Part::None;
    Grip grip = Grip::Middle;

    bool IsValueAxis() const { return part == Part::LeftAxis || part == Part::RightAxis; }
};

/// The place of a point in the coordinates of the plot's rectangle.
StripChartPlace PlaceAt(QPointF point, const QRectF &plot, bool hasRightAxis);

/// A point in fractions of the plot, from its lower left corner.
QPointF FractionOf(QPointF point, const QRectF &plot);

/// Multiplies the span of a value axis; what stands at that fraction from its lower end stays.
void ZoomValues(QCPAxis &axis, double factor, double fraction);

/// A drag of the mouse: the value or time under the pointer goes with it, all of the axis or the
/// end at hand while the other stays.
class StripChartDrag {
public:
    /// From a point, with the time at the right edge and the value axis there, if there is one.
    StripChartDrag(StripChartPlace from, QPointF point, const TimeWindow &window, double visibleTo,
                   QCPAxis *axis);

    /// Moves window or axis for the mouse at a point. False as long as it only trembles.
    bool To(QPointF point, const QRectF &plot, TimeWindow &window);

private:
    void DragTime(double was, double now, TimeWindow &window) const;
    void DragValues(double was, double now) const;

    StripChartPlace place;
    QPointF start;
    bool moved = false;
    double end; // of what it began with, in seconds
    double span;
    QCPAxis *axis;
    double lower = 0;
    double upper = 0;
};

} // namespace ztm
