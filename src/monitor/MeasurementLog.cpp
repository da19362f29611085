#include "monitor/MeasurementLog.h"

#include "common/Clock.h"
#include "common/DateTimeText.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "files/TextFile.h"
#include "monitor/Events.h"

#include <utility>

namespace ztm {
namespace {

constexpr int32_t defaultLogInterval = 100;
constexpr int32_t defaultMaxLogEntries = 10000;
constexpr int elapsedDecimals = 3;
constexpr double secondsBetweenLooks = 1;

/// The end of a channel's column: a tab, except after the last possible one.
const char *EndOf(size_t channel) {
    return channel + 1 < Channels.size() ? "\t" : "";
}

std::string StartLine() {
    return std::string("Started At: ").append(DateTimeText());
}

/// The column header: a tab above the elapsed times, then the names of the selected channels.
std::string Header(const std::array<bool, ChannelCount> &selected) {
    std::string header = "\t";
    for (size_t channel = 0; channel < Channels.size(); ++channel) {
        if (selected[channel]) {
            header.append(Channels[channel].Name).append(EndOf(channel));
        }
    }
    return header;
}

TextFileWriter file;
std::string problem;
double lastLook = 0; // at the file

void StopAfterFailure() {
    std::string reason = file.Error();
    StopLog(); // which may have another problem
    problem = std::move(reason);
}

} // namespace

std::array<bool, ChannelCount> LogSelected{};
int32_t LogInterval = defaultLogInterval;
int32_t MaxLogEntries = defaultMaxLogEntries;
bool LoggingActive = false;
int32_t LogEntryCount = 0;
double LogStartTime = 0;
std::string LogFileName;
std::string LogLine;

std::string StartLog(const std::string &path, const LogSettings &settings) {
    if (!file.Create(path) || !file.WriteLine(StartLine()) ||
        !file.WriteLine(Header(settings.Selected))) {
        const std::string reason = file.Error();
        file.Close();
        return reason;
    }
    LogFileName = path;
    LogSelected = settings.Selected;
    LogInterval = settings.IntervalMs == 0 ? defaultLogInterval : settings.IntervalMs;
    MaxLogEntries = settings.MaxEntries;
    LoggingActive = true;
    LogEntryCount = 0;
    lastLook = RunningSeconds();
    problem.clear();
    AddEvent("Log started");
    return {};
}

void WriteLogEntry(double startTime) {
    BuildLogLine(startTime);
    if (file.WriteLine(LogLine)) {
        ++LogEntryCount;
        return;
    }
    StopAfterFailure();
}

void WatchLogFile() {
    const double now = RunningSeconds();
    if (LoggingActive && now - lastLook >= secondsBetweenLooks) {
        lastLook = now;
        if (!file.IsIntact()) {
            StopAfterFailure();
        }
    }
}

void StopLog() {
    if (LoggingActive) {
        AddEvent("Log stopped");
    }
    LoggingActive = false;
    LogStartTime = 0;
    if (!file.Close()) {
        problem = file.Error();
    }
}

long LogSize() {
    return file.Length();
}

const std::string &LogProblem() {
    return problem;
}

void BuildLogLine(double startTime) {
    const double elapsed = RoundToDecimals(RunningSeconds() - startTime, elapsedDecimals);
    LogLine.clear();
    if (!(elapsed < 0)) {
        LogLine += ' ';
    }
    LogLine += NumberText(elapsed);
    LogLine += '\t';
    for (size_t channel = 0; channel < Channels.size(); ++channel) {
        if (LogSelected[channel]) {
            LogLine += NumberText(Measurements[channel]);
            LogLine += UnitOf(Channels[channel].Measures);
            LogLine += EndOf(channel);
        }
    }
}

void ResetMeasurementLog() {
    LogSelected = {};
    LogInterval = defaultLogInterval;
    MaxLogEntries = defaultMaxLogEntries;
    LoggingActive = false;
    LogEntryCount = 0;
    LogStartTime = 0;
    LogFileName.clear();
    LogLine.clear();
    file.Close();
    problem.clear();
}

} // namespace ztm
