#include "cli/Connection.h"

#include "cli/AdapterLibrary.h"
#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "discovery/DeviceScan.h"
#include "link/AdapterStartUp.h"
#include "link/CommFailure.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"

namespace ztm::cli {
namespace {

const std::vector<Column> busColumns{{"bus", -3}, {"name", 32}, {"usable", 6}, {"obstacle", 0}};

class InterruptibleClock final : public Clock {
public:
    double RunningSeconds() override { return SystemClock().RunningSeconds(); }
    void Sleep(double seconds) override { SleepInterruptibly(seconds); }
};

/// Starts at noon of a day of its own, so that a run can be repeated to the last digit.
class JumpingClock final : public Clock {
public:
    JumpingClock() { MoveBoardClock(0); }
    double RunningSeconds() override { return seconds; }
    void Sleep(double wanted) override {
        CheckInterruption();
        seconds += wanted;
        MoveBoardClock(wanted);
    }

private:
    static constexpr double noon = 12 * 3600;
    double seconds = noon;
};

class NoLamp final : public AdapterLamp {
public:
    void SetRed() override {}
    void SetGreen() override {}
    void Show() override {}
};

class NoScanWindow final : public ScanWindow {
public:
    void SetProgressMaximum(int /*units*/) override {}
    void SetProgress(double /*units*/) override {}
    bool LetEventsRun() override { return true; }
};

void ArrangeVariant(const std::string &variant) {
    sim::BoardSettings settings;
    sim::BoardState state{};
    ReadBoard(settings, state);
    settings.variant = variant == ZTM7710 ? sim::Variant::ZTM7710 : sim::Variant::ZTM7720;
    ArrangeBoard(settings);
}

void Prepare(const Options &options) {
    if (options.Bus) {
        const i2c::BusChoice choice{*options.Bus, options.Address.value_or(i2c::none)};
        ChooseBus(choice);
    } else if (options.Adapter == "sim") {
        ArrangeVariant(options.Variant);
    }
}

[[noreturn]] void FailTransfer() {
    const std::string reason = TakeLibraryText();
    throw Failure(ChipFailed,
                  reason.empty() ? "the chip or the bus failed: check the connections" : reason);
}

} // namespace

std::unique_ptr<Clock> NewClock(bool isFast) {
    if (isFast) {
        return std::make_unique<JumpingClock>();
    }
    return std::make_unique<InterruptibleClock>();
}

void Connect(const Options &options) {
    SetCommFailureHandler(FailTransfer);
    Prepare(options);
    CommsMedium = MediumUSB;
    NoLamp lamp;
    StartAdapter(true, lamp);
    if (AdapterFailed) {
        const std::string reason = TakeLibraryText();
        throw Failure(NothingFound, reason.empty() ? "the adapter could not be started" : reason);
    }
    NoScanWindow window;
    RunSearch({.USB = true}, window);
    const auto found = FoundDeviceEntry();
    if (!found) {
        throw Failure(NothingFound, "no ZTM7710/20 was found: check its supply and connections");
    }
    TakeDevice(*found);
    if (!options.Variant.empty() && DeviceName != options.Variant) {
        throw Failure(NothingFound, "a " + DeviceName + " was found, not a " + options.Variant);
    }
    ResetRegisterMap();
    BuildRegisterMap();
}

void PrintBuses(Output &out) {
    OpenAdapterLibrary(Adapter::I2c);
    std::vector<i2c::ListedBus> buses;
    ListBuses(buses);
    i2c::BusReport report;
    if (buses.empty()) {
        LookAtBus(report);
        throw Failure(NothingFound, report.obstacle);
    }
    out.Heading(busColumns);
    for (const auto &[number, name] : buses) {
        ChooseBus({number, i2c::none});
        LookAtBus(report);
        out.Line(busColumns,
                 {number, name, Cell::Bool(report.obstacle.empty(), "yes", "no"), report.obstacle});
    }
    ChooseBus({});
    out.Flush();
}

} // namespace ztm::cli
