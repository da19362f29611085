#include "link/LinkNewComPort06.h"

namespace ztm {

uint8_t PortReadByte(uint8_t /*deviceAddress*/, uint8_t /*address*/) {
    return 0;
}

void PortWriteByte(uint8_t /*deviceAddress*/, uint8_t /*address*/, uint8_t /*data*/) {}

} // namespace ztm
