#pragma once

#include <cstdint>

namespace ztm::sim {

/// The two bytes of a reading as the chip holds them, low address first.
struct RegisterPair {
    uint8_t low;
    uint8_t high;
};

/// A measured temperature: whole degrees + 64 in the high byte, 1/32 degrees in bits 7 to 3 of
/// the low byte. Rounded to the nearest step and limited to -64 to 191.97 °C.
RegisterPair EncodeTemperature(double celsius);

/// A fan speed as the tach count 4915200 / RPM, rounded to the nearest and limited to 1 to
/// 0xFFFF; a standing fan (0 RPM) gives 0xFFFF.
RegisterPair EncodeTach(double rpm);

} // namespace ztm::sim
