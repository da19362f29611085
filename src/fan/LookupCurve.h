#pragma once

#include "fan/LookupTable.h"

#include <array>
#include <optional>

namespace ztm {

/// What the points of the lookup table come to: as curves, and as what Apply makes of them.

/// The first and the last point of a curve.
struct PointSpan {
    int First;
    int Last;
};

/// The curve that fan 0 or 1 follows, and the curve that a point is on.
PointSpan CurveOfFan(int fan, bool isOneTable);
PointSpan CurveOfPoint(int point, bool isOneTable);

/// The speed in RPM that a curve demands at a temperature: 0 below its first point, and at a point
/// of StoppedLookupRpm or less. The first point that is hotter than the temperature ends the walk
/// along the curve.
double DemandedRpm(const SpeedPoints &points, PointSpan curve, bool isLinear, double celsius);

/// What is odd about the way from the point before to a point of the same curve.
enum class SegmentFault {
    None,
    Fold, ///< the temperature falls back
    Cliff ///< the speed falls, though the temperature does not
};
SegmentFault FaultBetween(const SpeedPoint &before, const SpeedPoint &point);

/// The points that the chip holds, by what has been read from and written to it in this session;
/// none if any of their registers has not been seen. Asks the chip for nothing.
std::optional<SpeedPoints> SeenPoints();

/// What Apply makes of a point.
struct PointFate {
    SpeedPoint Written; ///< as the chip holds it afterwards
    bool IsTemperatureLimited = false;
    bool IsSpeedLimited = false;
    bool IsSpeedDropped = false; ///< 1 to 75 RPM have no count: the chip keeps its speed

    bool IsAsEntered() const { return !IsTemperatureLimited && !IsSpeedLimited && !IsSpeedDropped; }
};

/// `held` is the same point in the chip, if it is known. A speed that the chip holds is kept, also
/// StoppedLookupRpm, which cannot be written.
PointFate FateOf(const SpeedPoint &point, const std::optional<SpeedPoint> &held);

/// The fates of all points; `held` as in SeenPoints.
std::array<PointFate, LookupPoints> FatesOf(const SpeedPoints &points,
                                            const std::optional<SpeedPoints> &held);

/// The points that the chip holds after Apply.
SpeedPoints AsWritten(const SpeedPoints &points, const std::optional<SpeedPoints> &held);

/// How many points differ in what they mean to the chip: 0 RPM is the same as StoppedLookupRpm.
int DifferentPoints(const SpeedPoints &one, const SpeedPoints &other);

/// The points of the table in use, with the speed of the chip where the table holds as much of it
/// as it can.
SpeedPoint PointInUse(int point, const std::optional<SpeedPoints> &held);
SpeedPoints PointsInUse(const std::optional<SpeedPoints> &held);

} // namespace ztm
