#pragma once

#include "adapter/sim/Bench.h"
#include "adapter/sim/RegisterFile.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ztm::sim {

/// A limit and whether it is exceeded at the moment.
class LimitWatch {
public:
    /// Takes a reading that lies `excess` beyond the limit, or inside it when negative. The limit
    /// is exceeded from the last of `queue` readings in a row beyond it (0 counts as 1) until one
    /// that is inside by `hysteresis` or more; all in the same unit.
    void Take(int excess, int hysteresis, int queue);

    bool IsExceeded() const { return isExceeded; }

private:
    bool isExceeded = false;
    int inARow = 0;
};

/// The measuring side of the chip: conversions of all temperatures, their limits, the THERM
/// limits and the THERM timer. Works on the chip's registers and says which status bits have a
/// cause at the moment.
class TemperatureMonitor {
public:
    static constexpr size_t channelCount = 3; ///< local, remote 1, remote 2

    /// Lets one tick pass. The first one converts at once.
    void Tick(RegisterFile &registers, const Bench &bench);

    /// The bits of Status1 and Status2 whose causes last.
    uint8_t Status1Causes() const { return status1; }
    uint8_t Status2Causes() const { return status2; }

    bool HasDiodeFault(size_t channel) const { return channels[channel].hasDiodeFault; }
    bool IsAnyOverThermLimit() const;

    static constexpr uint8_t thermAssertedBit = 0x01; ///< TS of Status2

private:
    static constexpr int fastestRateCode = 10;

    struct Row;
    static const std::array<Row, channelCount> rows;

    struct Channel {
        double celsius = 0; ///< averaged
        bool hasSample = false;
        bool hasDiodeFault = false;
        LimitWatch high, low, therm;
    };

    static int ConversionTicks(uint8_t rate);
    void Convert(RegisterFile &registers, const Bench &bench);
    int Sample(size_t channel, const RegisterFile &registers, const Bench &bench);
    void CompareLimits(size_t channel, int steps, const RegisterFile &registers);
    bool IsThermAsserted(const RegisterFile &registers) const;
    void RunThermTimer(RegisterFile &registers, bool isAsserted);
    void CollectCauses(const RegisterFile &registers, bool isThermAsserted);

    std::array<Channel, channelCount> channels;
    int ticksSinceConversion = 1 << fastestRateCode; ///< due at once, whatever the rate
    int windowTicks = 0;
    int assertedTicks = 0;
    uint8_t status1 = 0;
    uint8_t status2 = 0;
};

} // namespace ztm::sim
