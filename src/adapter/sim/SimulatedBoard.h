#pragma once

#include "adapter/sim/Bench.h"
#include "adapter/sim/BoardControl.h"
#include "adapter/sim/Chip.h"

#include <cstdint>
#include <functional>

namespace ztm::sim {

/// Seconds of a clock that only moves forward.
double SteadySeconds();

/// An evaluation board with its USB adapter: everything behind the two entries of
/// link/USBFunctions.h. The board starts at room temperature with the heaters off and no
/// firmware in the adapter. Time passes on it when an entry is called, by the given clock; for
/// the same clock readings and calls it always answers the same. Not for use by several
/// threads at once.
class SimulatedBoard {
public:
    /// Monotonic seconds, finite, from any origin.
    using Clock = std::function<double()>;

    static constexpr int32_t defaultChipAddress = 0x50;

    /// `chipAddress` is the address on the adapter's bus at which the chip answers; the program
    /// looks at 0x50 and 0x51.
    explicit SimulatedBoard(Variant variant = Variant::ZTM7720,
                            int32_t chipAddress = defaultChipAddress, Clock clock = SteadySeconds);

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

    const BoardSettings &Settings() const { return settings; }

    /// Puts other settings into force, see there for what each does.
    void Arrange(const BoardSettings &wanted);

private:
    struct Command;
    static const Command commands[];

    void PassTime();
    void SwitchHeatersOff();
    void ReadRegister(int32_t value, int32_t index, uint8_t *reply);
    void WriteRegister(int32_t value, int32_t index, uint8_t *reply);
    void Handshake(int32_t value, int32_t index, uint8_t *reply);
    void SetHeaterDuty(int32_t value, int32_t index, uint8_t *reply);
    void ReadHeaterDuty(int32_t value, int32_t index, uint8_t *reply);

    Clock clock;
    double startSeconds;
    BoardSettings settings;
    bool firmwareLoaded = false;
    Bench bench;
    Chip chip;
};

} // namespace ztm::sim
