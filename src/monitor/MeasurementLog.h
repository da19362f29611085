#pragma once

#include "monitor/Channels.h"

#include <array>
#include <cstdint>
#include <string>

namespace ztm {

/// The measurement log: its settings, its state and its lines.

extern std::array<bool, ChannelCount> LogSelected; ///< the channels that are written
extern int32_t LogInterval;                        ///< time between entries in milliseconds
extern int32_t MaxLogEntries;                      ///< the log stops after so many; 0 = never

extern bool LoggingActive;      ///< a log is being written
extern int32_t LogEntryCount;   ///< entries in the log so far
extern double LogStartTime;     ///< whole seconds of RunningSeconds; 0 before the first entry
extern std::string LogFileName; ///< path of the log
extern std::string LogLine;     ///< the line built last, UTF-8

/// The log's first line: when it was started.
std::string LogStartLine();

/// The column header: a tab, then the names of the given channels, each with a tab behind it
/// but the last possible one.
std::string LogHeader(const std::array<bool, ChannelCount> &selected);

/// Builds the entry of this moment in LogLine: the seconds since `startTime` with three
/// decimals, then the measurements of the selected channels with their units. For example
/// " 12.345\t25.38°C\t2000RPM\t45.09804%".
void BuildLogLine(double startTime);

/// Puts the start-of-session values back.
void ResetMeasurementLog();

} // namespace ztm
