#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ztm {

// What went over the bus: the last transfers to and from the adapter, in order.

enum class TransferKind : uint8_t {
    ReadRegister,
    WriteRegister,
    SetHeaters,
    ReadHeaters,
    Handshake
};

/// One request to the adapter that has been answered.
struct Transfer {
    double Time;                 ///< RunningSeconds at the answer
    const char *Requester;       ///< who asked for it, see Requester
    std::array<uint8_t, 2> Data; ///< the register's value, or the duties of the heaters
    int16_t Before;              ///< the register's value seen before, or NotSeen
    uint8_t Address;             ///< of the register
    TransferKind Kind;
    bool IsDone; ///< false if it failed; nothing was read or written then
};

/// `Before` of a register that had not been seen in the session.
inline constexpr int16_t NotSeen = -1;

/// As many transfers are kept, the newest ones.
inline constexpr size_t TransfersKept = 100'000;

/// Number of transfers since the last ResetTraffic().
uint64_t TransferCount();

/// The number of the oldest one that is kept; TransferCount() if there is none.
uint64_t FirstTransfer();

/// One that is kept: FirstTransfer() <= `number` < TransferCount().
const Transfer &TransferAt(uint64_t number);

/// Adds a transfer that has just been answered. A register that was read or written counts as seen
/// with that value from now on, see LastSeen.
void RecordTransfer(TransferKind kind, uint8_t address, std::array<uint8_t, 2> data, bool isDone);

/// Forgets all transfers and all values seen, as at the start of a session.
void ResetTraffic();

/// Who asks for the transfers while it lives. The one made last counts; what follows a transfer of
/// its own accord, like the hook after a write, counts for who asked for that.
class Requester {
public:
    /// The name must outlive every transfer: a literal.
    explicit Requester(const char *name);
    ~Requester();
    Requester(const Requester &) = delete;
    Requester &operator=(const Requester &) = delete;

private:
    const char *before;
};

} // namespace ztm
