#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// Longest firmware path in characters that the adapter library is given.
inline constexpr size_t LongestFirmwarePath = 512;

/// Full path of the firmware file, built at start-up, and the same as zero-terminated 8-bit
/// text for the adapter library.
extern std::string FirmwarePath;
extern std::array<char, LongestFirmwarePath + 1> FirmwarePathBytes;

/// Puts the start-of-run values back.
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

/// Puts `text` into `FirmwarePathBytes`, one byte per 8-bit character, and a zero byte after
/// it. The bytes are those that the platform names its files with, unchanged, so that the
/// library can open the file whatever the folder is called. A text of more than
/// LongestFirmwarePath bytes is refused: false, and nothing is changed.
bool ToAnsiBytes(std::string_view text);

/// Builds `FirmwarePath` from `programFolder` and has the adapter library load the file. A
/// negative result means failure; so does a path that is too long, of which the library is
/// not told.
int16_t LoadAdapterFirmware(std::string_view programFolder);

/// Brings the adapter up when the main window loads: clears `AdapterFailed`, turns the lamp
/// red and, if the USB medium was chosen, shows the lamp, loads the firmware, turns the lamp
/// green, waits 20 ms and sends the handshake. A failed download leaves the lamp red, sets
/// `AdapterFailed` and sends nothing.
void StartAdapter(bool usbChosen, AdapterLamp &lamp);

} // namespace ztm
