// The time that register operations add to the adapter library's own, and the time of a search that
// finds no chip.

#include "Measure.h"
#include "common/Clock.h"
#include "discovery/DeviceScan.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "link/USBFunctions.h"
#include "support/ClockDouble.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace {

uint8_t registers[256];

constexpr int32_t limitRegister = 0x0B;

} // namespace

__attribute__((noinline)) int16_t LoadFirmWare(const char * /*path*/) {
    return 0;
}

__attribute__((noinline)) int16_t VendorIORequest(int16_t /*request*/, int32_t /*value*/,
                                                  int32_t index, int16_t direction,
                                                  int16_t /*length*/, uint8_t *buffer) {
    const auto address = static_cast<uint8_t>(index);
    if (direction == 1) {
        *buffer = registers[address];
    } else {
        registers[address] = static_cast<uint8_t>(index >> 8);
    }
    return 0;
}

namespace {

void DirectRead(benchmark::State &state) {
    uint8_t buffer[16];
    for (auto _ : state) {
        benchmark::DoNotOptimize(VendorIORequest(0xDE, 0x50, limitRegister, 1, 1, buffer));
        benchmark::DoNotOptimize(buffer[0]);
    }
}

void ReadRegister(benchmark::State &state) {
    ztm::CommsMedium = ztm::MediumUSB;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ztm::ReadRegister(limitRegister));
    }
}

void DirectWrite(benchmark::State &state) {
    uint8_t unused = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            VendorIORequest(0xDE, 0x50, 0x8B00 + limitRegister, 0, 0, &unused));
    }
}

void WriteRegister(benchmark::State &state) {
    ztm::CommsMedium = ztm::MediumUSB;
    for (auto _ : state) {
        ztm::WriteRegister(limitRegister, 0x8B);
        benchmark::ClobberMemory();
    }
}

void ReadClock(benchmark::State &state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(ztm::RunningSeconds());
    }
}

class NoWindow final : public ztm::ScanWindow {
    void SetProgressMaximum(int /*units*/) override {}
    void SetProgress(double /*units*/) override {}
    bool LetEventsRun() override { return true; }
};

void ScanOfAnAbsentChip(benchmark::State &state) {
    ztm::test::ClockDouble clock;
    NoWindow window;
    for (auto _ : state) {
        ztm::SearchUSB(window);
    }
}

BENCHMARK(DirectRead);
BENCHMARK(ReadRegister);
BENCHMARK(DirectWrite);
BENCHMARK(WriteRegister);
BENCHMARK(ReadClock);
BENCHMARK(ScanOfAnAbsentChip);

/// Keeps the medians in nanoseconds and the speeds in bytes per second, and prints nothing.
class MedianReporter final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context & /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            if (run.aggregate_name == "median") {
                const std::string name = run.run_name.function_name + run.run_name.args;
                nanoseconds[name] = run.GetAdjustedCPUTime();
                if (const auto speed = run.counters.find("bytes_per_second");
                    speed != run.counters.end()) {
                    bytesPerSecond[name] = speed->second;
                }
            }
        }
    }

    std::map<std::string, double> nanoseconds;
    std::map<std::string, double> bytesPerSecond;
};

} // namespace

int main(int argumentCount, char *arguments[]) {
    std::vector<char *> all(arguments, arguments + argumentCount);
    char repetitions[] = "--benchmark_repetitions=9";
    char medianOnly[] = "--benchmark_report_aggregates_only=true";
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    all.insert(all.begin() + 1, {repetitions, medianOnly, interleaved});
    auto count = static_cast<int>(all.size());
    benchmark::Initialize(&count, all.data());
    MedianReporter medians;
    benchmark::RunSpecifiedBenchmarks(&medians);

    using ztm::bench::Table;
    const auto compare = [&](const char *what, const char *ours, const char *reference,
                             const char *referenceName) {
        Table::Figure(std::string(what).append(", median").c_str(), medians.nanoseconds[ours],
                      "ns");
        Table::Figure(std::string(what).append(" to ").append(referenceName).c_str(),
                      medians.nanoseconds[ours] / medians.nanoseconds[reference], "x");
    };
    Table table;
    Table::Heading("register operations on an adapter library that does nothing");
    compare("read", "ReadRegister", "DirectRead", "a call of the library");
    compare("write", "WriteRegister", "DirectWrite", "a call of the library");
    Table::Figure("reading the clock", medians.nanoseconds["ReadClock"], "ns");
    table.AtMost("read, recorded, besides the call of the library",
                 medians.nanoseconds["ReadRegister"] - medians.nanoseconds["DirectRead"], 60, "ns");
    table.AtMost("write, recorded, besides the call of the library",
                 medians.nanoseconds["WriteRegister"] - medians.nanoseconds["DirectWrite"], 60,
                 "ns");
    Table::Figure("search for a chip that is not there, without its waits",
                  medians.nanoseconds["ScanOfAnAbsentChip"] / 1e3, "us");
    Table::Heading("files");
    compare("log entry", "LogEntry", "PlainLogEntry", "a plain formatted write");
    Table::Figure("log entries", 1e6 / medians.nanoseconds["LogEntry"], "1000/s");
    Table::Figure("reading a snapshot, 52 lines", medians.bytesPerSecond["ReadSnapshot52"] / 1e6,
                  "MB/s");
    Table::Figure("reading a snapshot, 4096 lines",
                  medians.bytesPerSecond["ReadSnapshot4096"] / 1e6, "MB/s");
    return table.ExitCode();
}
