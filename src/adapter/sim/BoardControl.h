#pragma once

#include "adapter/sim/Physics.h"
#include "adapter/sim/RegisterFile.h"

#include <array>
#include <cstdint>

namespace ztm::sim {

/// What the user can change about the simulated board.
struct BoardSettings {
    /// The chip on the board and its address. A change installs a new board.
    Variant variant = Variant::ZTM7720;
    int32_t chipAddress = 0x50;

    /// An unplugged board fails every request. It loses power, and with it the adapter's firmware
    /// and the chip's settings.
    bool isPluggedIn = true;
    /// The next firmware load fails.
    bool refusesFirmware = false;
    /// Every request takes 20 ms longer.
    bool isSlow = false;

    BenchSettings bench;

    bool operator==(const BoardSettings &) const = default;
};

/// The true state of the board, whatever its chip reads.
struct BoardState {
    bool isFirmwareLoaded;
    double boardCelsius;
    std::array<double, Physics::remoteCount> remoteCelsius;
    std::array<double, Physics::fanCount> fanRpm;
    std::array<double, Physics::heaterCount> heaterWatts;
};

} // namespace ztm::sim

/// Three functions besides those of link/USBFunctions.h, for the programs that know the board as
/// well as its chip. They reach the one board of the process. Call them from the thread that calls
/// the others.
extern "C" {

/// Reads the board's settings and its current state.
void ReadSimulatedBoard(ztm::sim::BoardSettings *settings, ztm::sim::BoardState *state);

/// Changes the board's settings immediately.
void ArrangeSimulatedBoard(const ztm::sim::BoardSettings *settings);

/// Lets that much time pass for the board at once, in steps of at most a tick, so that it lives
/// through all of it. Its time then passes by these calls alone. The first one, which may be of 0
/// seconds, has to come before any other function is called.
void MoveSimulatedBoardClock(double seconds);
}
