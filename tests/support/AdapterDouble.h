#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace ztm::test {

/// One call of the adapter library, with the time of day at which it came.
struct Call {
    int16_t request = 0;
    int32_t value = 0;
    int32_t index = 0;
    int16_t direction = 0;
    int16_t length = 0;

    bool operator==(const Call &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Call &call);

/// The calls that register accesses lead to, at the given adapter address.
Call Read(int32_t address, int32_t device = 0x50);
Call Write(int32_t address, int32_t data, int32_t device = 0x50);
inline constexpr Call Handshake{0xDF, 0, 0, 0, 0};

/// The adapter library that records every call and answers from a register file.
struct AdapterDouble {
    std::vector<Call> calls;
    std::vector<double> times;              ///< of `calls`, in seconds since midnight
    std::vector<std::string> firmwarePaths; ///< of every LoadFirmWare
    int16_t firmwareResult = 0;
    std::array<uint8_t, 256> registers{};
    int32_t answersAt = 0x50;             ///< reads at another address give 0
    std::array<uint8_t, 3> heaterReply{}; ///< the duties that were set last, until changed here

    /// Asked before each request when set; another result than 0 fails it.
    std::function<int16_t(const Call &)> script;

    /// The registers written so far.
    std::vector<Call> Writes() const;
};

/// The one that is called. ResetAdapter puts a fresh one there.
AdapterDouble &Adapter();
AdapterDouble &ResetAdapter();

/// Makes these the values that were measured last, in every channel.
void SetMeasurements(const std::array<float, 6> &values);

/// Puts all of the core's state back to the start of a run, with a fresh adapter.
void ResetCore();

} // namespace ztm::test
