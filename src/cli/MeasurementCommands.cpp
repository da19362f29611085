// The commands that measure.

#include "cli/Commands.h"
#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "cli/LogRecorder.h"
#include "cli/Values.h"
#include "common/At.h"
#include "common/Clock.h"
#include "monitor/Channels.h"

#include <cmath>
#include <csignal>
#include <limits>
#include <memory>

namespace ztm::cli {
namespace {

constexpr double millisecondsPerSecond = 1000;
constexpr const char *standardWatchInterval = "1s";
constexpr const char *standardLogInterval = "100ms";
constexpr int elapsedDecimals = 3;
constexpr double betweenLooksSeconds = 0.1; // of "until"
constexpr double forever = std::numeric_limits<double>::infinity();

/// What is typed for something that goes on.
struct Typed {
    std::string file;
    bool isForced = false;
    std::string interval;
    std::string count;
    std::vector<std::string> channels;
};

void AddRepetition(CLI::App &command, Typed &typed) {
    command.add_option("-i,--interval", typed.interval, "Time between lines: 100ms, 2s")
        ->capture_default_str();
    command.add_option("-n,--count", typed.count, "So many lines, then end");
    command.add_option("--channels", typed.channels, "As in local,remote1,fan1,therm; all if none")
        ->delimiter(',');
}

/// 0 for no end.
int32_t ParseCount(const Typed &typed) {
    return typed.count.empty()
               ? 0
               : ParseWhole(typed.count, 1, std::numeric_limits<int32_t>::max(), "a count");
}

std::array<bool, ChannelCount> ParseChannels(const Typed &typed) {
    std::array<bool, ChannelCount> selected{};
    for (const std::string &name : typed.channels) {
        At(selected, ParseChannel(name)) = true;
    }
    for (int channel = 0; typed.channels.empty() && channel < ChannelCount; ++channel) {
        At(selected, channel) = HasChannel(channel);
    }
    return selected;
}

int DecimalsOf(int channel) {
    return At(Channels, channel).Measures == Quantity::FanSpeed ? 0 : 2;
}

struct Watch {
    double intervalSeconds;
    int32_t count; ///< 0 for no end
    std::array<bool, ChannelCount> selected;
};

std::vector<Column> WatchColumns(const Watch &watch) {
    std::vector<Column> columns{{"seconds", -9}};
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (At(watch.selected, channel)) {
            columns.push_back({std::string(ChannelName(channel)), -8});
        }
    }
    return columns;
}

/// One line of measurements, all of them new.
std::vector<Cell> Measure(const Watch &watch, double elapsedSeconds) {
    std::vector<Cell> cells{{elapsedSeconds, elapsedDecimals}};
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (At(watch.selected, channel)) {
            ReadMeasurement(channel);
            cells.emplace_back(static_cast<double>(At(Measurements, channel)), DecimalsOf(channel));
        }
    }
    return cells;
}

/// Lines at even spacing; after a delay the next one comes at its time, never several at once.
void WriteLines(Session &session, const Watch &watch) {
    const auto columns = WatchColumns(watch);
    session.Out.Heading(columns);
    const double start = RunningSeconds();
    for (int32_t line = 0; watch.count == 0 || line < watch.count; ++line) {
        const double now = RunningSeconds();
        if (line > 0 && watch.intervalSeconds > 0) {
            const double passed = std::floor((now - start) / watch.intervalSeconds);
            WaitSince(start, (passed + 1) * watch.intervalSeconds);
        }
        session.Out.Line(columns, Measure(watch, session.WatchedSeconds()));
        session.Out.Flush();
    }
}

/// Runs something; a SIGINT is its proper end if it has no other.
template <class Action>
void RunUntilInterrupted(bool hasNoEnd, const Action &action) {
    try {
        action();
    } catch (const Interrupted &interruption) {
        throw Interrupted{interruption.signal, hasNoEnd && interruption.signal == SIGINT};
    }
}

