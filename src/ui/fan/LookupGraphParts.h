#pragma once

#include "common/At.h"
#include "fan/LookupCurve.h"
#include "fan/LookupGraphScale.h"
#include "link/LinkState.h"

#include <QPointF>

namespace ztm {

/// What the graph of the lookup table draws and tells of, in twips.

inline QPointF PlaceOf(const SpeedPoint &point) {
    return {TempX(point.Celsius), RPMY(point.Rpm)};
}

/// Passes the lines from a point of a curve to the next one, which are one or two.
template <class Take>
void VisitLines(const SpeedPoint &from, const SpeedPoint &to, bool isLinear, const Take &take) {
    const QPointF start = PlaceOf(from);
    const QPointF end = PlaceOf(to);
    const QPointF corner(end.x(), start.y());
    if (isLinear) {
        take(start, end);
    } else {
        take(start, corner);
        take(corner, end);
    }
}

/// Passes each point that something odd leads to from the point before, with what it is.
template <class Take>
void VisitFaults(const SpeedPoints &points, const Take &take) {
    for (int point = 1; point < LookupPoints; ++point) {
        const bool isStart = CurveOfPoint(point, EightPointMode).First == point;
        const auto fault = FaultBetween(At(points, point - 1), At(points, point));
        if (!isStart && fault != SegmentFault::None) {
            take(point, fault);
        }
    }
}

} // namespace ztm
