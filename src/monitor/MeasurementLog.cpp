#include "monitor/MeasurementLog.h"

#include "common/Clock.h"
#include "common/DateTimeText.h"
#include "common/NumberText.h"
#include "common/Numbers.h"

namespace ztm {
namespace {

constexpr int32_t defaultLogInterval = 100;
constexpr int32_t defaultMaxLogEntries = 10000;
constexpr int elapsedDecimals = 3;

/// What stands behind a value.
const char *UnitOf(Quantity quantity) {
    switch (quantity) {
    case Quantity::Temperature:
        return "°C";
    case Quantity::FanSpeed:
        return "RPM";
    case Quantity::ThermPercent:
        return "%";
    }
    return "";
}

/// What closes a channel's column: the last possible one has nothing behind it.
const char *EndOf(size_t channel) {
    return channel + 1 < Channels.size() ? "\t" : "";
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

std::string LogStartLine() {
    return std::string("Started At: ").append(DateTimeText());
}

std::string LogHeader(const std::array<bool, ChannelCount> &selected) {
    std::string header = "\t";
    for (size_t channel = 0; channel < Channels.size(); ++channel) {
        if (selected[channel]) {
            header.append(Channels[channel].Name).append(EndOf(channel));
        }
    }
    return header;
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
}

} // namespace ztm
