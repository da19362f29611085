#include "link/USBComms.h"

#include "common/Clock.h"
#include "link/CommFailure.h"
#include "link/Heaters.h"
#include "link/LastSeen.h"
#include "link/LinkNewComPort06.h"
#include "link/LinkObserver.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBFunctions.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ztm {
namespace {

constexpr int16_t registerRequest = 0xDE;
constexpr int16_t handshakeRequest = 0xDF;
constexpr int16_t setHeaterDutyRequest = 0xDB;
constexpr int16_t readHeaterDutyRequest = 0xDA;

constexpr int16_t fromAdapter = 1;
constexpr int16_t noData = 0;

constexpr int handshakeTries = 1000;
constexpr double handshakeSpacingSeconds = 0.2;

FanControlButtons *fanControlButtons = nullptr;
LinkObserver *linkObserver = nullptr;

bool IsRegister(int32_t address) {
    return address >= 0 && address <= LastRegister;
}

/// Sends a request of which `data` is to be recorded, or what it points to once it is answered.
void Send(TransferKind kind, int16_t request, int32_t value, int32_t index, int16_t direction,
          int16_t length, uint8_t *buffer, std::array<uint8_t, 2> data = {}) {
    const bool isDone = VendorIORequest(request, value, index, direction, length, buffer) == 0;
    if (direction == fromAdapter && isDone) {
        std::copy_n(buffer, std::min<size_t>(static_cast<size_t>(length), data.size()),
                    data.begin());
    }
    const auto address = static_cast<uint8_t>(request == registerRequest ? index : 0);
    RecordTransfer(kind, address, data, isDone);
    if (!isDone) {
        CommFailure();
    }
}

void WaitForSmbus() {
    if (SmbusDelayEnabled) {
        Wait(SmbusDelayMs / 1000.0);
    }
}

} // namespace

int16_t ReadRegister(int32_t address) {
    if (!IsRegister(address)) {
        return 0;
    }
    if (CommsMedium == MediumUSB) {
        Send(TransferKind::ReadRegister, registerRequest, USBDeviceAddress, address, fromAdapter, 1,
             TransferBuffer.data());
        return TransferBuffer[0];
    }
    if (CommsMedium == MediumSMBus) {
        const uint8_t value = PortReadByte(DeviceAddress, static_cast<uint8_t>(address));
        WaitForSmbus();
        RecordTransfer(TransferKind::ReadRegister, static_cast<uint8_t>(address), {value}, true);
        return value;
    }
    return 0;
}

void WriteRegister(int32_t address, int32_t data) {
    if (!IsRegister(address)) {
        return;
    }
    data = std::clamp(data, 0, LargestRegisterValue);
    const auto byte = static_cast<uint8_t>(data);
    if (CommsMedium == MediumUSB) {
        uint8_t unused = 0;
        Send(TransferKind::WriteRegister, registerRequest, USBDeviceAddress, data * 256 + address,
             noData, 0, &unused, {byte});
    } else if (CommsMedium == MediumSMBus) {
        PortWriteByte(DeviceAddress, static_cast<uint8_t>(address), byte);
        WaitForSmbus();
        RecordTransfer(TransferKind::WriteRegister, static_cast<uint8_t>(address), {byte}, true);
    }
    if (CommsMedium != MediumNone) {
        if (address == Configuration2 && (data & ResetBit) != 0) {
            ResetLastSeen(); // every register has its default again
        }
        if (linkObserver != nullptr) {
            linkObserver->RegisterWritten(address, data);
        }
    }
    AfterRegisterWrite(address);
}

void WriteField(const RegisterField &field, int32_t code) {
    WriteRegister(field.Register, field.With(ReadRegister(field.Register), code));
}

void AdapterHandshake() {
    AdapterHandshakeWithin(std::numeric_limits<double>::infinity());
}

void AdapterHandshakeWithin(double longestSeconds) {
    if (AdapterFailed || CommsMedium != MediumUSB) {
        return;
    }
    const double start = RunningSeconds();
    const auto secondsLeft = [=] { return start + longestSeconds - RunningSeconds(); };
    for (int tries = 0; tries < handshakeTries && secondsLeft() > 0; ++tries) {
        uint8_t unused = 0;
        const auto result = VendorIORequest(handshakeRequest, 0, 0, noData, 0, &unused);
        RecordTransfer(TransferKind::Handshake, 0, {}, result == 0);
        Wait(std::min(handshakeSpacingSeconds, secondsLeft()));
        if (result == 0) {
            return;
        }
    }
}

void SetHeaterDuty(int32_t duty1, int32_t duty2) {
    Send(TransferKind::SetHeaters, setHeaterDutyRequest, duty1, duty2, noData, 0,
         TransferBuffer.data(), {static_cast<uint8_t>(duty1), static_cast<uint8_t>(duty2)});
    if (duty1 != HeaterUnchanged) {
        Heaters[0].Pwm = duty1;
    }
    if (duty2 != HeaterUnchanged) {
        Heaters[1].Pwm = duty2;
    }
    if (linkObserver != nullptr) {
        linkObserver->HeaterDutiesSet({duty1, duty2});
    }
}

uint8_t ReadHeaterDuty() {
    Send(TransferKind::ReadHeaters, readHeaterDutyRequest, 0, 0, fromAdapter, 3,
         TransferBuffer.data());
    Heaters[0].Pwm = TransferBuffer[0];
    Heaters[1].Pwm = TransferBuffer[1];
    return TransferBuffer[2];
}

void SetFanControlButtons(FanControlButtons *buttons) {
    fanControlButtons = buttons;
}

void SetLinkObserver(LinkObserver *observer) {
    linkObserver = observer;
}

void AfterRegisterWrite(int32_t address) {
    if (address == Configuration1) {
        const bool isSet = (ReadRegister(Configuration1) & SoftwareTableBit) != 0;
        if (linkObserver != nullptr) {
            linkObserver->ControlTypeRead(isSet);
        }
        if (fanControlButtons == nullptr) {
            return;
        }
        if (isSet) {
            fanControlButtons->DisableManual();
        } else {
            fanControlButtons->DisableAuto();
            fanControlButtons->DisableSetLookups();
        }
    } else if (address == Configuration2) {
        EightPointMode = (ReadRegister(Configuration2) & EightPointBit) != 0;
        if (HasOneFan()) {
            EightPointMode = true;
        }
    }
}

} // namespace ztm
