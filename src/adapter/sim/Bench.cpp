#include "adapter/sim/Bench.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace ztm::sim {
namespace {

constexpr double fullHeaterRiseCelsius = 45;
constexpr double heaterLagSeconds = 20;
constexpr double noiseStepSeconds = 0.25;

/// A quantity that wanders as a sine about its mean, with a little noise on top. `swing` and
/// `noise` are the largest deviations, in the unit of `mean`; the seed keeps the noise of two
/// quantities apart.
struct LiveSignal {
    double mean;
    double swing;
    double periodSeconds;
    double noise;
    uint64_t noiseSeed;
};

constexpr LiveSignal localCelsius = {28, 0.4, 310, 0.06, 1};
constexpr std::array<LiveSignal, 2> remoteCelsius = {
    {{35, 0.8, 190, 0.06, 2}, {35.5, 0.7, 230, 0.06, 3}}};
constexpr std::array<LiveSignal, 2> fanRpm = {{{2400, 60, 47, 12, 4}, {2750, 60, 61, 12, 5}}};

/// Scatters the numbers of neighbouring steps over -1 to 1 (the finaliser of a 64-bit mixing
/// generator).
double Noise(uint64_t step, uint64_t seed) {
    uint64_t bits = (step + 1) * 0x9E3779B97F4A7C15U + seed * 0xD1B54A32D192ED03U;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    bits ^= bits >> 31;
    return static_cast<double>(bits >> 11) / static_cast<double>(uint64_t{1} << 52) - 1;
}

double ValueAt(const LiveSignal &signal, double seconds) {
    constexpr double stepsUntilNoiseRepeats = 1e9;
    const double phase = 2 * std::numbers::pi * std::fmod(seconds / signal.periodSeconds, 1);
    const auto step =
        static_cast<uint64_t>(std::fmod(seconds / noiseStepSeconds, stepsUntilNoiseRepeats));
    return signal.mean + signal.swing * std::sin(phase) +
           signal.noise * Noise(step, signal.noiseSeed);
}

} // namespace

void Bench::AdvanceTo(double seconds) {
    if (!(seconds > elapsedSeconds)) {
        return;
    }
    const double share = -std::expm1((elapsedSeconds - seconds) / heaterLagSeconds);
    for (Heater &heater : heaters) {
        const double target = fullHeaterRiseCelsius * heater.percent / maxHeaterPercent;
        heater.riseCelsius += (target - heater.riseCelsius) * share;
    }
    elapsedSeconds = seconds;
}

void Bench::SetHeaterPercent(size_t heater, int percent) {
    heaters[heater].percent = std::clamp(percent, 0, maxHeaterPercent);
}

double Bench::LocalCelsius() const {
    return ValueAt(localCelsius, elapsedSeconds);
}

double Bench::RemoteCelsius(size_t remote) const {
    return ValueAt(remoteCelsius[remote], elapsedSeconds) + heaters[remote].riseCelsius;
}

double Bench::FanRpm(size_t fan) const {
    return ValueAt(fanRpm[fan], elapsedSeconds);
}

} // namespace ztm::sim
