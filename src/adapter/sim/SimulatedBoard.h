#pragma once

#include "adapter/sim/Bench.h"
#include "adapter/sim/BoardControl.h"
#include "adapter/sim/Chip.h"
#include "common/Clock.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace ztm::sim {

/// An evaluation board with its USB adapter: everything behind the two entries of
/// link/USBFunctions.h. The board starts in the state into which it settles with the heaters off,
/// and with no firmware in the adapter. Time passes on it when an entry is called, by the given
/// clock; for the same clock readings and calls it always answers the same. Not for use by
/// several threads at once.
class SimulatedBoard {
public:
    /// Monotonic seconds, finite, from any origin.
    using Clock = std::function<double()>;
    /// Lets that many seconds of the clock pass.
    using Sleep = std::function<void(double seconds)>;

    static constexpr int32_t defaultChipAddress = 0x50;

    /// `chipAddress` is the address on the adapter's bus at which the chip answers; the program
    /// looks at 0x50 and 0x51.
    explicit SimulatedBoard(Variant variant = Variant::ZTM7720,
                            int32_t chipAddress = defaultChipAddress, Clock clock = EvenSeconds,
                            Sleep sleep = SleepSeconds);

    /// Starts the adapter with the firmware in the Intel HEX file at `path`, and so switches
    /// the heaters off. 0 when that worked; negative, with the reason on standard error, when
    /// `path` is null or no readable, valid file: the adapter then stays as it was.
    int16_t LoadFirmWare(const char *path);

    /// Carries out one request and returns 0. Anything but 0, with nothing changed and nothing
    /// written to `buffer`, for an adapter without firmware, a request code that it does not
    /// know, a direction or length that is not the request's own, or a null `buffer` where
    /// reply bytes are due. Allocates no memory.
    int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                            int16_t length, uint8_t *buffer);

    BoardSettings Settings() const;

    /// How things stand at this moment.
    BoardState Look();

    /// Puts other settings into force, see there for what each does.
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
    BoardSettings settings; ///< but for those of the bench, which has its own
    bool isFirmwareLoaded = false;
    Bench bench;
    std::optional<Chip> chip; ///< none while it has no power
};

} // namespace ztm::sim
