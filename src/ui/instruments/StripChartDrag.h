#pragma once

#include "ui/instruments/TimeWindow.h"

#include <QPointF>
#include <QRectF>

class QCPAxis;

namespace ztm {

/// The part of a strip chart at a point, and whether it is the end of an axis, where the mouse
/// zooms the axis instead of moving it.
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

/// Multiplies the span of a value axis; the value at that fraction from its lower end stays there.
void ZoomValues(QCPAxis &axis, double factor, double fraction);

/// A mouse drag: the value or time under the pointer follows it. Moves the whole axis, or one end
/// while the other stays.
class StripChartDrag {
public:
    /// Starts at a point, with the time at the right edge and the value axis there, if any.
    StripChartDrag(StripChartPlace from, QPointF point, const TimeWindow &window, double visibleTo,
                   QCPAxis *axis);

    /// Moves the window or axis to the mouse position. False while the mouse has hardly moved. A
    /// window that was live stays so while it is not dragged back in time.
    bool To(QPointF point, const QRectF &plot, TimeWindow &window);

    /// Undoes the drag.
    void PutBack(TimeWindow &window) const;

private:
    void DragTime(double was, double now, TimeWindow &window) const;
    void DragValues(double was, double now) const;

    StripChartPlace place;
    QPointF start;
    bool moved = false;
    TimeWindow startWindow;
    double end; // at the start of the drag, in seconds
    double span;
    QCPAxis *axis;
    double lower = 0;
    double upper = 0;
};

} // namespace ztm
