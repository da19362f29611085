#include "monitor/MonitorSettings.h"

namespace ztm {
namespace {

constexpr int16_t defaultMonitorInterval = 30;
constexpr int16_t temperatureAndFanSpeed = 1;
constexpr int32_t defaultLogInterval = 100;
constexpr int32_t defaultMaxLogEntries = 10000;

} // namespace

int16_t MonitorInterval = defaultMonitorInterval;
bool MonitoringEnabled = false;
bool GraphingEnabled = false;
bool LimitMonitorEnabled = false;
bool BargraphEnabled = false;
bool BigGraphEnabled = false;
bool MonitorInReadWrite = false;
int16_t GraphType = temperatureAndFanSpeed;
int32_t LogInterval = defaultLogInterval;
int32_t MaxLogEntries = defaultMaxLogEntries;
bool LoggingActive = false;
int32_t LogEntryCount = 0;
double LogStartTime = 0;
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
    LogInterval = defaultLogInterval;
    MaxLogEntries = defaultMaxLogEntries;
    LoggingActive = false;
    LogEntryCount = 0;
    LogStartTime = 0;
    ManualDialogOpen = false;
    HeatersDialogOpen = false;
}

} // namespace ztm
