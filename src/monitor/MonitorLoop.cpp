#include "monitor/MonitorLoop.h"

#include "common/Clock.h"
#include "monitor/MonitorSettings.h"

namespace ztm {
namespace {

constexpr double continuousReadSpacingSeconds = 0.5;

} // namespace

void MonitorLoop::Tick() {
    window.SetTimerPeriod(MonitorInterval);
    const auto now = static_cast<float>(SecondsSinceMidnight());
    if (ElapsedSeconds(LastContinuousRead, now) > continuousReadSpacingSeconds &&
        window.ShownTab() == MainTab::RegisterAccess && window.ContinuousReadChecked()) {
        LastContinuousRead = now;
        window.ReadShownRegister();
    }
}

} // namespace ztm
