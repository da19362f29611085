#pragma once

#include "monitor/Channels.h"

#include <array>
#include <cstdint>
#include <string>

namespace ztm {

/// The measurement log: its settings, its state and its file.

extern std::array<bool, ChannelCount> LogSelected; ///< the channels that are written
extern int32_t LogInterval;                        ///< time between entries in milliseconds
extern int32_t MaxLogEntries;                      ///< the log stops after so many; 0 = never

extern bool LoggingActive;      ///< a log is being written
extern int32_t LogEntryCount;   ///< entries in the log so far
extern double LogStartTime;     ///< whole seconds of RunningSeconds; 0 before the first entry
extern std::string LogFileName; ///< path of the log
extern std::string LogLine;     ///< the line built last, UTF-8

/// The user's choices for a log; copied to the first three variables above when the log starts.
struct LogSettings {
    std::array<bool, ChannelCount> Selected{};
    int32_t IntervalMs = 0; ///< 0 means the default of 100 ms
    int32_t MaxEntries = 0; ///< 0 = no limit
};

/// Creates the file, or empties an existing one, writes the two header lines and starts the log. On
/// failure returns the system's reason and leaves settings and state unchanged; otherwise returns
/// an empty text.
std::string StartLog(const std::string &path, const LogSettings &settings);

/// Appends an entry with the time elapsed since `startTime`, and counts it. If it cannot be
/// written, the log stops.
void WriteLogEntry(double startTime);

/// Stops the log if another program has removed, replaced or shortened its file. Looks at most once
/// a second.
void WatchLogFile();

/// Ends the log and closes its file. The settings stay for the next one.
void StopLog();

/// How many bytes have been written to the log.
long LogSize();

/// Why the last log was stopped or not closed properly, in the system's words if it has any; empty
/// if there was no problem.
const std::string &LogProblem();

/// Builds the current entry in LogLine: the seconds since `startTime` with three decimals, then the
/// measurements of the selected channels with their units. For example "
/// 12.345\t25.38°C\t2000RPM\t45.09804%".
void BuildLogLine(double startTime);

/// Restores the start-of-session values.
void ResetMeasurementLog();

} // namespace ztm
