#pragma once

#include "link/USBComms.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztm {

/// What a register holds, or is to hold.
struct RegisterSetting {
    int32_t Address;
    int32_t Value; ///< 0 to 255

    bool operator==(const RegisterSetting &) const = default;
};

/// The value of each register by its address; none where it is not known.
using RegisterValues = std::array<std::optional<uint8_t>, LastRegister + 1>;

/// The default of every register of the current chip.
RegisterValues DefaultValues();

/// The given settings; of several of one register the last one.
RegisterValues ValuesOf(const std::vector<RegisterSetting> &settings);

/// Reads each register of the current chip once, in the order of the map, in as many steps as it
/// takes. Those that reading changes are left out. The low and the high byte of a pair are read in
/// one step, as for the measurements.
class MapReader {
public:
    /// Reads on until about that time has passed, at least one register or pair. Whether there are
    /// more.
    bool Step(double seconds);

    /// How many registers of the map have been done, and how many there are.
    size_t Done() const { return done; }
    static size_t Total();

    /// What was read so far.
    const RegisterValues &Values() const { return values; }

private:
    size_t done = 0;
    RegisterValues values;
};

} // namespace ztm
