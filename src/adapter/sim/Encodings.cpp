#include "adapter/sim/Encodings.h"

#include <algorithm>
#include <cmath>

namespace ztm::sim {
namespace {

constexpr double zeroOffsetCelsius = 64;
constexpr double countsTimesRpm = 4915200;
constexpr int maxCount = 0xFFFF;

} // namespace

int TemperatureSteps(double celsius) {
    const double steps = std::nearbyint((celsius + zeroOffsetCelsius) * stepsPerCelsius);
    return static_cast<int>(std::clamp(steps, 0.0, double{maxTemperatureSteps}));
}

double CelsiusOfSteps(int steps) {
    return static_cast<double>(steps) / stepsPerCelsius - zeroOffsetCelsius;
}

RegisterPair EncodeTemperature(int steps) {
    return {static_cast<uint8_t>((steps & 0x1F) << 3), static_cast<uint8_t>(steps >> 5)};
}

double DecodeTemperature(RegisterPair pair) {
    return CelsiusOfSteps(pair.high << 5 | pair.low >> 3);
}

RegisterPair EncodeTach(double rpm) {
    const double exact = rpm > 0 ? countsTimesRpm / rpm : maxCount;
    const auto count =
        static_cast<unsigned>(std::clamp(std::nearbyint(exact), 1.0, double{maxCount}));
    return {static_cast<uint8_t>(count & 0xFF), static_cast<uint8_t>(count >> 8)};
}

double DecodeTach(RegisterPair pair) {
    const int count = pair.high * 256 + pair.low;
    return count == 0 || count == maxCount ? 0 : countsTimesRpm / count;
}

} // namespace ztm::sim
