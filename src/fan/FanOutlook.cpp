#include "fan/FanOutlook.h"

#include "common/At.h"
#include "fan/ControlSources.h"
#include "fan/FanCodes.h"
#include "link/LastSeen.h"
#include "link/LinkState.h"
#include "monitor/RecentMeasurements.h"

namespace ztm {
namespace {

constexpr int32_t fullSpeedCode = 3;

std::optional<bool> SeenField(const RegisterField &field) {
    const auto seen = LastSeen(field.Register);
    return seen ? std::optional(field.In(seen->Value) != 0) : std::nullopt;
}

} // namespace

std::optional<int32_t> SeenBehaviour() {
    const auto seen = LastSeen(FanBehaviour);
    return seen ? std::optional<int32_t>(seen->Value) : std::nullopt;
}

bool IsLinearSeen() {
    return SeenField(TransitionField).value_or(false);
}

bool IsManualSeen() {
    return !SeenField(ControlTypeField).value_or(true);
}

int FanCount() {
    return HasOneFan() ? 1 : 2;
}

std::optional<int> SourceChannel(int32_t behaviour, int fan) {
    const int32_t code = At(ControlSourceFields, fan).In(behaviour);
    const int32_t source =
        HasOneFan() ? At(OneRemoteControlSources, PositionOf(OneRemoteControlSources, code)).Code
                    : code;
    return source != fullSpeedCode ? std::optional<int>(source) : std::nullopt;
}

FanOutlook OutlookOf(const FanPlan &plan, int fan) {
    FanOutlook outlook;
    if (!plan.Behaviour) {
        return outlook;
    }
    const auto source = SourceChannel(*plan.Behaviour, fan);
    if (!source) {
        outlook.Fate = FanFate::FullSpeed;
        return outlook;
    }
    outlook.Channel = *source;
    const PointSpan curve = CurveOfFan(fan, plan.IsOneTable);
    if (!IsMeasuredNow(outlook.Channel)) {
        outlook.Fate = FanFate::NotMeasured;
        outlook.Celsius = At(plan.Points, curve.First).Celsius;
        return outlook;
    }
    outlook.Celsius = static_cast<double>(At(Measurements, outlook.Channel));
    outlook.DemandedRpm = DemandedRpm(plan.Points, curve, plan.IsLinear, outlook.Celsius);
    outlook.Fate = outlook.DemandedRpm > 0 ? FanFate::Runs : FanFate::Stops;
    return outlook;
}

std::optional<double> OperatingRpm(const FanOutlook &outlook, int fan) {
    const bool isOnCurve = outlook.Fate == FanFate::Stops || outlook.Fate == FanFate::Runs;
    if (!isOnCurve || !IsMeasuredNow(SpeedChannel(fan))) {
        return std::nullopt;
    }
    return static_cast<double>(At(Measurements, SpeedChannel(fan)));
}

} // namespace ztm
