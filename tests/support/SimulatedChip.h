#pragma once

#include "adapter/sim/SimulatedBoard.h"
#include "support/VirtualI2c.h"

#include <cerrno>

namespace ztm::test {

/// The simulated chip on a virtual I2C bus; nothing answers at any other address.
class SimulatedChip {
public:
    static constexpr int address = 0x2C;

    SimulatedChip() { board.LoadFirmWare(ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex"); }

    BusAnswer Answer(const ByteTransfer &transfer) {
        if (transfer.address != address) {
            return {.error = ENXIO};
        }
        BusAnswer answer;
        const int32_t index = transfer.registerAddress + transfer.data * 256;
        const int16_t direction = transfer.isRead ? 1 : 0;
        board.VendorIORequest(0xDE, 0x50, index, direction, direction, &answer.data);
        return answer;
    }

private:
    sim::SimulatedBoard board;
};

} // namespace ztm::test
