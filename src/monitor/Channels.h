#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ztm {

/// What the chip measures: six channels with an index from 0 to 5, shared by options, indicators,
/// chart traces and log columns.
inline constexpr int ChannelCount = 6;

enum class Quantity { Temperature, FanSpeed, ThermPercent };

/// The unit of a value in the measurement log, UTF-8.
std::string_view UnitOf(Quantity quantity);

/// No register.
inline constexpr int32_t NoRegister = -1;

struct Channel {
    std::string_view Name;
    std::string_view NameZTM7710; ///< empty if the one-fan variant lacks the channel
    Quantity Measures;
    int32_t LowRegister;  ///< fraction of a temperature, low byte of a tach count
    int32_t HighRegister; ///< whole degrees, high byte of a tach count, on-time byte
    int32_t LowLimit;     ///< register of the low limit, or NoRegister
    int32_t HighLimit;    ///< register of the high limit, or NoRegister
};

inline constexpr std::array<Channel, ChannelCount> Channels{{
    {"Local", "Local", Quantity::Temperature, 0x40, 0x41, 0x0C, 0x0B},
    {"Remote1", "Remote", Quantity::Temperature, 0x42, 0x43, 0x0F, 0x0E},
    {"Remote2", "", Quantity::Temperature, 0x44, 0x45, 0x12, 0x11},
    {"Fan1", "Fan", Quantity::FanSpeed, 0x4A, 0x4B, NoRegister, NoRegister},
    {"Fan2", "", Quantity::FanSpeed, 0x4C, 0x4D, NoRegister, NoRegister},
    {"THERM%", "THERM%", Quantity::ThermPercent, NoRegister, 0x4E, NoRegister, 0x19},
}};

/// Whether the current variant measures that channel.
bool HasChannel(int channel);

/// The name of a channel on the current variant.
std::string_view ChannelName(int channel);

/// The latest value of each channel: °C rounded to two decimals, whole RPM, or percent. Set only by
/// ReadMeasurement; a slot keeps its value until its channel is read again.
extern std::array<float, ChannelCount> Measurements;

/// Whether a channel has been read since the start; before that its slot is 0.
bool IsMeasured(int channel);

/// When a channel was read last (RunningSeconds); NaN if it has not been read.
double MeasuredTime(int channel);

/// The least and the greatest value of a channel since the start or the last ResetExtremes; least
/// is above greatest if it has not been measured since.
struct Extremes {
    float least;
    float greatest;
};
Extremes ExtremesOf(int channel);
void ResetExtremes();

/// Resets the values to 0, as not yet measured, and forgets the alerts.
void ResetMeasurements();

/// Reads one channel from the chip into its slot of `Measurements`: the low register first, then
/// the high one. Does nothing for a channel that does not exist or that the variant lacks.
void ReadMeasurement(int channel);

/// The reading of a 13-bit temperature in °C, −64 to +191.97: `high` holds whole degrees offset
/// by 64, `low` fractions of 1/32 °C in its bits 7 to 3.
double TemperatureReading(int high, int low);

/// The range of the temperature byte in whole degrees.
inline constexpr int32_t lowestCelsius = -64;
inline constexpr int32_t highestCelsius = 191;

/// The temperature byte of limits and lookup points: whole degrees + 64, limited to 0 to 255.
int32_t TemperatureByte(double celsius);
int32_t CelsiusOfByte(int32_t value);

/// The percentage byte: 255 is 100 %. More than 100 % is written as 255, less than 0 as 0.
int32_t PercentByte(double percent);
double PercentOfByte(int32_t value);

/// Reads the alarm state of every channel from the status registers. While the chip signals no
/// alert (Status3 bit 0), no channel is in alarm and the other two registers are not read.
std::array<bool, ChannelCount> ReadAlerts();

/// What ReadAlerts has read last, and when (RunningSeconds). Set only by ReadAlerts; nothing before
/// its first call.
struct AlertReading {
    std::array<bool, ChannelCount> Alarms;
    double Time;
};
extern std::optional<AlertReading> LastAlerts;

} // namespace ztm
