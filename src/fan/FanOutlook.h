#pragma once

#include "fan/LookupCurve.h"

#include <cstdint>
#include <optional>

namespace ztm {

/// What the lookup table makes a fan do now, from `Measurements` and from what has been read and
/// written in this session alone: nothing is asked of the chip.

/// How the chip uses its table, or would after Apply.
struct FanPlan {
    SpeedPoints Points{};
    bool IsOneTable = true;             ///< of eight points for both fans
    bool IsLinear = false;              ///< straight lines between the points
    std::optional<int32_t> Behaviour{}; ///< value of Fan Behaviour; none if it is not known
};

/// Fan Behaviour, and whether the transition is linear, as last read or written in this session.
/// The transition counts as discrete until then.
std::optional<int32_t> SeenBehaviour();
bool IsLinearSeen();

/// Whether the chip is under manual control as last read or written in this session: then its table
/// drives nothing. False if that is not known.
bool IsManualSeen();

enum class FanFate {
    SourceUnknown, ///< nobody knows which temperature drives it
    NotMeasured,   ///< neither is its temperature known
    FullSpeed,
    Stops,
    Runs
};

struct FanOutlook {
    FanFate Fate = FanFate::SourceUnknown;
    int Channel = 0;        ///< of its temperature, unless it runs at full speed or is unknown
    double Celsius = 0;     ///< the present temperature; of NotMeasured, below which the fan stops
    double DemandedRpm = 0; ///< of a fan that runs
};

/// How many fans the current variant has.
int FanCount();

/// The channel of the speed of fan 0 or 1.
constexpr int SpeedChannel(int fan) {
    return 3 + fan;
}

/// The channel of the temperature that drives fan 0 or 1 by that value of Fan Behaviour; none at
/// full speed.
std::optional<int> SourceChannel(int32_t behaviour, int fan);

FanOutlook OutlookOf(const FanPlan &plan, int fan);

/// The speed that a fan has, if it and its temperature are being measured: where it stands on the
/// graph is then at (`Celsius`, this). None at full speed, which follows no temperature.
std::optional<double> OperatingRpm(const FanOutlook &outlook, int fan);

} // namespace ztm