LogSettings ParseLogSettings(const Typed &typed) {
    const double milliseconds = std::round(ParseSeconds(typed.interval) * millisecondsPerSecond);
    if (milliseconds < 1) {
        throw Refused('"' + typed.interval + "\" is too short for a log: at least 1ms");
    }
    return {ParseChannels(typed), static_cast<int32_t>(milliseconds), ParseCount(typed)};
}

struct Condition {
    int channel;
    bool isAbove;
    double level;
    double longestSeconds;

    bool Holds() const {
        const auto value = static_cast<double>(At(Measurements, channel));
        return isAbove ? value > level : value < level;
    }
};

/// "remote1 > 60 timeout 5m"
Condition ParseCondition(const std::vector<std::string> &words) {
    const bool isTimed = words.size() == 5 && words[3] == "timeout";
    if ((words.size() != 3 && !isTimed) || (words[1] != ">" && words[1] != "<")) {
        throw Refused("until needs a channel, > or <, and a number: until remote1 > 60 timeout 5m");
    }
    return {ParseChannel(words[0]), words[1] == ">", ParseNumber(words[2], "a level"),
            isTimed ? ParseSeconds(words[4]) : forever};
}

void WaitUntil(const Condition &condition) {
    const double start = RunningSeconds();
    for (;;) {
        ReadMeasurement(condition.channel);
        if (condition.Holds()) {
            return;
        }
        if (RunningSeconds() - start >= condition.longestSeconds) {
            const Cell value(static_cast<double>(At(Measurements, condition.channel)),
                             DecimalsOf(condition.channel));
            throw Failure(AnswerIsNo, "timed out: " + std::string(ChannelName(condition.channel)) +
                                          " is " + value.Text());
        }
        Wait(betweenLooksSeconds);
    }
}

} // namespace

void AddWatch(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("watch", "Print measurements, a line each time");
    const auto typed = std::make_shared<Typed>();
    typed->interval = standardWatchInterval;
    AddRepetition(*command, *typed);
    command->callback([&made, typed] {
        made = [typed] {
            const Watch watch{ParseSeconds(typed->interval), ParseCount(*typed),
                              ParseChannels(*typed)};
            return Step{[watch](Session &session) {
                RunUntilInterrupted(watch.count == 0, [&] { WriteLines(session, watch); });
            }};
        };
    });
}

void AddLog(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("log", "Record a measurement log");
    const auto typed = std::make_shared<Typed>();
    typed->interval = standardLogInterval;
    command->add_option("FILE", typed->file, "The log")->required();
    AddRepetition(*command, *typed);
    command->add_flag("--force", typed->isForced, "Replace an existing file");
    command->callback([&made, typed] {
        made = [typed] {
            const LogSettings settings = ParseLogSettings(*typed);
            return Step{[=](Session & /*session*/) {
                            RunUntilInterrupted(settings.MaxEntries == 0,
                                                [&] { RecordLog(typed->file, settings); });
                        },
                        {typed->file, true, typed->isForced}};
        };
    });
}

void AddWait(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("wait", "Wait that long");
    const auto time = std::make_shared<std::string>();
    command->add_option("TIME", *time, "100ms, 2s, 5m, 1h")->required();
    command->callback([&made, time] {
        made = [time] {
            const double seconds = ParseSeconds(*time);
            return Step{[seconds](Session & /*session*/) {
                const double start = RunningSeconds();
                while (RunningSeconds() - start < seconds) {
                    WaitSince(start, seconds); // at most a day at a time
                }
            }};
        };
    });
}

void AddUntil(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("until", "Wait until a measurement is there");
    const auto words = std::make_shared<std::vector<std::string>>();
    command->add_option("CONDITION", *words, "remote1 > 60 timeout 5m")->required();
    command->callback([&made, words] {
        made = [words] {
            const Condition condition = ParseCondition(*words);
            return Step{[condition](Session & /*session*/) { WaitUntil(condition); }};
        };
    });
}

} // namespace ztm::cli
