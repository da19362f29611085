// Runs days of the main window in minutes: every display on, the full-screen chart open, a log
// running, with the recording adapter and a simulated clock. Watches the memory and the log.
//
//   soak [HOURS]

#include "Measure.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"
#include "ui/kit/Text.h"
#include "ui/session/InitForm.h"

#include <QTimer>

#include <cmath>
#include <cstdlib>

namespace {

using namespace ztm::test;

constexpr double tickSeconds = 0.030;
constexpr int ticksPerPaint = 33;
constexpr double hourSeconds = 3600;
constexpr double megabyte = 1e6;

/// Resident memory of this process in MB, without the history, which fills for a day.
double MemoryBesideHistory() {
    std::ifstream status("/proc/self/statm");
    double pages = 0;
    status >> pages >> pages;
    return (pages * static_cast<double>(sysconf(_SC_PAGESIZE)) -
            static_cast<double>(ztm::MeasurementHistory().Bytes())) /
           megabyte;
}

void StartEverything(const TemporaryFolder &folder) {
    Adapter().registers[0x3D] = 0x34;
    ztm::ShowForm<ztm::InitForm>();
    SearchInWizard();
    Click("FinishCMD");
    Find<QTimer>("tmrMain").stop(); // ticks come only from the simulated clock
    ClickTab("Visual Display");
    Click("cmdEasySetup");
    Click("cmdGraphOptions");
    Click("chkBigGraph");
    Click("cmdOK");
    ClickTab("Control");
    Click("cmdLogData");
    for (int channel = 0; channel < ztm::ChannelCount; ++channel) {
        Click(ztm::IndexedName("chkLog", channel));
    }
    Type("txtLogInt", "1000");
    Type("txtNumLogs", "0");
    AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromStdString(folder.Path("log.xls")));
    ClickTab("Visual Display");
}

/// Lets the measurements wander, so that every display has something to do.
void Wander(double seconds) {
    for (const size_t address : {0x41U, 0x43U, 0x45U, 0x4BU, 0x4DU, 0x4EU}) {
        Adapter().registers[address] =
            static_cast<uint8_t>(100 + 20 * std::sin(seconds / 300 + static_cast<double>(address)));
    }
}

/// The largest deviation of the time between log entries from 1 s and half a tick.
double LogDrift(const std::string &path) {
    std::ifstream log(path);
    std::string line;
    std::getline(log, line);
    std::getline(log, line);
    double previous = NAN;
    double worst = 0;
    while (std::getline(log, line)) {
        const double time = std::stod(line);
        if (!std::isnan(previous)) {
            worst = std::max(worst, std::abs(time - previous - 1 - tickSeconds / 2));
        }
        previous = time;
    }
    return worst;
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    int one = 1;
    const QApplication application(one, arguments);
    const double hours = argumentCount > 1 ? std::atof(arguments[1]) : 24;
    ClockDouble clock;
    ResetCore();
    const TemporaryFolder folder;
    StartEverything(folder);
    std::printf("hour   history MB   other memory MB   log entries\n");
    double warm = 0;
    double most = 0;
    int64_t ticks = 0;
    for (int hour = 1; hour <= static_cast<int>(hours); ++hour) {
        for (const int64_t end = static_cast<int64_t>(hour * hourSeconds / tickSeconds);
             ticks < end; ++ticks) {
            clock.Advance(tickSeconds);
            Adapter().calls.clear();
            Adapter().times.clear();
            Tick();
            if (ticks % ticksPerPaint == 0) {
                Wander(clock.TotalSeconds());
                QCoreApplication::processEvents();
            }
        }
        const double memory = MemoryBesideHistory();
        (hour <= 2 ? warm : most) = std::max(hour <= 2 ? warm : most, memory);
        std::printf("%4d   %10.1f   %15.1f   %11d\n", hour,
                    static_cast<double>(ztm::MeasurementHistory().Bytes()) / megabyte, memory,
                    ztm::LogEntryCount);
        std::fflush(stdout);
    }
    const double expected = std::floor(hours) * hourSeconds / (34 * tickSeconds);
    ztm::bench::Table table;
    table.AtMost("memory gained after two hours, besides the history", most - warm, 2, "MB");
    table.AtMost("log entries too many or too few", std::abs(ztm::LogEntryCount - expected), 2, "");
    table.AtMost("a log entry's distance from its time", LogDrift(folder.Path("log.xls")),
                 tickSeconds, "s");
    return table.ExitCode();
}
