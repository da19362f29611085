#pragma once

#include <cstdint>

namespace ztm {

// Access through the host's own SMBus controller instead of the adapter.

/// Byte access on the on-board SMBus medium. No host controller is driven yet: a read returns 0, a
/// write does nothing.
uint8_t PortReadByte(uint8_t deviceAddress, uint8_t address);
void PortWriteByte(uint8_t deviceAddress, uint8_t address, uint8_t data);

} // namespace ztm
