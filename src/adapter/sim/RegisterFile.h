#pragma once

#include "adapter/sim/Encodings.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ztm::sim {

enum class Variant : uint8_t { ZTM7710, ZTM7720 };

/// Addresses of the registers with special behaviour. For a pair it is the low address; the high
/// byte is at the next address.
enum RegisterAddress : uint8_t {
    Configuration1 = 0x01,
    Configuration2 = 0x02,
    Configuration3 = 0x03,
    Configuration4 = 0x04,
    ConversionRate = 0x05,
    FaultQueue = 0x06,
    FanBehaviour = 0x07,
    Mask1 = 0x08,
    Mask2 = 0x09,
    Mask3 = 0x0A,
    LocalHighLimit = 0x0B,
    LocalLowLimit = 0x0C,
    LocalThermLimit = 0x0D,
    Remote1HighLimit = 0x0E,
    Remote1LowLimit = 0x0F,
    Remote1ThermLimit = 0x10,
    Remote2HighLimit = 0x11,
    Remote2LowLimit = 0x12,
    Remote2ThermLimit = 0x13,
    LocalOffset = 0x16,
    Remote1Offset = 0x17,
    Remote2Offset = 0x18,
    ThermPercentLimit = 0x19,
    ThermHysteresis = 0x1A,
    LookupTemperature1 = 0x22,
    LookupSpeed1 = 0x2A,
    LookupSpeed2 = 0x2C,
    LookupHysteresis = 0x3A,
    EnhanceAcoustics = 0x3B,
    FanResponse = 0x3C,
    LocalTemperature = 0x40,
    Remote1Temperature = 0x42,
    Remote2Temperature = 0x44,
    Tach1 = 0x4A,
    Tach2 = 0x4C,
    ThermPercentOnTime = 0x4E,
    Status1 = 0x4F,
    Status2 = 0x50,
    Status3 = 0x51
};

/// Storage for the 256 register addresses of one chip, without any behaviour: which registers the
/// variant has, which of them the bus may write, and their reset values. An address without a
/// register reads 0 and cannot be changed.
class RegisterFile {
public:
    /// All registers hold their reset values.
    explicit RegisterFile(Variant variant);

    void Reset();
    Variant GetVariant() const { return variant; }
    bool Has(uint8_t address) const { return access[address] != Access::Absent; }
    uint8_t Read(uint8_t address) const { return values[address]; }
    /// A write from the bus; no effect on a read-only register.
    void Write(uint8_t address, uint8_t data);
    /// A write by the chip itself, also to read-only registers.
    void Set(uint8_t address, uint8_t data);

    bool IsSet(uint8_t address, uint8_t bit) const { return (values[address] & bit) != 0; }
    RegisterPair ReadPair(uint8_t lowAddress) const {
        return {values[lowAddress], values[lowAddress + size_t{1}]};
    }
    void SetPair(uint8_t lowAddress, RegisterPair pair);

private:
    enum class Access : uint8_t { Absent, ReadOnly, ReadWrite };
    struct Row;
    static const Row rows[];

    Variant variant;
    std::array<Access, 256> access{};
    std::array<uint8_t, 256> values{};
};

} // namespace ztm::sim
