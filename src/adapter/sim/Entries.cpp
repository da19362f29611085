#include "adapter/sim/BoardControl.h"
#include "adapter/sim/SimulatedBoard.h"
#include "link/USBFunctions.h"

#include <exception>

namespace {

/// The only board of the process, created at the first call.
ztm::sim::SimulatedBoard &Board() {
    static ztm::sim::SimulatedBoard board;
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
}
