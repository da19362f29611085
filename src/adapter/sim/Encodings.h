#pragma once

#include <cstdint>

namespace ztm::sim {

/// The two bytes of a reading as the chip holds them, low address first.
struct RegisterPair {
    uint8_t low;
    uint8_t high;
};

/// The chip counts temperatures in steps of 1/32 °C from -64 °C: 0 to 0x1FFF.
constexpr int stepsPerCelsius = 32;
constexpr int maxTemperatureSteps = 0x1FFF;

/// Rounded to the nearest step and limited to -64 to 191.97 °C.
int TemperatureSteps(double celsius);
double CelsiusOfSteps(int steps);

/// A limit, a THERM limit or a lookup temperature: whole degrees + 64.
constexpr int StepsOfLimit(uint8_t limit) {
    return limit * stepsPerCelsius;
}

/// A measured temperature: whole degrees + 64 in the high byte, 1/32 degrees in bits 7 to 3 of
/// the low byte.
RegisterPair EncodeTemperature(int steps);
double DecodeTemperature(RegisterPair pair);

/// A fan speed as the tach count 4915200 / RPM, rounded to the nearest and limited to 1 to 0xFFFF;
/// a stopped fan (0 RPM) gives 0xFFFF.
RegisterPair EncodeTach(double rpm);

/// The speed of a tach count pair; 0 RPM for the counts 0 and 0xFFFF.
double DecodeTach(RegisterPair pair);

} // namespace ztm::sim
