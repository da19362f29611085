#include "adapter/i2c/Obstacles.h"

#include "adapter/i2c/Bus.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm::i2c {
namespace {

std::string Name(int number) {
    return "i2c-" + std::to_string(number);
}

std::string Hex(const char *format, int number) {
    char text[16];
    std::snprintf(text, sizeof text, format, static_cast<unsigned>(number));
    return text;
}

std::string UserName() {
    const passwd *user = getpwuid(geteuid());
    return user ? user->pw_name : "$USER";
}

/// The group that may use the file, if it is one to join.
std::string GroupOf(const std::string &node) {
    struct stat about {};
    const bool isOpenToGroup = stat(node.c_str(), &about) == 0 && (about.st_mode & S_IWGRP) != 0;
    const group *owner = isOpenToGroup && about.st_gid != 0 ? getgrgid(about.st_gid) : nullptr;
    return owner ? owner->gr_name : "";
}

std::string NoPermission(int number) {
    const std::string node = NodeOf(number);
    const std::string joining = "sudo adduser " + UserName() + " ";
    const std::string noPermission = "You have no permission to use " + node + ". ";
    if (const std::string group = GroupOf(node); !group.empty()) {
        return noPermission + "Join its group, and log in again: " + joining + group;
    }
    return noPermission + "Have a group made for it, join it, and start the machine again: " +
           "sudo apt install i2c-tools && " + joining + "i2c";
}

} // namespace

std::string PlaceText(int number, int address) {
    return Name(number) + ", address " + Hex("0x%02X", address);
}

std::string NothingListed() {
    return std::filesystem::exists("/sys/class/i2c-dev")
               ? "The kernel lists no I2C bus. Plug one in, or load the driver of your hardware."
               : "The kernel lists no I2C bus, because a module is not loaded: sudo modprobe "
                 "i2c-dev";
}

std::string CannotOpen(int number, int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return NoPermission(number);
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return HasLeft(number);
    default:
        return NodeOf(number) + " cannot be opened: " + std::strerror(error);
    }
}

std::string NoByteData(int number) {
    return Name(number) + " cannot transfer single bytes of a register (SMBus byte data), which "
                          "the chip needs. Choose another bus.";
}

std::string CannotClaim(int number, int address, int error) {
    const std::string place = PlaceText(number, address);
    if (error == EAGAIN) {
        return place + ", is in use by another ztm-eval-i2c or ztm: close it.";
    }
    if (error != EBUSY) {
        return place + ", cannot be used: " + std::strerror(error);
    }
    const std::string driver = DriverAt(number, address);
    if (driver.empty()) {
        return place + ", belongs to a kernel driver.";
    }
    return place + ", belongs to the kernel driver \"" + driver + "\". Take it away: echo " +
           std::to_string(number) + Hex("-%04x", address) + " | sudo tee /sys/bus/i2c/drivers/" +
           driver + "/unbind";
}

std::string HasLeft(int number) {
    return Name(number) + " is not there any more.";
}

std::string TransferFault(int error) {
    switch (error) {
    case ENXIO:
    case EREMOTEIO:
        return "no acknowledgement";
    case EBUSY:
        return "the address or the bus is busy";
    default:
        return std::strerror(error);
    }
}

} // namespace ztm::i2c
