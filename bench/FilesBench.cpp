// The cost of a measurement log entry until the operating system has it, compared with a plain
// formatted write of the same line, and the speed of reading a snapshot.

#include "common/Clock.h"
#include "common/WholeFile.h"
#include "files/SnapshotFile.h"
#include "monitor/MeasurementLog.h"
#include "support/TemporaryFile.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

void LogEntry(benchmark::State &state) {
    ztm::LogSettings settings;
    settings.Selected.fill(true);
    ztm::Measurements = {25.38F, 31.25F, 40.5F, 2000, 15360, 45.098038F};
    const ztm::test::TemporaryFolder folder;
    const std::string scratch = folder.Put("scratch", "");
    ztm::StartLog(scratch, settings);
    const double start = ztm::RunningSeconds();
    for (auto _ : state) {
        ztm::WriteLogEntry(start);
    }
    ztm::StopLog();
    state.SetItemsProcessed(state.iterations());
}

void PlainLogEntry(benchmark::State &state) {
    const ztm::test::TemporaryFolder folder;
    const std::string scratch = folder.Put("scratch", "");
    const int file = open(scratch.c_str(), O_WRONLY | O_TRUNC);
    const double start = ztm::RunningSeconds();
    char line[128];
    for (auto _ : state) {
        const int length = std::snprintf(line, sizeof line,
                                         " %.3f\t%g\xB0"
                                         "C\t%g\xB0"
                                         "C\t%g\xB0"
                                         "C\t%gRPM\t%gRPM\t%g%%\r\n",
                                         ztm::RunningSeconds() - start, 25.38, 31.25, 40.5, 2000.0,
                                         15360.0, 45.098038);
        benchmark::DoNotOptimize(write(file, line, static_cast<size_t>(length)));
    }
    state.SetItemsProcessed(state.iterations());
    close(file);
}

void ReadSnapshot(benchmark::State &state) {
    const ztm::test::TemporaryFolder folder;
    const std::string scratch = folder.Put("scratch", "");
    std::string text = "Address, Data\r\n";
    for (int64_t line = 0; line < state.range(0); ++line) {
        text += "0x3C, 0xFF\t// Enhanced Acoustics\r\n";
    }
    text += "\r\n";
    ztm::SaveFile(scratch, text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ztm::ReadSnapshot(scratch));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

BENCHMARK(LogEntry);
BENCHMARK(PlainLogEntry);
BENCHMARK(ReadSnapshot)->Arg(52)->Arg(4096);

} // namespace
