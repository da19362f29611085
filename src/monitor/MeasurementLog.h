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

/// What the user chose for a log; the three variables above take it when the log starts.
struct LogSettings {
    std::array<bool, ChannelCount> Selected{};
    int32_t IntervalMs = 0; ///< 0 stands for the usual 100 ms
    int32_t MaxEntries = 0; ///< 0 = no limit
};

/// Creates the file, or empties the one of that name, writes the two lines above the entries and
/// starts the log. When that fails, returns the system's reason and leaves everything as it was;
/// otherwise returns an empty text.
std::string StartLog(const std::string &path, const LogSettings &settings);

/// Appends an entry, whose elapsed time counts from `startTime`, and counts it. When it cannot be
/// written, the log stops.
void WriteLogEntry(double startTime);

/// Ends the log and closes its file. The settings stay for the next one.
void StopLog();

/// Why the last log was stopped or not closed in order, in the system's words; empty while there
/// is nothing to say.
const std::string &LogProblem();

/// Builds the entry of this moment in LogLine: the seconds since `startTime` with three
/// decimals, then the measurements of the selected channels with their units. For example
/// " 12.345\t25.38°C\t2000RPM\t45.09804%".
void BuildLogLine(double startTime);

/// Puts the start-of-session values back.
void ResetMeasurementLog();

} // namespace ztm
