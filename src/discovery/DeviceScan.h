#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ztm {

/// The variant found by the USB scan, ZTM7710 or ZTM7720; empty if it identified none.
extern std::string USBDeviceName;

/// Restores the start-of-run value.
void ResetDeviceScan();

/// The window that shows a scan and can stop it.
class ScanWindow {
public:
    virtual ~ScanWindow() = default;

    /// The progress at which the scan is complete.
    virtual void SetProgressMaximum(int units) = 0;

    /// The progress of the scan, 0 up to the maximum.
    virtual void SetProgress(double units) = 0;

    /// Processes pending window events. False if the window has been closed meanwhile: the scan
    /// then stops.
    virtual bool LetEventsRun() = 0;
};

/// The media that the user chose to search.
struct SearchMedia {
    bool PrinterPort = false;
    bool SMBus = false;
    bool USB = false;
};

/// Searches the chosen media for a chip. The result is in `USBDeviceName` and, for a found chip,
/// its address in `USBDeviceAddress`. Nothing can be found at the printer port or on the on-board
/// SMBus, which this program cannot access.
void RunSearch(const SearchMedia &media, ScanWindow &window);

/// Reads the Device ID register up to 200 times at the adapter's address 0x50 and then at 0x51, at
/// least 20 ms and 10 ms apart, until it holds the ID of a known variant. Sends nothing if the
/// adapter failed to start.
void SearchUSB(ScanWindow &window);

/// The found device as an entry of the results list, if there is one.
std::optional<std::string> FoundDeviceEntry();

/// What the Device ID register of that variant holds; none for any other name.
std::optional<int16_t> DeviceIdOf(std::string_view deviceName);

/// Sets the link state to the device of a results entry: `CommsMedium` and `DeviceName`, which
/// stays empty if the entry names no variant. `USBDeviceAddress` stays as the scan set it.
void TakeDevice(std::string_view entry);

} // namespace ztm
