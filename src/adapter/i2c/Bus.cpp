#include "adapter/i2c/Bus.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ztm::i2c {
namespace {

const std::string listings = "/sys/class/i2c-dev";
constexpr std::string_view filePrefix = "i2c-";

std::string ListingOf(int number) {
    return listings + "/" + std::string(filePrefix) + std::to_string(number);
}

/// The first line of a file; empty if there is none.
std::string LineOf(const std::string &path) {
    std::string line;
    std::getline(std::ifstream(path), line);
    return line;
}

/// The number in a name like "i2c-7".
int NumberIn(std::string_view name) {
    int number = none;
    if (name.starts_with(filePrefix)) {
        name.remove_prefix(filePrefix.size());
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (error != std::errc() || end != name.data() + name.size()) {
            return none;
        }
    }
    return number;
}

/// An ioctl that goes on after a signal: the program answers one at its leisure.
template <class Argument>
int Ask(int file, unsigned long request, Argument argument) {
    while (ioctl(file, request, argument) < 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

std::vector<ListedBus> ListBuses() {
    std::vector<ListedBus> buses;
    std::error_code ended;
    for (std::filesystem::directory_iterator entry(listings, ended), end; !ended && entry != end;
         entry.increment(ended)) {
        const int number = NumberIn(entry->path().filename().string());
        if (number >= 0) {
            buses.push_back({number, LineOf(ListingOf(number) + "/name")});
        }
    }
    std::sort(buses.begin(), buses.end(),
              [](const ListedBus &a, const ListedBus &b) { return a.number < b.number; });
    return buses;
}

std::string IdentityOf(int number) {
    std::error_code notListed;
    const auto place = std::filesystem::canonical(ListingOf(number), notListed);
    return notListed ? std::string() : place.string() + ' ' + LineOf(ListingOf(number) + "/name");
}

std::string DriverAt(int number, int address) {
    char link[64];
    std::snprintf(link, sizeof link, "/sys/bus/i2c/devices/%d-%04x/driver", number,
                  static_cast<unsigned>(address));
    std::error_code notBound;
    return std::filesystem::read_symlink(link, notBound).filename().string();
}

std::string NodeOf(int number) {
    return "/dev/" + std::string(filePrefix) + std::to_string(number);
}

int Bus::Open(int number) {
    Close();
    const std::string node = NodeOf(number);
    if (access(node.c_str(), R_OK | W_OK) != 0) {
        return errno;
    }
    file = open(node.c_str(), O_RDWR | O_CLOEXEC);
    listing = ListingOf(number);
    return IsOpen() ? 0 : errno;
}

void Bus::Close() {
    if (IsOpen()) {
        close(file);
        file = -1;
    }
}

bool Bus::IsListed() const {
    return access(listing.c_str(), F_OK) == 0;
}

int Bus::AskFunctions(unsigned long &functions) const {
    return Ask(file, I2C_FUNCS, &functions);
}

int Bus::Select(int address) const {
    return Ask(file, I2C_SLAVE, static_cast<unsigned long>(address));
}

/// One byte of the file stands for each address. The lock belongs to the open file and not to the
/// process, so that it ends with it whatever else the process has open.
int Bus::SetLock(int address, short type) const {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = address;
    lock.l_len = 1;
    return fcntl(file, F_OFD_SETLK, &lock) == 0 ? 0 : errno;
}

int Bus::Lock(int address) const {
    const int error = SetLock(address, F_WRLCK);
    return error == EACCES ? EAGAIN : error;
}

void Bus::Unlock(int address) const {
    SetLock(address, F_UNLCK);
}

int Bus::Read(uint8_t registerAddress, uint8_t &data) const {
    return Transfer(I2C_SMBUS_READ, registerAddress, data);
}

int Bus::Write(uint8_t registerAddress, uint8_t data) const {
    return Transfer(I2C_SMBUS_WRITE, registerAddress, data);
}

int Bus::Transfer(uint8_t direction, uint8_t registerAddress, uint8_t &data) const {
    i2c_smbus_data bytes{};
    bytes.byte = data;
    i2c_smbus_ioctl_data transfer{direction, registerAddress, I2C_SMBUS_BYTE_DATA, &bytes};
    const int error = Ask(file, I2C_SMBUS, &transfer);
    if (error == 0) {
        data = bytes.byte;
    }
    return error;
}

} // namespace ztm::i2c
