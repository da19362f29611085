#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// Longest firmware path passed to the adapter library, in bytes.
inline constexpr size_t LongestFirmwarePath = 512;

/// Full path of the firmware file, built at start-up, and the same path as zero-terminated 8-bit
/// text for the adapter library.
extern std::string FirmwarePath;
extern std::array<char, LongestFirmwarePath + 1> FirmwarePathBytes;

/// Resets both to their start-up values.
void ResetAdapterStartUp();

/// The status lamp of the adapter.
class AdapterLamp {
public:
    virtual ~AdapterLamp() = default;
    virtual void SetRed() = 0;
    virtual void SetGreen() = 0;
    virtual void Show() = 0;
};

/// The folder that holds the program, without a trailing separator.
std::string ProgramFolder();

/// Copies `text` into `FirmwarePathBytes` and ends it with a zero byte. The bytes are unchanged, as
/// the file system uses them, so the library can open the file whatever the folder is called.
/// Returns false and changes nothing if `text` is longer than LongestFirmwarePath bytes.
bool ToAnsiBytes(std::string_view text);

/// Builds `FirmwarePath` from `programFolder` and has the adapter library load the file. A negative
/// result means failure. A path that is too long fails without calling the library.
int16_t LoadAdapterFirmware(std::string_view programFolder);

/// Brings the adapter up when the main window loads: clears `AdapterFailed`, turns the lamp
/// red and, if the USB medium was chosen, shows the lamp, loads the firmware, turns the lamp
/// green, waits 20 ms and sends the handshake. A failed download leaves the lamp red, sets
/// `AdapterFailed` and sends nothing.
void StartAdapter(bool usbChosen, AdapterLamp &lamp);

} // namespace ztm
