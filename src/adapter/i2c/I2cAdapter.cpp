#include "adapter/i2c/I2cAdapter.h"

#include "adapter/firmware/FirmwareFile.h"
#include "adapter/i2c/Obstacles.h"
#include "common/Clock.h"

#include <cerrno>
#include <cstdio>
#include <linux/i2c.h>

namespace ztm::i2c {
namespace {

constexpr int16_t success = 0;
constexpr int16_t failure = -1;

/// The address by which the program asks for the chip; nothing is behind any other.
constexpr int32_t chipSelector = 0x50;
constexpr uint8_t openBus = 0xFF; // no chip pulls the data line low
constexpr int32_t largestByte = 0xFF;
constexpr int32_t largestWord = 0xFFFF;

constexpr uint8_t deviceId = 0x3D;
constexpr int triesOfAKnownChip = 3;
constexpr unsigned long byteData = I2C_FUNC_SMBUS_READ_BYTE_DATA | I2C_FUNC_SMBUS_WRITE_BYTE_DATA;

bool IsIdentity(uint8_t id) {
    return id == 0x33 || id == 0x34;
}

bool IsNotAcknowledged(int error) {
    return error == ENXIO || error == EREMOTEIO;
}

bool IsWithin(int32_t number, int32_t largest) {
    return number >= 0 && number <= largest;
}

void Say(const std::string &why) {
    std::fprintf(stderr, "ztm-eval-i2c: %s\n", why.c_str());
}

} // namespace

struct I2cAdapter::Command {
    int16_t request;
    int16_t direction;
    int16_t length;
    bool (I2cAdapter::*run)(int32_t value, int32_t index, uint8_t *reply);
};

const I2cAdapter::Command I2cAdapter::commands[] = {
    {0xDE, 1, 1, &I2cAdapter::ReadRegister},   {0xDE, 0, 0, &I2cAdapter::WriteRegister},
    {0xDF, 0, 0, &I2cAdapter::Accept},         {0xDB, 0, 0, &I2cAdapter::Accept},
    {0xDA, 1, 3, &I2cAdapter::ReadHeaterDuty},
};

void I2cAdapter::Choose(const BusChoice &wanted) {
    if (!isStarted || wanted.number != choice.number) {
        Close();
    } else if (isClaimed) {
        bus.Unlock(choice.address);
        isClaimed = false;
    }
    choice = wanted;
    if (choice.address < firstAddress || choice.address > lastAddress) {
        choice.address = none;
    }
    identity = IdentityOf(choice.number);
    report.obstacle = Claim();
}

BusReport I2cAdapter::Look() {
    LoseIfGone();
    if (!isStarted && isClaimed && bus.Select(choice.address) != 0) {
        bus.Unlock(choice.address); // a kernel driver has come
        isClaimed = false;
        report.obstacle = Claim();
    }
    if (choice.number == none) {
        report.obstacle = Claim();
    }
    report.isOpen = bus.IsOpen();
    report.isReady = isClaimed;
    report.hasChip = isClaimed && PastOfAddress().hasChip;
    return report;
}

/// Opens and claims what was chosen, as far as it is not yet. Empty, or what stands in the way.
std::string I2cAdapter::Claim() {
    if (choice.number == none) {
        return ListBuses().empty() ? NothingListed() : "";
    }
    if (!bus.IsOpen()) {
        if (std::string fault = OpenBus(); !fault.empty()) {
            Close();
            return fault;
        }
    }
    if (choice.address == none || isClaimed) {
        return "";
    }
    int error = bus.Select(choice.address);
    if (error == 0) {
        error = bus.Lock(choice.address);
    }
    isClaimed = error == 0;
    return isClaimed ? "" : CannotClaim(choice.number, choice.address, error);
}

std::string I2cAdapter::OpenBus() {
    if (identity.empty() || IdentityOf(choice.number) != identity) {
        return HasLeft(choice.number);
    }
    unsigned long functions = 0;
    int error = bus.Open(choice.number);
    if (error == 0) {
        error = bus.AskFunctions(functions);
    }
    if (error != 0) {
        return CannotOpen(choice.number, error);
    }
    return (functions & byteData) == byteData ? "" : NoByteData(choice.number);
}

void I2cAdapter::Close() {
    bus.Close();
    isClaimed = false;
    isStarted = false;
}

void I2cAdapter::Lose() {
    Close();
    report.obstacle = HasLeft(choice.number);
    Say(report.obstacle);
}

void I2cAdapter::LoseIfGone() {
    if (bus.IsOpen() && !bus.IsListed()) {
        Lose();
    }
}

/// What went wrong with a transfer. The bus itself can be busy too.
std::string I2cAdapter::Explain(int error) const {
    if (error == ENODEV) {
        return HasLeft(choice.number);
    }
    return error == EBUSY && !DriverAt(choice.number, choice.address).empty()
               ? CannotClaim(choice.number, choice.address, error)
               : PlaceText(choice.number, choice.address) + ": " + TransferFault(error);
}

int16_t I2cAdapter::LoadFirmWare(const char *path) {
    isStarted = false;
    report.obstacle = Start(path);
    isStarted = report.obstacle.empty();
    if (isStarted) {
        return success;
    }
    Close();
    Say(report.obstacle);
    return failure;
}

/// Empty if the chosen bus is ready for requests, otherwise the reason.
std::string I2cAdapter::Start(const char *path) {
    const std::string file = NativePath(path ? path : "");
    std::string whyNot;
    if (!ReadFirmwareFile(file, whyNot)) {
        return "the firmware file \"" + file + "\": " + whyNot;
    }
    if (choice.number == none || choice.address == none) {
        return "no bus and address have been chosen";
    }
    LoseIfGone();
    if (std::string fault = Claim(); !fault.empty()) {
        return fault;
    }
    pasts.fill({});
    const double start = EvenSeconds();
    uint8_t id = 0;
    const int error = TryTransfer(true, deviceId, id);
    if (error != 0 && EvenSeconds() - start > bounds.stuckSeconds) {
        return Explain(error) +
               ", after a long wait: a line of the bus is held low, or has no pull-up";
    }
    return error == 0 || IsEmpty({}, error) ? "" : Explain(error);
}

int16_t I2cAdapter::VendorIORequest(int16_t request, int32_t value, int32_t index,
                                    int16_t direction, int16_t length, uint8_t *buffer) {
    LoseIfGone();
    if (!isStarted || (direction == 1 && !buffer)) {
        return failure;
    }
    for (const Command &command : commands) {
        if (command.request == request && command.direction == direction &&
            command.length == length) {
            return (this->*command.run)(value, index, buffer) ? success : failure;
        }
    }
    return failure;
}

bool I2cAdapter::IsChosen(int32_t value) const {
    return value == chipSelector && isClaimed;
}

bool I2cAdapter::ReadRegister(int32_t value, int32_t index, uint8_t *reply) {
    if (!IsWithin(index, largestByte)) {
        return false;
    }
    uint8_t data = openBus;
    if (IsChosen(value) && !Transfer(true, static_cast<uint8_t>(index), data)) {
        return false;
    }
    *reply = data;
    return true;
}

/// A write to an address that has not identified itself is dropped: a memory module could live
/// there, which a write can destroy.
bool I2cAdapter::WriteRegister(int32_t value, int32_t index, uint8_t * /*reply*/) {
    if (!IsWithin(index, largestWord)) {
        return false;
    }
    auto data = static_cast<uint8_t>(index >> 8);
    return !IsChosen(value) || !PastOfAddress().hasChip ||
           Transfer(false, static_cast<uint8_t>(index & 0xFF), data);
}

bool I2cAdapter::Accept(int32_t /*value*/, int32_t /*index*/, uint8_t * /*reply*/) {
    return true;
}

/// There are no heaters.
bool I2cAdapter::ReadHeaterDuty(int32_t /*value*/, int32_t /*index*/, uint8_t *reply) {
    reply[0] = reply[1] = reply[2] = 0;
    return true;
}

/// Buses have several names for what an empty address does, and some none of its own.
bool I2cAdapter::IsEmpty(const Past &past, int error) {
    return IsNotAcknowledged(error) ? !past.hasChip
                                    : (error == EIO || error == ETIMEDOUT) && !past.hasAnswered;
}

/// Carries out a transfer, tells what is no fault and repeats what may be one. A known chip's
/// missing answer is never taken for an open bus: to read a register as 0xFF and write it back
/// with one bit changed would lock the chip, or reset it.
bool I2cAdapter::Transfer(bool isRead, uint8_t registerAddress, uint8_t &data) {
    int error = TryTransfer(isRead, registerAddress, data);
    if (IsEmpty(PastOfAddress(), error)) {
        data = openBus;
        return true;
    }
    for (int tries = 1; IsNotAcknowledged(error) && tries < triesOfAKnownChip; ++tries) {
        SleepSeconds(bounds.betweenTries);
        error = TryTransfer(isRead, registerAddress, data);
    }
    if (error == 0) {
        return true;
    }
    if (error == ENODEV) {
        Lose();
    } else {
        Say(Explain(error));
        LoseIfGone();
    }
    return false;
}

/// One try, with what it teaches about the address. The address is asked for before each: a kernel
/// driver may have taken it.
int I2cAdapter::TryTransfer(bool isRead, uint8_t registerAddress, uint8_t &data) {
    int error = bus.Select(choice.address);
    if (error == 0) {
        ++report.transfers;
        error = isRead ? bus.Read(registerAddress, data) : bus.Write(registerAddress, data);
    }
    if (error != 0) {
        ++report.errors;
        report.lastError = TransferFault(error);
    } else if (isRead) {
        Past &past = PastOfAddress();
        past.hasAnswered = true;
        past.hasChip = past.hasChip || (registerAddress == deviceId && IsIdentity(data));
    }
    return error;
}

} // namespace ztm::i2c
