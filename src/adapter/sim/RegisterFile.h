#pragma once

#include <array>
#include <cstdint>

namespace ztm::sim {

enum class Variant : uint8_t { ZTM7710, ZTM7720 };

/// Addresses of the registers with a behaviour of their own. Of a pair it is the low one; its
/// high byte follows at the next address.
enum RegisterAddress : uint8_t {
    Configuration1 = 0x01,
    Configuration2 = 0x02,
    Mask1 = 0x08,
    LocalHighLimit = 0x0B,
    LocalLowLimit = 0x0C,
    Remote1HighLimit = 0x0E,
    Remote1LowLimit = 0x0F,
    Remote2HighLimit = 0x11,
    Remote2LowLimit = 0x12,
    LocalTemperature = 0x40,
    Remote1Temperature = 0x42,
    Remote2Temperature = 0x44,
    Tach1 = 0x4A,
    Tach2 = 0x4C,
    Status1 = 0x4F,
    Status3 = 0x51
};

/// The storage behind the 256 register addresses of one chip, without any behaviour: which
/// registers the variant has, which of them the bus may write, and their reset values.
/// An address without a register reads 0 and cannot be changed.
class RegisterFile {
public:
    /// All registers hold their reset values.
    explicit RegisterFile(Variant variant);

    void Reset();
    uint8_t Read(uint8_t address) const { return values[address]; }
    /// A write from the bus; without effect on a read-only register.
    void Write(uint8_t address, uint8_t data);
    /// A write by the chip itself, which also reaches read-only registers.
    void Set(uint8_t address, uint8_t data);

private:
    enum class Access : uint8_t { Absent, ReadOnly, ReadWrite };
    struct Row;
    static const Row rows[];

    Variant variant;
    std::array<Access, 256> access{};
    std::array<uint8_t, 256> values{};
};

} // namespace ztm::sim
