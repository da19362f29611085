#include "adapter/sim/RegisterFile.h"

#include <cstddef>

namespace ztm::sim {

/// Adjacent registers that are alike. A reset value of `none` means that the variant does not have
/// them.
struct RegisterFile::Row {
    uint8_t first;
    uint8_t last;
    Access access;
    int16_t resetZTM7710;
    int16_t resetZTM7720;

    int16_t ResetOf(Variant chip) const {
        return chip == Variant::ZTM7710 ? resetZTM7710 : resetZTM7720;
    }
    bool In(Variant chip) const { return ResetOf(chip) != none; }

    static constexpr int16_t none = -1;
};

// clang-format off
const RegisterFile::Row RegisterFile::rows[] = {
    {0x00, 0x00, Access::ReadWrite, 0x20, 0x20},           // bytes of a block read
    {0x01, 0x01, Access::ReadWrite, 0x01, 0x01},           // configuration 1 to 4
    {0x02, 0x02, Access::ReadWrite, 0x84, 0x84},
    {0x03, 0x03, Access::ReadWrite, 0x44, 0x44},
    {0x04, 0x04, Access::ReadWrite, 0x00, 0x00},
    {0x05, 0x05, Access::ReadWrite, 0x0A, 0x0A},           // conversion rate
    {0x06, 0x06, Access::ReadWrite, 0x01, 0x01},           // fault queue
    {0x07, 0x07, Access::ReadWrite, 0x09, 0x09},           // fan behaviour
    {0x08, 0x08, Access::ReadWrite, 0x52, 0x52},           // masks 1 to 3
    {0x09, 0x09, Access::ReadWrite, 0x10, 0x10},
    {0x0A, 0x0A, Access::ReadWrite, 0x00, 0x00},
    {0x0B, 0x0B, Access::ReadWrite, 0x8B, 0x8B},           // local high, low, THERM limit
    {0x0C, 0x0C, Access::ReadWrite, 0x54, 0x54},
    {0x0D, 0x0D, Access::ReadWrite, 0x95, 0x95},
    {0x0E, 0x0E, Access::ReadWrite, 0x8B, 0x8B},           // remote 1 limits
    {0x0F, 0x0F, Access::ReadWrite, 0x54, 0x54},
    {0x10, 0x10, Access::ReadWrite, 0x95, 0x95},
    {0x11, 0x11, Access::ReadWrite, Row::none, 0x8B},      // remote 2 limits
    {0x12, 0x12, Access::ReadWrite, Row::none, 0x54},
    {0x13, 0x13, Access::ReadWrite, Row::none, 0x95},
    {0x16, 0x17, Access::ReadWrite, 0x00, 0x00},           // local and remote 1 offset
    {0x18, 0x18, Access::ReadWrite, Row::none, 0x00},      // remote 2 offset
    {0x19, 0x19, Access::ReadWrite, 0xFF, 0xFF},           // THERM % limit
    {0x1A, 0x1A, Access::ReadWrite, 0x05, 0x05},           // THERM hysteresis
    {0x22, 0x39, Access::ReadWrite, 0xFF, 0xFF},           // lookup temperatures and speeds
    {0x3A, 0x3A, Access::ReadWrite, 0x05, 0x05},           // lookup hysteresis
    {0x3B, 0x3B, Access::ReadWrite, 0x00, 0x00},           // enhance acoustics
    {0x3C, 0x3C, Access::ReadWrite, 0x11, 0x11},           // fan response
    {0x3D, 0x3D, Access::ReadOnly, 0x33, 0x34},            // device ID
    {0x3E, 0x3E, Access::ReadOnly, 0x41, 0x41},            // company ID
    {0x3F, 0x3F, Access::ReadOnly, 0x00, 0x00},            // revision
    {0x40, 0x43, Access::ReadOnly, 0x00, 0x00},            // local and remote 1 temperature
    {0x44, 0x45, Access::ReadOnly, Row::none, 0x00},       // remote 2 temperature
    {0x4A, 0x4B, Access::ReadOnly, 0xFF, 0xFF},            // tach 1
    {0x4C, 0x4D, Access::ReadOnly, Row::none, 0xFF},       // tach 2
    {0x4E, 0x4E, Access::ReadOnly, 0x00, 0x00},            // THERM % on-time
    {0x4F, 0x51, Access::ReadOnly, 0x00, 0x00},            // status 1 to 3
};
// clang-format on

RegisterFile::RegisterFile(Variant variant) : variant(variant) {
    for (const Row &row : rows) {
        for (size_t address = row.first; address <= row.last; ++address) {
            access[address] = row.In(variant) ? row.access : Access::Absent;
        }
    }
    Reset();
}

void RegisterFile::Reset() {
    for (const Row &row : rows) {
        for (size_t address = row.first; address <= row.last; ++address) {
            Set(static_cast<uint8_t>(address), static_cast<uint8_t>(row.ResetOf(variant)));
        }
    }
}

void RegisterFile::Write(uint8_t address, uint8_t data) {
    if (access[address] == Access::ReadWrite) {
        values[address] = data;
    }
}

void RegisterFile::Set(uint8_t address, uint8_t data) {
    if (access[address] != Access::Absent) {
        values[address] = data;
    }
}

void RegisterFile::SetPair(uint8_t lowAddress, RegisterPair pair) {
    Set(lowAddress, pair.low);
    Set(static_cast<uint8_t>(lowAddress + 1), pair.high);
}

} // namespace ztm::sim
