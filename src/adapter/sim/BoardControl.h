#pragma once

#include "adapter/sim/Bench.h"
#include "adapter/sim/RegisterFile.h"

#include <array>
#include <cstdint>

namespace ztm::sim {

/// What a hand at the bench can change about the simulated board.
struct BoardSettings {
    /// The chip on the board and the address at which it answers. A change puts a new board in.
    Variant variant = Variant::ZTM7720;
    int32_t chipAddress = 0x50;

    /// A board that is not plugged in fails every request. It loses its power and with it the
    /// adapter's firmware and what the chip was told.
    bool isPluggedIn = true;
    /// The next firmware load fails.
    bool refusesFirmware = false;
    /// Every request takes 20 ms longer.
    bool isSlow = false;

    BenchSettings bench;

    bool operator==(const BoardSettings &) const = default;
};

/// How things truly stand on the board, whatever its chip reads.
struct BoardState {
    bool isFirmwareLoaded;
    double boardCelsius;
    std::array<double, Bench::remoteCount> remoteCelsius;
    std::array<double, Bench::fanCount> fanRpm;
    std::array<double, Bench::heaterCount> heaterWatts;
};

} // namespace ztm::sim

/// Two entries beside those of link/USBFunctions.h, by which the simulator's own program, and
/// nobody else, reaches the one board of the process. To be called from the thread that calls
/// the others.
extern "C" {

/// The board's settings and its state at this moment.
void ReadSimulatedBoard(ztm::sim::BoardSettings *settings, ztm::sim::BoardState *state);

/// Changes the board's settings. Takes effect at once.
void ArrangeSimulatedBoard(const ztm::sim::BoardSettings *settings);
}
