#pragma once

#include <cstdint>

namespace ztm::sim {

/// A pseudo-random number from -1 to 1 that depends only on its arguments: the same step, source
/// and seed always give the same number, neighbouring ones unrelated numbers (the finaliser of a
/// 64-bit mixing generator).
inline double Noise(uint64_t step, uint64_t source, uint64_t seed) {
    uint64_t bits = (step + 1) * 0x9E3779B97F4A7C15U + source * 0xD1B54A32D192ED03U + seed;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    bits ^= bits >> 31;
    return static_cast<double>(bits >> 11) / static_cast<double>(uint64_t{1} << 52) - 1;
}

} // namespace ztm::sim
