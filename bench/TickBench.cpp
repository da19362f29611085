// What a monitor tick costs, painting included, on the recording adapter.

#include "link/Heaters.h"
#include "monitor/MonitorSettings.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/Driver.h"
#include "ui/InitForm.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

using namespace ztm::test;

constexpr int warmUpTicks = 500;
constexpr int measuredTicks = 4000;
constexpr double tickSeconds = 0.030;

double CpuMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// Ticks, lets what was invalidated be painted, and prints median and 99th percentile.
void Measure(const char *what, ClockDouble &clock) {
    std::vector<double> times;
    for (int tick = 0; tick < warmUpTicks + measuredTicks; ++tick) {
        clock.Advance(tickSeconds);
        Adapter().calls.clear();
        Adapter().times.clear();
        const double start = CpuMicroseconds();
        Tick();
        QCoreApplication::processEvents();
        if (tick >= warmUpTicks) {
            times.push_back(CpuMicroseconds() - start);
        }
    }
    std::sort(times.begin(), times.end());
    std::printf("%-44s median %7.1f us, p99 %7.1f us\n", what, times[times.size() / 2],
                times[times.size() * 99 / 100]);
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    QApplication application(argumentCount, arguments);
    ClockDouble clock;
    ResetCore();
    Adapter().registers[0x3D] = 0x34;
    ztm::ShowForm<ztm::InitForm>();
    SearchInWizard();
    Click("FinishCMD");
    Find("frmMain").resize(1000, 650);
    ClickTab("Visual Display");
    Measure("tick, every duty off", clock);
    Click("cmdEasySetup");
    ztm::ManualDialogOpen = true;
    for (auto &heater : ztm::Heaters) {
        heater.SoftwareControl = true;
    }
    Measure("tick, every duty on, page shown", clock);
    ClickTab("About");
    Measure("tick, every duty on, page not shown", clock);
}
