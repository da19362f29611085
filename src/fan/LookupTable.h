#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace ztm {

/// The temperature-to-speed lookup table of the chip's automatic fan control: eight points. In
/// the chip a temperature is one byte, degrees + 64, and a speed a 16-bit tach count.

inline constexpr int LookupPoints = 8;
inline constexpr int PointsPerFan = 4; ///< in the layout with a table for each fan

struct LookupPoint {
    int32_t Temperature = 0; ///< °C
    int16_t RPM = 0;

    bool operator==(const LookupPoint &) const = default;
};
using LookupTable = std::array<LookupPoint, LookupPoints>;

/// One table for both fans, and one of four points for each fan. They live for the session.
extern LookupTable EightPointTable;
extern LookupTable FourPointTable;

/// The table that `EightPointMode` selects.
LookupTable &TableInUse();

/// Takes the points that the chip holds into the table in use. The other one takes them as well,
/// because the registers are the same, unless it has been loaded itself in this session.
void LoadTableInUse(const LookupTable &points);

/// Empties both tables; neither counts as loaded.
void ResetLookupTables();

/// What the largest count reads as. 0 RPM is written as that count, but this speed has none.
inline constexpr int32_t StoppedLookupRpm = 75;

/// The speeds in RPM that a count can hold, besides 0.
inline constexpr int32_t SlowestLookupRpm = 76;
inline constexpr int32_t FastestLookupRpm = 4915200;

/// Whether a count can hold that speed.
constexpr bool IsLookupRpm(double rpm) {
    return rpm == 0 || (rpm >= SlowestLookupRpm && rpm <= FastestLookupRpm);
}

/// The largest speed in the tables, which hold 16 bits.
inline constexpr int32_t LargestPointRpm = std::numeric_limits<int16_t>::max();

/// A speed as stored in the tables: limited to 16 bits, never wrapped.
int16_t PointRpm(double rpm);

/// The register of a point's temperature, and that of the high byte of its speed.
constexpr int32_t TemperatureRegister(int point) {
    return 0x22 + point;
}
constexpr int32_t SpeedRegister(int point) {
    return 0x2B + 2 * point;
}

/// The register of the high byte of the speed that a fan (0 or 1) is to have under manual control:
/// that of the first or the second point.
constexpr int32_t ManualSpeedRegister(int fan) {
    return SpeedRegister(fan);
}

/// Reads a temperature in °C from the chip, or writes the nearest one that can be encoded.
int32_t ReadPointTemperature(int point);
void WritePointTemperature(int point, double celsius);

/// Writes a speed, limited to 0 to FastestLookupRpm. 1 to 75 RPM have no count: nothing is written.
void WritePointRpm(int point, double rpm);

/// A point in °C and RPM as it is edited, where any number can be entered.
struct SpeedPoint {
    double Celsius = 0;
    double Rpm = 0;

    bool operator==(const SpeedPoint &) const = default;
};
using SpeedPoints = std::array<SpeedPoint, LookupPoints>;

/// Writes all temperatures and then all speeds.
void WritePoints(const SpeedPoints &points);

/// Reads all temperatures and then all speeds.
SpeedPoints ReadPoints();

} // namespace ztm
