#pragma once

#include <cstdint>
#include <optional>

namespace ztm {

/// What passed by on its way to and from the chip: the last value of a register, read or written,
/// and when (RunningSeconds).
struct SeenValue {
    int16_t Value;
    double Time;
};

/// The last value of a register that passed ReadRegister or WriteRegister in this session; none if
/// there was none, or for an address outside 0 to 255. Asks the chip for nothing.
std::optional<SeenValue> LastSeen(int32_t address);

/// Forgets all of them, for a new session.
void ResetLastSeen();

} // namespace ztm
