#pragma once

#include "adapter/i2c/BusControl.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ztm::i2c {

/// The buses that the kernel lists, by their numbers.
std::vector<ListedBus> ListBuses();

/// What tells a bus from another that has its number: its name and its place in the machine; empty
/// if it is not listed.
std::string IdentityOf(int number);

/// The kernel driver that is bound to the address; empty if none is.
std::string DriverAt(int number, int address);

/// The path of a bus's device file.
std::string NodeOf(int number);

/// The device file of a bus, open or not, through the kernel's requests alone. Errors are errno
/// values, 0 is success. Never asks the kernel to force an address, and never changes the bus's
/// time-out or retries, which are everybody's.
class Bus {
public:
    Bus() = default;
    ~Bus() { Close(); }
    Bus(const Bus &) = delete;
    Bus &operator=(const Bus &) = delete;

    int Open(int number);
    void Close();
    bool IsOpen() const { return file >= 0; }

    /// Whether the kernel still lists the open bus. One that it does not must be closed at once:
    /// an open file holds up its removal.
    bool IsListed() const;

    /// What the bus can do; an I2C_FUNC_* mask.
    int AskFunctions(unsigned long &functions) const;

    /// Directs the transfers to come to that address; EBUSY if a kernel driver owns it.
    int Select(int address) const;

    /// Keeps other programs that ask for it away from the address; EAGAIN if one has it already.
    /// Gone with the file.
    int Lock(int address) const;
    void Unlock(int address) const;

    /// One SMBus transfer of a byte with the register's address, from or to `data`.
    int Read(uint8_t registerAddress, uint8_t &data) const;
    int Write(uint8_t registerAddress, uint8_t data) const;

private:
    int Transfer(uint8_t direction, uint8_t registerAddress, uint8_t &data) const;
    int SetLock(int address, short type) const;

    int file = -1;
    std::string listing; ///< where the kernel lists it
};

} // namespace ztm::i2c
