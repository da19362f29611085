#include "TourBoard.h"

#include "adapter/i2c/BusControl.h"
#include "adapter/sim/BoardControl.h"
#include "link/USBFunctions.h"

#include <optional>

namespace ztm::test {
namespace {

std::optional<sim::SimulatedBoard> board;

} // namespace

void PlugIn(sim::Variant variant, sim::SimulatedBoard::Clock clock) {
    board.emplace(variant, sim::SimulatedBoard::defaultChipAddress, std::move(clock));
}

} // namespace ztm::test

int16_t LoadFirmWare(const char *path) {
    return ztm::test::board->LoadFirmWare(path);
}

int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                        int16_t length, uint8_t *buffer) {
    return ztm::test::board->VendorIORequest(request, value, index, direction, length, buffer);
}

void ReadSimulatedBoard(ztm::sim::BoardSettings *settings, ztm::sim::BoardState *state) {
    *settings = ztm::test::board->Settings();
    *state = ztm::test::board->Look();
}

void ArrangeSimulatedBoard(const ztm::sim::BoardSettings *settings) {
    ztm::test::board->Arrange(*settings);
}

void ListI2cBuses(std::vector<ztm::i2c::ListedBus> *buses) {
    *buses = {{7, "USB bridge at bus 001 device 004"}};
}

void ChooseI2cBus(const ztm::i2c::BusChoice * /*choice*/) {}

void LookAtI2cBus(ztm::i2c::BusReport *report) {
    *report = {.isOpen = true, .isReady = true, .obstacle = "", .lastError = ""};
}
