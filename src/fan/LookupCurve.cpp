#include "fan/LookupCurve.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "link/GeneralSubs.h"
#include "link/LastSeen.h"
#include "monitor/Channels.h"

#include <algorithm>

namespace ztm {
namespace {

/// Both 0 RPM and the largest count stop a fan.
double RunningRpm(double rpm) {
    return rpm <= StoppedLookupRpm ? 0 : rpm;
}

std::optional<SpeedPoint> SeenPoint(int point) {
    const auto celsius = LastSeen(TemperatureRegister(point));
    const auto high = LastSeen(SpeedRegister(point));
    const auto low = LastSeen(SpeedRegister(point) - 1);
    if (!celsius || !high || !low) {
        return std::nullopt;
    }
    return SpeedPoint{static_cast<double>(CelsiusOfByte(celsius->Value)),
                      static_cast<double>(RpmOfCount(high->Value * 256 + low->Value))};
}

} // namespace

PointSpan CurveOfFan(int fan, bool isOneTable) {
    return CurveOfPoint(fan * PointsPerFan, isOneTable);
}

PointSpan CurveOfPoint(int point, bool isOneTable) {
    if (isOneTable) {
        return {0, LookupPoints - 1};
    }
    return point < PointsPerFan ? PointSpan{0, PointsPerFan - 1}
                                : PointSpan{PointsPerFan, LookupPoints - 1};
}

double DemandedRpm(const SpeedPoints &points, PointSpan curve, bool isLinear, double celsius) {
    SpeedPoint below = At(points, curve.First);
    if (celsius < below.Celsius) {
        return 0;
    }
    for (int point = curve.First + 1; point <= curve.Last; ++point) {
        const SpeedPoint &next = At(points, point);
        if (celsius < next.Celsius) {
            const double share = (celsius - below.Celsius) / (next.Celsius - below.Celsius);
            const double rise = RunningRpm(next.Rpm) - RunningRpm(below.Rpm);
            return RunningRpm(below.Rpm) + (isLinear ? rise * share : 0);
        }
        below = next;
    }
    return RunningRpm(below.Rpm);
}

SegmentFault FaultBetween(const SpeedPoint &before, const SpeedPoint &point) {
    return point.Celsius < before.Celsius                   ? SegmentFault::Fold
           : RunningRpm(point.Rpm) < RunningRpm(before.Rpm) ? SegmentFault::Cliff
                                                            : SegmentFault::None;
}

std::optional<SpeedPoints> SeenPoints() {
    SpeedPoints points;
    for (int point = 0; point < LookupPoints; ++point) {
        const auto seen = SeenPoint(point);
        if (!seen) {
            return std::nullopt;
        }
        At(points, point) = *seen;
    }
    return points;
}

PointFate FateOf(const SpeedPoint &point, const std::optional<SpeedPoint> &held) {
    const double celsius = RoundHalfToEven(point.Celsius);
    const double rpm = RoundHalfToEven(point.Rpm);
    PointFate fate;
    fate.Written = {
        std::clamp<double>(celsius, lowestCelsius, highestCelsius),
        std::clamp<double>(rpm, 0, FastestLookupRpm),
    };
    fate.IsTemperatureLimited = fate.Written.Celsius != celsius;
    fate.IsSpeedLimited = fate.Written.Rpm != rpm;
    if (!IsLookupRpm(fate.Written.Rpm)) {
        fate.IsSpeedDropped = !held || held->Rpm != rpm;
        fate.Written.Rpm = held ? held->Rpm : StoppedLookupRpm;
    }
    return fate;
}

std::array<PointFate, LookupPoints> FatesOf(const SpeedPoints &points,
                                            const std::optional<SpeedPoints> &held) {
    std::array<PointFate, LookupPoints> fates;
    for (int point = 0; point < LookupPoints; ++point) {
        At(fates, point) =
            FateOf(At(points, point), held ? std::optional(At(*held, point)) : std::nullopt);
    }
    return fates;
}

SpeedPoints AsWritten(const SpeedPoints &points, const std::optional<SpeedPoints> &held) {
    const auto fates = FatesOf(points, held);
    SpeedPoints written;
    std::transform(fates.begin(), fates.end(), written.begin(),
                   [](const PointFate &fate) { return fate.Written; });
    return written;
}

int DifferentPoints(const SpeedPoints &one, const SpeedPoints &other) {
    int different = 0;
    for (size_t point = 0; point < one.size(); ++point) {
        different += one[point].Celsius != other[point].Celsius ||
                     RunningRpm(one[point].Rpm) != RunningRpm(other[point].Rpm);
    }
    return different;
}

SpeedPoint PointInUse(int point, const std::optional<SpeedPoints> &held) {
    const LookupPoint &edited = At(TableInUse(), point);
    double rpm = edited.RPM;
    if (held && edited.RPM == PointRpm(At(*held, point).Rpm)) {
        rpm = At(*held, point).Rpm;
    }
    return {static_cast<double>(edited.Temperature), rpm};
}

SpeedPoints PointsInUse(const std::optional<SpeedPoints> &held) {
    SpeedPoints points;
    for (int point = 0; point < LookupPoints; ++point) {
        At(points, point) = PointInUse(point, held);
    }
    return points;
}

} // namespace ztm
