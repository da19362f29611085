#pragma once

#include <cstdint>

namespace ztm {

/// What the monitor does and how often. Every session starts from the defaults.

extern int16_t MonitorInterval; ///< period of the monitor timer in milliseconds

extern bool MonitoringEnabled;   ///< read one measurement channel per tick
extern bool GraphingEnabled;     ///< append to the strip charts
extern bool LimitMonitorEnabled; ///< refresh the alert indicators
extern bool BargraphEnabled;     ///< refresh the selected channel's gauge
extern bool BigGraphEnabled;     ///< the full-screen chart is fed
extern bool MonitorInReadWrite;  ///< keep monitoring while "Register Access" is shown

extern int16_t GraphType; ///< 1 temperature and fan speed, 2 fan speed, 3 temperature

extern int32_t LogInterval;   ///< time between log entries in milliseconds
extern int32_t MaxLogEntries; ///< the log stops after so many entries; 0 = never

extern bool LoggingActive;    ///< a log is being written
extern int32_t LogEntryCount; ///< entries in the log so far
extern double LogStartTime;   ///< whole seconds since midnight; 0 before the first entry

extern bool ManualDialogOpen;  ///< the manual speed dialog is loaded
extern bool HeatersDialogOpen; ///< the heater dialog is loaded

/// Puts the start-of-session values back.
void ResetMonitorSettings();

} // namespace ztm
