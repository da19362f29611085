#pragma once

#include <cstdint>

namespace ztm {

/// What the monitor does and how often. Every session starts from the defaults.

extern int16_t MonitorInterval; ///< period of the monitor timer in milliseconds

extern bool MonitoringEnabled;   ///< read one measurement channel per tick
extern bool GraphingEnabled;     ///< append to the strip charts
extern bool LimitMonitorEnabled; ///< refresh the alert indicators
extern bool BargraphEnabled;     ///< refresh the selected channel's gauge
extern bool BigGraphEnabled;     ///< refresh the full-screen chart
extern bool MonitorInReadWrite;  ///< keep monitoring while "Register Access" is shown

extern int16_t GraphType; ///< 1 temperature and fan speed, 2 fan speed, 3 temperature

extern bool ManualDialogOpen;  ///< the manual speed dialog is loaded
extern bool HeatersDialogOpen; ///< the heater dialog is loaded

/// Restores the start-of-session values.
void ResetMonitorSettings();

} // namespace ztm
