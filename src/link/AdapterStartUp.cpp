#include "link/AdapterStartUp.h"

#include "common/Clock.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "link/USBFunctions.h"

#include <algorithm>
#include <filesystem>

namespace ztm {
namespace {

constexpr std::string_view firmwareFile = "\\ZTM7720FW_v3.Hex";
constexpr double startUpPauseSeconds = 0.02;
constexpr int16_t downloadFailed = -1;

} // namespace

std::string FirmwarePath;
std::array<char, LongestFirmwarePath + 1> FirmwarePathBytes{};

void ResetAdapterStartUp() {
    FirmwarePath.clear();
    FirmwarePathBytes.fill(0);
}

std::string ProgramFolder() {
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto folder = program.parent_path();
    return folder == folder.root_path() ? std::string() : folder.string();
}

bool ToAnsiBytes(std::string_view text) {
    if (text.size() > LongestFirmwarePath) {
        return false;
    }
    *std::copy(text.begin(), text.end(), FirmwarePathBytes.begin()) = '\0';
    return true;
}

int16_t LoadAdapterFirmware(std::string_view programFolder) {
    FirmwarePath = programFolder;
    FirmwarePath += firmwareFile;
    return ToAnsiBytes(FirmwarePath) ? LoadFirmWare(FirmwarePathBytes.data()) : downloadFailed;
}

void StartAdapter(bool usbChosen, AdapterLamp &lamp) {
    AdapterFailed = false;
    lamp.SetRed();
    if (!usbChosen) {
        return;
    }
    lamp.Show();
    if (LoadAdapterFirmware(ProgramFolder()) < 0) {
        AdapterFailed = true;
        return;
    }
    lamp.SetGreen();
    Wait(startUpPauseSeconds);
    AdapterHandshake();
}

} // namespace ztm
