#include "adapter/sim/BoardControl.h"
#include "adapter/sim/SimulatedBoard.h"
#include "common/Clock.h"
#include "link/USBFunctions.h"

#include <algorithm>
#include <exception>
#include <optional>

namespace {

/// The board's time while it is moved by hand.
std::optional<double> movedSeconds;

double BoardSeconds() {
    return movedSeconds ? *movedSeconds : ztm::EvenSeconds();
}

/// The only board of the process, created at the first call.
ztm::sim::SimulatedBoard &Board() {
    using ztm::sim::SimulatedBoard;
    static SimulatedBoard board(ztm::sim::Variant::ZTM7720, SimulatedBoard::defaultChipAddress,
                                BoardSeconds);
    return board;
}

} // namespace

extern "C" {

/// An exception must not leave a C function; here only a lack of memory can cause one.
__attribute__((visibility("default"))) int16_t LoadFirmWare(const char *path) {
    try {
        return Board().LoadFirmWare(path);
    } catch (const std::exception &) {
        return -1;
    }
}

__attribute__((visibility("default"))) int16_t VendorIORequest(int16_t request, int32_t value,
                                                               int32_t index, int16_t direction,
                                                               int16_t length, uint8_t *buffer) {
    return Board().VendorIORequest(request, value, index, direction, length, buffer);
}

__attribute__((visibility("default"))) void ReadSimulatedBoard(ztm::sim::BoardSettings *settings,
                                                               ztm::sim::BoardState *state) {
    *settings = Board().Settings();
    *state = Board().Look();
}

__attribute__((visibility("default"))) void
ArrangeSimulatedBoard(const ztm::sim::BoardSettings *settings) {
    Board().Arrange(*settings);
}

__attribute__((visibility("default"))) void MoveSimulatedBoardClock(double seconds) {
    const double end = movedSeconds.value_or(0) + seconds;
    if (!movedSeconds) {
        movedSeconds = 0;
    }
    while (*movedSeconds < end) {
        movedSeconds = std::min(end, *movedSeconds + ztm::sim::Physics::tickSeconds);
        Board().Look(); // a tick passes
    }
}
}
