#include "cli/Session.h"

#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "common/At.h"
#include "common/Clock.h"
#include "link/USBComms.h"

namespace ztm::cli {
namespace {

constexpr double longestFarewellSeconds = 0.5;

} // namespace

double Session::WatchedSeconds() {
    const double now = RunningSeconds();
    watchStart = watchStart.value_or(now);
    return now - *watchStart;
}

void Session::SetHeater(int heater, int32_t percent) {
    int32_t &duty = At(duties, heater);
    const int32_t before = duty;
    duty = percent > 0 ? percent : before; // also if the request fails half way
    SetHeaterDuty(heater == 0 ? percent : HeaterUnchanged, heater == 1 ? percent : HeaterUnchanged);
    duty = percent;
}

void Session::SwitchHeatersOff() {
    try {
        SetHeaterDuty(duties[0] > 0 ? 0 : HeaterUnchanged, duties[1] > 0 ? 0 : HeaterUnchanged);
        duties = {};
    } catch (const Failure &) {
        Tell("the heaters could not be switched off: take the board's power away");
    }
}

void Session::End(bool isNormal) {
    BeginEnding();
    const bool isAnyOn = duties[0] > 0 || duties[1] > 0;
    if (isAnyOn && !isNormal && !Settings.KeepHeaters) {
        SwitchHeatersOff();
    } else if (isAnyOn) {
        std::string text;
        for (size_t heater = 0; heater < duties.size(); ++heater) {
            if (duties[heater] > 0) {
                text += (text.empty() ? "heater " : ", heater ") + std::to_string(heater + 1) +
                        " stays on at " + std::to_string(duties[heater]) + " %";
            }
        }
        Tell(text);
    }
    AdapterHandshakeWithin(longestFarewellSeconds);
}

} // namespace ztm::cli
