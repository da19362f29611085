#pragma once

#include "adapter/sim/Physics.h"
#include "adapter/sim/RegisterFile.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ztm::sim {

/// A limit and whether it is now exceeded.
class LimitWatch {
public:
    /// Takes a reading that is `excess` beyond the limit, or inside it if negative. The limit
    /// counts as exceeded after `queue` readings in a row beyond it (0 counts as 1), until a
    /// reading is inside by `hysteresis` or more. All values have the same unit.
    void Take(int excess, int hysteresis, int queue);

    bool IsExceeded() const { return isExceeded; }

private:
    bool isExceeded = false;
    int inARow = 0;
};

/// The chip's measuring: conversions of all temperatures, their limits, the THERM limits and the
/// THERM timer. Works on the chip's registers and reports which status bits have a cause now.
class TemperatureMonitor {
public:
    static constexpr size_t channelCount = 3; ///< local, remote 1, remote 2

    /// Advances one tick. The first one converts.
    void Tick(RegisterFile &registers, const Physics &bench);

    /// The bits of Status1 and Status2 whose causes are present.
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
    void Convert(RegisterFile &registers, const Physics &bench);
    int Sample(size_t channel, const RegisterFile &registers, const Physics &bench);
    void CompareLimits(size_t channel, int steps, const RegisterFile &registers);
    bool IsThermAsserted(const RegisterFile &registers) const;
    void RunThermTimer(RegisterFile &registers, bool isAsserted);
    void CollectCauses(const RegisterFile &registers, bool isThermAsserted);

    std::array<Channel, channelCount> channels;
    int ticksSinceConversion = 1 << fastestRateCode; ///< due immediately, whatever the rate
    int windowTicks = 0;
    int assertedTicks = 0;
    uint8_t status1 = 0;
    uint8_t status2 = 0;
};

} // namespace ztm::sim
