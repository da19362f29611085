#pragma once

#include "adapter/sim/Bench.h"
#include "adapter/sim/Encodings.h"
#include "adapter/sim/RegisterFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ztm::sim {

/// The temperature monitor and fan controller as its bus sees it.
class Chip {
public:
    explicit Chip(Variant variant) : registers(variant) {}

    /// Brings the tach registers and, while monitoring is on (bit 0 of Configuration1), the
    /// temperature registers up to date with the bench, and the status registers with the limits.
    void Measure(const Bench &bench);

    /// Reads any address. Reading the low register of a measured pair holds the high byte that
    /// belongs to it for the next read of the high register, which releases it again.
    uint8_t Read(uint8_t address);

    /// Writes any address. Bit 0 of Configuration2 resets the chip; the rest of that write is
    /// lost.
    void Write(uint8_t address, uint8_t data);

private:
    void CompareLimits();
    void SetPair(uint8_t lowAddress, RegisterPair pair);

    static constexpr std::array<uint8_t, 5> measuredPairs = {LocalTemperature, Remote1Temperature,
                                                             Remote2Temperature, Tach1, Tach2};

    RegisterFile registers;
    std::array<std::optional<uint8_t>, measuredPairs.size()> heldHigh;
};

} // namespace ztm::sim
