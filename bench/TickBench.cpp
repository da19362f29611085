// The cost of a monitor tick, including painting, on the recording adapter. Fails if it is too
// high.

#include "Measure.h"
#include "link/Heaters.h"
#include "link/Traffic.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"
#include "ui/kit/Text.h"
#include "ui/session/InitForm.h"

namespace {

using namespace ztm::test;

constexpr int warmUpTicks = 500;
constexpr int measuredTicks = 4000;
constexpr double tickSeconds = 0.030;
constexpr QSize editorSize(1400, 1000);

/// Runs ticks and the painting that they cause.
ztm::bench::Times Measure(const char *what, ClockDouble &clock) {
    ztm::bench::Times times;
    for (int tick = 0; tick < warmUpTicks + measuredTicks; ++tick) {
        clock.Advance(tickSeconds);
        Adapter().calls.clear();
        Adapter().times.clear();
        const auto work = [] {
            Tick();
            QCoreApplication::processEvents();
        };
        if (tick < warmUpTicks) {
            work();
        } else {
            times.Take(work);
        }
    }
    ztm::bench::Table::Heading(what);
    return times;
}

double CheckBusyTick(const char *what, ClockDouble &clock, ztm::bench::Table &table) {
    const auto times = Measure(what, clock);
    table.AtMost("median", times.Median(), 1500, "us");
    table.AtMost("99th percentile", times.Quantile(0.99), 4000, "us");
    return times.Median();
}

/// The curve editor shows both fans, with their full trails, while the temperatures change: what
/// that adds to a tick, with the repaints that it causes.
void CheckCurveEditor(ClockDouble &clock, ztm::bench::Table &table) {
    const double without = Measure("tick, no live page shown", clock).Mean();
    ztm::bench::Table::Figure("mean", without, "us");
    ClickTab("Control");
    Adapter().registers[0x07] = 0x04; // driven by Local and Remote1
    Find("cmdAuto").setEnabled(true);
    Click("cmdAuto");
    ClickTab("About");
    Find("frmAutoControl").resize(editorSize);
    Settle();
    Adapter().script = [](const Call &) {
        static uint8_t turn = 0;
        Adapter().registers[0x41] = Adapter().registers[0x43] = 100 + ++turn % 16;
        return int16_t{0};
    };
    const auto times = Measure("tick, no live page shown, curve editor with live points", clock);
    Adapter().script = nullptr;
    const auto &graph = Find("pctGraph");
    std::printf("  graph of %d x %d, %zu samples in a trail\n", graph.width(), graph.height(),
                ztm::RecentCount());
    ztm::bench::Table::Figure("median", times.Median(), "us");
    ztm::bench::Table::Figure("99th percentile", times.Quantile(0.99), "us");
    table.AtMost("share of the curve editor in the mean", times.Mean() - without, 100, "us");
    Find("frmAutoControl").close();
}

void LogEveryTick(const TemporaryFolder &folder) {
    ClickTab("Control");
    Click("cmdLogData");
    for (int channel = 0; channel < ztm::ChannelCount; ++channel) {
        Click(ztm::IndexedName("chkLog", channel));
    }
    Type("txtLogInt", "1");
    Type("txtNumLogs", "0");
    AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromStdString(folder.Path("log.xls")));
    ClickTab("Visual Display");
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    QApplication application(argumentCount, arguments);
    ClockDouble clock;
    ResetCore();
    Adapter().registers[0x3D] = 0x34;
    ztm::ShowForm<ztm::InitForm>();
    SearchInWizard();
    Click("FinishCMD");
    Find("frmMain").resize(1000, 650);
    ClickTab("Visual Display");
    ztm::bench::Table table;
    const auto idle = Measure("tick, every duty off", clock);
    table.AtMost("median", idle.Median(), 5, "us");
    Click("cmdEasySetup");
    ztm::ManualDialogOpen = true;
    for (auto &heater : ztm::Heaters) {
        heater.SoftwareControl = true;
    }
    const double silent = CheckBusyTick("tick, every duty on, live display shown", clock, table);
    const TemporaryFolder folder;
    LogEveryTick(folder);
    const double logging =
        CheckBusyTick("tick, every duty on, live display shown, a log entry", clock, table);
    ztm::bench::Table::Figure("share of the log entry", logging - silent, "us");
    ClickTab("About");
    CheckBusyTick("tick, every duty on, no live page shown", clock, table);
    CheckCurveEditor(clock, table);
    ClickTab("Register Access");
    ztm::MonitorInReadWrite = true;
    Click("chkContRead");
    CheckBusyTick("tick, every duty on, continuous read shown", clock, table);
    Click("cmdTraffic");
    Click("chkMonitor");
    CheckBusyTick("tick, every duty on, the bus traffic shown with the monitor's", clock, table);
    for (size_t transfer = 0; transfer < ztm::TransfersKept; ++transfer) {
        ztm::RecordTransfer(ztm::TransferKind::ReadRegister, 5, {1}, true);
    }
    CheckBusyTick("the same, with all the transfers that are kept", clock, table);
    return table.ExitCode();
}
