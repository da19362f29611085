#pragma once

#include "adapter/sim/BoardControl.h"
#include "adapter/sim/Chip.h"
#include "adapter/sim/Physics.h"
#include "common/Clock.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace ztm::sim {

/// An evaluation board with its USB adapter: everything behind the two functions of
/// link/USBFunctions.h. It starts in its settled state with the heaters off, and without firmware
/// in the adapter. Its time advances by the given clock, and only during calls; the same clock
/// readings and calls always give the same answers. Not thread-safe.
class SimulatedBoard {
public:
    /// Monotonic seconds, finite, from any origin.
    using Clock = std::function<double()>;
    /// Waits that many seconds of the clock.
    using Sleep = std::function<void(double seconds)>;

    static constexpr int32_t defaultChipAddress = 0x50;

    /// `chipAddress` is the chip's address on the adapter's bus; the program searches 0x50 and
    /// 0x51.
    explicit SimulatedBoard(Variant variant = Variant::ZTM7720,
                            int32_t chipAddress = defaultChipAddress, Clock clock = EvenSeconds,
                            Sleep sleep = SleepSeconds);

    /// Starts the adapter with the firmware in the Intel HEX file at `path`; this switches the
    /// heaters off. 0 on success; otherwise negative, with the adapter unchanged: silently for a
    /// null `path` or an unplugged board, else with the reason on standard error (refused, or no
    /// readable, valid file).
    int16_t LoadFirmWare(const char *path);

    /// Carries out one request and returns 0. Anything but 0, with nothing changed and nothing
    /// written to `buffer`, means: no firmware in the adapter, an unknown request code, a wrong
    /// direction or length for the request, or a null `buffer` for a reply. Allocates no memory.
    int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                            int16_t length, uint8_t *buffer);

    BoardSettings Settings() const;

    /// The current state of the board.
    BoardState Look();

    /// Applies new settings; see BoardSettings for their effects.
    void Arrange(const BoardSettings &wanted);

private:
    struct Command;
    static const Command commands[];

    void PassTime();
    void LiveOneTick();
    void SwitchHeatersOff();
    void SwitchChipOn();
    void SwitchChipOff();
    void ReadRegister(int32_t value, int32_t index, uint8_t *reply);
    void WriteRegister(int32_t value, int32_t index, uint8_t *reply);
    void Handshake(int32_t value, int32_t index, uint8_t *reply);
    void SetHeaterDuty(int32_t value, int32_t index, uint8_t *reply);
    void ReadHeaterDuty(int32_t value, int32_t index, uint8_t *reply);

    Clock clock;
    Sleep sleep;
    double startSeconds;
    int64_t ticks = 0;      ///< passed since the start
    BoardSettings settings; ///< except those of `bench`, which has its own
    bool isFirmwareLoaded = false;
    Physics bench;
    std::optional<Chip> chip; ///< none while it is off
};

} // namespace ztm::sim
