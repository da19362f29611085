#pragma once

#include <cstdint>
#include <optional>

namespace ztm {

/// A register's value when it last passed by, read or written.
struct SeenValue {
    int16_t Value; ///< 0 to 255
    double Time;   ///< RunningSeconds
};

/// The value that a register was last read as or written with in this session; none if neither
/// happened, not since the chip was reset, or the address is no register's. Costs no request.
std::optional<SeenValue> LastSeen(int32_t address);

/// Forgets all values seen, as at the start of a session.
void ResetLastSeen();

} // namespace ztm
