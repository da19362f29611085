#include "discovery/DeviceScan.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"

#include <iterator>

namespace ztm {
namespace {

struct Identity {
    int16_t deviceId;
    std::string_view name;
};
constexpr Identity identities[] = {{0x33, ZTM7710}, {0x34, ZTM7720}};

struct Probe {
    int32_t address;
    double spacingSeconds;
};
constexpr Probe probes[] = {{0x50, 0.020}, {0x51, 0.010}};

constexpr int attemptsPerAddress = 200;
constexpr int progressUnitsPerMedium = 33;
constexpr double progressPerAttempt =
    static_cast<double>(progressUnitsPerMedium) / (attemptsPerAddress * std::size(probes));

std::string_view VariantOf(int16_t deviceId) {
    for (const Identity &identity : identities) {
        if (identity.deviceId == deviceId) {
            return identity.name;
        }
    }
    return {};
}

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

} // namespace

std::string USBDeviceName;

std::optional<int16_t> DeviceIdOf(std::string_view deviceName) {
    for (const Identity &identity : identities) {
        if (identity.name == deviceName) {
            return identity.deviceId;
        }
    }
    return std::nullopt;
}

void ResetDeviceScan() {
    USBDeviceName.clear();
}

void SearchUSB(ScanWindow &window) {
    const Requester search("Search");
    if (AdapterFailed) {
        return;
    }
    USBDeviceName.clear();
    CommsMedium = MediumUSB;
    double progress = 0;
    for (const Probe &probe : probes) {
        USBDeviceAddress = probe.address;
        for (int attempts = 0; attempts < attemptsPerAddress; ++attempts) {
            const double start = RunningSeconds();
            USBDeviceName = VariantOf(ReadRegister(DeviceId));
            WaitSince(start, probe.spacingSeconds);
            window.SetProgress(progress += progressPerAttempt);
            if (!window.LetEventsRun() || !USBDeviceName.empty()) {
                return;
            }
        }
    }
}

void RunSearch(const SearchMedia &media, ScanWindow &window) {
    window.SetProgressMaximum(progressUnitsPerMedium * (int{media.SMBus} + int{media.USB}));
    DeviceName.clear();
    if (media.USB) {
        SearchUSB(window);
    }
}

std::optional<std::string> FoundDeviceEntry() {
    if (USBDeviceName.empty()) {
        return std::nullopt;
    }
    return "An " + USBDeviceName + " was found at:" + HexText(USBDeviceAddress) +
           "h, on the USB port ";
}

void TakeDevice(std::string_view entry) {
    CommsMedium = MediumNone;
    DeviceName.clear();
    if (!Contains(entry, "USB")) {
        return;
    }
    CommsMedium = MediumUSB;
    for (const Identity &identity : identities) {
        if (Contains(entry, identity.name)) {
            DeviceName = identity.name;
        }
    }
}

} // namespace ztm
