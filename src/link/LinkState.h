#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// The two variants of the chip family, as `DeviceName` holds them.
inline constexpr std::string_view ZTM7710 = "ZTM7710";
inline constexpr std::string_view ZTM7720 = "ZTM7720";

/// The family's name, from which every text that mentions the family is built.
inline constexpr std::string_view FamilyName = "ZTM7710/20";

/// Values of `CommsMedium`.
inline constexpr int16_t MediumNone = -1;
inline constexpr int16_t MediumSMBus = 0;
inline constexpr int16_t MediumUSB = 2;

/// The link state: how the chip of the session is reached. One instance for the whole program,
/// used on the GUI thread alone.

/// The medium that carries register accesses: MediumNone, MediumSMBus or MediumUSB.
extern int16_t CommsMedium;

/// Value field of every register request on the USB medium: 0x50 or 0x51 after a search.
extern int32_t USBDeviceAddress;

/// The chip's address on the on-board SMBus medium.
extern uint8_t DeviceAddress;

/// The chip variant of the session, ZTM7710 or ZTM7720; empty before there is one.
extern std::string DeviceName;

/// The adapter's firmware download failed: no request is sent for the rest of the run.
extern bool AdapterFailed;

/// Handed to the adapter library by the register read and the heater requests, which use at
/// most its first three bytes. Its contents stay from one request to the next.
extern std::array<uint8_t, 16> TransferBuffer;

/// Whether every access on the on-board SMBus medium is followed by a wait, and how many
/// milliseconds of it.
extern bool SmbusDelayEnabled;
extern float SmbusDelayMs;
inline constexpr float DefaultSmbusDelayMs = 20;

/// The eight lookup points form one table for both fans. Kept by the after-write hook from
/// register 0x02; always true on the one-fan variant.
extern bool EightPointMode;

/// Whether the chip of the session is the variant with one fan and one remote channel.
bool HasOneFan();

/// Puts the start-of-run values back.
void ResetLinkState();

} // namespace ztm
