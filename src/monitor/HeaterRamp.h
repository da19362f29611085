#pragma once

#include <optional>
#include <string>

namespace ztm {

/// The software ramp of one heater of the board, set up in its record of `Heaters`: between
/// `LowPct` and `HighPct` by `IncrementPct` every `IntervalMs`, reversing at the ends.
class HeaterRamp {
public:
    /// Heater 0 or 1.
    explicit HeaterRamp(int heater) : heater(heater) {}

    /// Steps the ramp if it is on and a step is due at `now` (RunningSeconds). Returns the duty
    /// in percent, 0 to 100, that was sent.
    std::optional<int> Step(double now);

private:
    int Next();
    std::string Name() const;

    int heater;
    double lastStepTime = 0; // RunningSeconds
    bool started = false;
};

} // namespace ztm
