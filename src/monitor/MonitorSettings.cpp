#include "monitor/MonitorSettings.h"

namespace ztm {
namespace {

constexpr int16_t defaultMonitorInterval = 30;
constexpr int16_t temperatureAndFanSpeed = 1;

} // namespace

int16_t MonitorInterval = defaultMonitorInterval;
bool MonitoringEnabled = false;
bool GraphingEnabled = false;
bool LimitMonitorEnabled = false;
bool BargraphEnabled = false;
bool BigGraphEnabled = false;
bool MonitorInReadWrite = false;
int16_t GraphType = temperatureAndFanSpeed;
bool ManualDialogOpen = false;
bool HeatersDialogOpen = false;

void ResetMonitorSettings() {
    MonitorInterval = defaultMonitorInterval;
    MonitoringEnabled = false;
    GraphingEnabled = false;
    LimitMonitorEnabled = false;
    BargraphEnabled = false;
    BigGraphEnabled = false;
    MonitorInReadWrite = false;
    GraphType = temperatureAndFanSpeed;
    ManualDialogOpen = false;
    HeatersDialogOpen = false;
}

} // namespace ztm
