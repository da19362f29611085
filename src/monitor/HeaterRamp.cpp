#include "monitor/HeaterRamp.h"

#include "common/At.h"
#include "common/Clock.h"
#include "link/Heaters.h"
#include "link/USBComms.h"
#include "monitor/Events.h"

#include <algorithm>

namespace ztm {
namespace {

constexpr double pauseAfterReadSeconds = 0.005;
constexpr double millisecondsPerSecond = 1000;

/// Limits a duty to what a heater accepts, whatever its ramp settings.
int LimitedDuty(int percent) {
    return std::clamp(percent, 0, FullDuty);
}

} // namespace

std::optional<int> HeaterRamp::Step(double now) {
    const HeaterSettings &settings = At(Heaters, heater);
    if (started && !settings.SoftwareControl) {
        started = false;
        AddEvent(Name() + " ended");
    }
    if (!settings.SoftwareControl ||
        now - lastStepTime <= settings.IntervalMs / millisecondsPerSecond) {
        return std::nullopt;
    }
    const int duty = LimitedDuty(Next());
    SetHeaterDuty(heater == 0 ? duty : HeaterUnchanged, heater == 1 ? duty : HeaterUnchanged);
    lastStepTime = now;
    return duty;
}

std::string HeaterRamp::Name() const {
    return "Heater " + std::to_string(heater + 1) + ": ramp";
}

/// Reverses the ramp when it has reached an end.
int HeaterRamp::Next() {
    HeaterSettings &settings = At(Heaters, heater);
    // Ends outside 0 to 100 would never be reached, and the ramp would never turn.
    const int low = LimitedDuty(settings.LowPct);
    const int high = LimitedDuty(settings.HighPct);
    if (settings.StartPending) {
        settings.StartPending = false;
        started = true;
        AddEvent(Name() + " started, " + std::to_string(low) + " to " + std::to_string(high) + "%");
        return low;
    }
    ReadHeaterDuty();
    Wait(pauseAfterReadSeconds);
    const int step = settings.RampUp ? settings.IncrementPct : -settings.IncrementPct;
    const int next = settings.Pwm + step;
    const int end = settings.RampUp ? high : low;
    const bool beforeEnd = settings.RampUp ? next < end : next > end;
    if (!beforeEnd) {
        settings.RampUp = !settings.RampUp;
    }
    return beforeEnd ? next : end;
}

} // namespace ztm
