#pragma once

#include "adapter/sim/FanControl.h"
#include "adapter/sim/Physics.h"
#include "adapter/sim/RegisterFile.h"
#include "adapter/sim/TemperatureMonitor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ztm::sim {

/// The temperature monitor and fan controller as seen from its bus.
class Chip {
public:
    /// Just powered on, with first readings of the bench.
    Chip(Variant variant, const Physics &bench);

    /// Advances one tick: measures the bench and decides how its fans are driven.
    void Tick(const Physics &bench);

    FanDrive Drive(size_t fan) const { return fans[fan].Drive(); }

    /// Reads any address. Reading the low register of a measured pair holds the matching high byte
    /// for the next read of the high register, which releases it. Reading a status register clears
    /// the bits whose cause is gone.
    uint8_t Read(uint8_t address);

    /// Writes any address. Bit 0 of Configuration2 resets the chip; the other bits of that write
    /// are ignored.
    void Write(uint8_t address, uint8_t data, const Physics &bench);

private:
    void Begin(const Physics &bench);
    uint8_t ReadStatus(size_t number);
    bool IsAlert() const;

    static constexpr std::array<uint8_t, 5> measuredPairs = {LocalTemperature, Remote1Temperature,
                                                             Remote2Temperature, Tach1, Tach2};
    static constexpr size_t statusCount = 3;

    RegisterFile registers;
    TemperatureMonitor monitor;
    std::array<FanControl, Physics::fanCount> fans = {FanControl(0), FanControl(1)};
    std::array<uint8_t, statusCount> causes{}; ///< status bits whose causes are present
    std::array<uint8_t, statusCount> latched{};
    std::array<std::optional<uint8_t>, measuredPairs.size()> heldHigh;
};

} // namespace ztm::sim
