#include "adapter/sim/Encodings.h"

#include <algorithm>
#include <cmath>

namespace ztm::sim {

RegisterPair EncodeTemperature(double celsius) {
    constexpr double zeroOffsetCelsius = 64;
    constexpr double stepsPerCelsius = 32;
    constexpr double maxSteps = 0x1FFF;
    const double steps = std::nearbyint((celsius + zeroOffsetCelsius) * stepsPerCelsius);
    const auto reading = static_cast<unsigned>(std::clamp(steps, 0.0, maxSteps));
    return {static_cast<uint8_t>((reading & 0x1F) << 3), static_cast<uint8_t>(reading >> 5)};
}

RegisterPair EncodeTach(double rpm) {
    constexpr double countsTimesRpm = 4915200;
    constexpr double maxCount = 0xFFFF;
    const double exact = rpm > 0 ? countsTimesRpm / rpm : maxCount;
    const auto count = static_cast<unsigned>(std::clamp(std::nearbyint(exact), 1.0, maxCount));
    return {static_cast<uint8_t>(count & 0xFF), static_cast<uint8_t>(count >> 8)};
}

} // namespace ztm::sim
