#pragma once

#include <cstdint>

namespace ztm {

// What a host's own SMBus controller would be driven by, in place of the adapter.

/// The port-level byte procedures of the on-board SMBus medium. No host controller is driven
/// yet: a read yields 0 and touches nothing, a write does nothing.
uint8_t PortReadByte(uint8_t deviceAddress, uint8_t address);
void PortWriteByte(uint8_t deviceAddress, uint8_t address, uint8_t data);

} // namespace ztm
