#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// The two variants of the chip family, as `DeviceName` holds them.
inline constexpr std::string_view ZTM7710 = "ZTM7710";
inline constexpr std::string_view ZTM7720 = "ZTM7720";

/// The family name, used in every text that mentions the family.
inline constexpr std::string_view FamilyName = "ZTM7710/20";

/// Values of `CommsMedium`.
inline constexpr int16_t MediumNone = -1;
inline constexpr int16_t MediumSMBus = 0;
inline constexpr int16_t MediumUSB = 2;

/// The link state: how the current chip is reached. One instance for the whole program, used only
/// on the GUI thread.

/// The medium that carries register accesses: MediumNone, MediumSMBus or MediumUSB.
extern int16_t CommsMedium;

/// Sent in the value field of every register request over USB: 0x50 or 0x51 after a search.
extern int32_t USBDeviceAddress;

/// The chip's address on the on-board SMBus medium.
extern uint8_t DeviceAddress;

/// The current chip variant, ZTM7710 or ZTM7720; empty until one is chosen.
extern std::string DeviceName;

/// The adapter's firmware download failed: no request is sent for the rest of the run.
extern bool AdapterFailed;

/// Buffer that register reads and heater requests pass to the adapter library; they use at most its
/// first three bytes. It keeps its contents between requests.
extern std::array<uint8_t, 16> TransferBuffer;

/// Whether to wait after every access on the on-board SMBus medium, and for how many milliseconds.
extern bool SmbusDelayEnabled;
extern float SmbusDelayMs;
inline constexpr float DefaultSmbusDelayMs = 20;

/// Whether the eight lookup points form one table for both fans. AfterRegisterWrite updates it from
/// register 0x02; always true on the one-fan variant.
extern bool EightPointMode;

/// Whether the current chip is the variant with one fan and one remote channel.
bool HasOneFan();

/// Resets the link state to its start-up values.
void ResetLinkState();

} // namespace ztm
