#include "adapter/i2c/BusControl.h"
#include "adapter/i2c/I2cAdapter.h"
#include "link/USBFunctions.h"

#include <exception>

namespace {

/// The only adapter of the process; nothing is opened before a bus is chosen.
ztm::i2c::I2cAdapter &Adapter() {
    static ztm::i2c::I2cAdapter adapter;
    return adapter;
}

/// An exception must not leave a C function; here only a lack of memory can cause one.
template <class Action>
int16_t Guard(const Action &action) {
    try {
        return action();
    } catch (const std::exception &) {
        return -1;
    }
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) int16_t LoadFirmWare(const char *path) {
    return Guard([&] { return Adapter().LoadFirmWare(path); });
}

__attribute__((visibility("default"))) int16_t VendorIORequest(int16_t request, int32_t value,
                                                               int32_t index, int16_t direction,
                                                               int16_t length, uint8_t *buffer) {
    return Guard([&] {
        return Adapter().VendorIORequest(request, value, index, direction, length, buffer);
    });
}

__attribute__((visibility("default"))) void ListI2cBuses(std::vector<ztm::i2c::ListedBus> *buses) {
    *buses = ztm::i2c::ListBuses();
}

__attribute__((visibility("default"))) void ChooseI2cBus(const ztm::i2c::BusChoice *choice) {
    Adapter().Choose(*choice);
}

__attribute__((visibility("default"))) void LookAtI2cBus(ztm::i2c::BusReport *report) {
    *report = Adapter().Look();
}
}
