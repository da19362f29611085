// Opening a recorded log of a million rows of six channels: its speed, the longest step that it
// takes between other things, and its memory besides the history of the rows. Then saving all of
// them as text. Fails if a figure misses its bound.

#include "Measure.h"
#include "files/LogFile.h"
#include "support/TemporaryFile.h"
#include "ui/instruments/StripChartSaving.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <malloc.h>

namespace {

using ztm::ChannelHistory;
using ztm::LogFile;
using ztm::bench::Table;
using ztm::bench::Times;

constexpr int rows = 1'000'000;
constexpr double stepSeconds = 0.005;

/// A log of a million rows, one each 100 ms.
std::string MillionRows() {
    std::mt19937 random{3};
    std::normal_distribution<double> noise;
    std::string text = "Started At: 23.11.2026 14:05:09\r\n"
                       "\tLocal\tRemote1\tRemote2\tFan1\tFan2\tTHERM%\r\n";
    char line[160];
    for (int row = 0; row < rows; ++row) {
        const int length = std::snprintf(
            line, sizeof line,
            " %.3f\t%.2f\xB0\x43\t%.2f\xB0\x43\t%.2f\xB0\x43\t%.0fRPM\t%.0fRPM\t%.5f%%\r\n",
            0.1 * row, 25 + noise(random), 31 + noise(random), 40 + noise(random),
            2000 + 50 * noise(random), 12360 + 50 * noise(random), 45.09804);
        text.append(line, static_cast<size_t>(length));
    }
    return text;
}

double HeapMegabytes() {
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

void MeasureReading(const std::string &path, Table &table) {
    Times whole(CLOCK_MONOTONIC);
    Times steps(CLOCK_MONOTONIC);
    double besides = 0;
    double kept = 0;
    for (int turn = 0; turn < 5; ++turn) {
        const double before = HeapMegabytes();
        ChannelHistory history(ztm::MostLogRows);
        LogFile log(history);
        auto state = log.Open(path);
        whole.Take([&] {
            while (state == LogFile::State::Reading) {
                steps.Take([&] { state = log.Step(stepSeconds); });
            }
        });
        kept = static_cast<double>(history.Bytes()) / 1e6;
        besides = std::max(besides, HeapMegabytes() - before - kept);
        if (state != LogFile::State::Read || history.SampleCount() != rows) {
            std::fprintf(stderr, "the log was not read: %s\n", log.Problem().c_str());
            std::exit(1);
        }
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    Table::Heading("log of a million rows of six channels, read in steps");
    table.AtLeast("speed on the clock, median", megabytes / (whole.Median() / 1e6), 60, "MB/s");
    table.AtMost("step, 99th percentile", steps.Quantile(0.99) / 1e3, 10, "ms");
    Table::Figure("step, longest", steps.Quantile(1) / 1e3, "ms");
    Table::Figure("memory of the rows", kept, "MB");
    table.AtMost("memory besides", besides, 40, "MB");
}

/// How much the program works without a turn for other things while the rows are saved.
void MeasureSaving(const std::string &path, Table &table) {
    ChannelHistory history(ztm::MostLogRows);
    LogFile log(history);
    for (auto state = log.Open(path); state == LogFile::State::Reading;) {
        state = log.Step(1);
    }
    ztm::SavedHistory all{history, 0, {}};
    for (int channel = 0; channel < ChannelHistory::channelCount; ++channel) {
        all.traces.push_back({channel, QStringLiteral("Channel"), QStringLiteral("°C")});
    }
    std::vector<double> pieces;
    double last = ztm::bench::CpuMicroseconds();
    const double start = last;
    const auto note = [&] {
        const double now = ztm::bench::CpuMicroseconds();
        pieces.push_back((now - last) / 1e3);
        last = now;
    };
    const bool isSaved = ztm::SaveRange({all}, {0, history.LastTime(), QString(), {}, true},
                                        QStringLiteral("/dev/null"), note);
    note();
    if (!isSaved) {
        std::exit(1);
    }
    std::sort(pieces.begin(), pieces.end());
    Table::Heading("the same million rows saved as text, to nowhere");
    Table::Figure("all of it", (last - start) / 1e3, "ms");
    table.AtMost("CPU time without a turn for other things, 99th percentile",
                 pieces[pieces.size() * 99 / 100], 10, "ms");
    Table::Figure("CPU time without a turn for other things, longest", pieces.back(), "ms");
}

} // namespace

int main() {
    Table table;
    const ztm::test::TemporaryFolder folder;
    const std::string path = folder.Put("log", MillionRows());
    MeasureReading(path, table);
    MeasureSaving(path, table);
    return table.ExitCode();
}
