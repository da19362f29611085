#pragma once

#include <optional>

class QWidget;

namespace ztm {

/// Where a chip stands on the I2C buses of a machine.
struct I2cPlace {
    int Bus;     ///< its number, 0 or more
    int Address; ///< of seven bits, 0x08 to 0x77
};

/// Asks for the bus and the address of a chip. It first proposes what was entered last. Nothing if
/// the user cancelled. The monitor keeps running meanwhile.
std::optional<I2cPlace> AskI2cPlace(QWidget *parent);

} // namespace ztm
