#include "link/LinkState.h"

namespace ztm {

int16_t CommsMedium = MediumNone;
int32_t USBDeviceAddress = 0;
uint8_t DeviceAddress = 0;
std::string DeviceName;
bool AdapterFailed = false;
std::array<uint8_t, 16> TransferBuffer{};
bool SmbusDelayEnabled = true;
float SmbusDelayMs = DefaultSmbusDelayMs;
bool EightPointMode = false;

bool HasOneFan() {
    return DeviceName == ZTM7710;
}

void ResetLinkState() {
    CommsMedium = MediumNone;
    USBDeviceAddress = 0;
    DeviceAddress = 0;
    DeviceName.clear();
    AdapterFailed = false;
    TransferBuffer.fill(0);
    SmbusDelayEnabled = true;
    SmbusDelayMs = DefaultSmbusDelayMs;
    EightPointMode = false;
}

} // namespace ztm
