#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ztm::i2c {

inline constexpr int none = -1;

/// The 7-bit addresses that can be chosen.
inline constexpr int firstAddress = 0x28;
inline constexpr int lastAddress = 0x64;

/// Memory modules have their chips at these addresses, and a write there can destroy a module.
constexpr bool IsOfMemory(int address) {
    return (address >= 0x30 && address <= 0x37) || (address >= 0x50 && address <= 0x57);
}

/// A bus as the kernel lists it. Numbers change between starts of the machine, and names need not
/// be unique.
struct ListedBus {
    int number = none;
    std::string name;

    bool operator==(const ListedBus &) const = default;
};

/// Where the chip is: the bus /dev/i2c-`number` and a 7-bit address, each `none` until it is
/// chosen.
struct BusChoice {
    int number = none;
    int address = none;

    bool operator==(const BusChoice &) const = default;
};

/// What has become of the choice.
struct BusReport {
    bool isOpen = false;  ///< the bus
    bool isReady = false; ///< the bus is open and the address claimed
    bool hasChip = false; ///< one of the two chips has identified itself at the address
    /// What stands in the way, with the command that cures it if there is one; empty if nothing
    /// does.
    std::string obstacle;
    uint64_t transfers = 0;
    uint64_t errors = 0; ///< transfers that went wrong, those to an empty address among them
    std::string lastError;
};

} // namespace ztm::i2c

/// Three functions besides those of link/USBFunctions.h. They reach the one adapter of
/// the process. None of them sends anything to a chip. Call them from
/// the thread that calls the others.
extern "C" {

/// The buses that the kernel lists, by their numbers.
void ListI2cBuses(std::vector<ztm::i2c::ListedBus> *buses);

/// Opens the bus and claims the address, as far as they are given, and gives up what an earlier
/// call claimed; LookAtI2cBus says what came of it. With the bus in use already only the address
/// changes; one that cannot be claimed is then taken for empty.
void ChooseI2cBus(const ztm::i2c::BusChoice *choice);

/// Looks whether the bus is still there, closes it if it is not, and reports.
void LookAtI2cBus(ztm::i2c::BusReport *report);
}
