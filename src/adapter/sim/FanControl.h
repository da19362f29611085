#pragma once

#include "adapter/sim/Physics.h"
#include "adapter/sim/RegisterFile.h"
#include "adapter/sim/TemperatureMonitor.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ztm::sim {

/// The chip's control of one fan: measures its speed, decides how fast it must turn and drives it.
class FanControl {
public:
    /// `fan` counts from 0.
    explicit FanControl(size_t fan) : fan(fan) {}

    /// Advances one tick: reads tach and settings, updates the tach registers and the drive.
    void Tick(RegisterFile &registers, const Physics &bench, const TemperatureMonitor &monitor);

    FanDrive Drive() const { return drive; }

    /// The bits of Status3 whose causes are present.
    uint8_t Status3Causes() const;

private:
    struct Row;
    static const Row rows[];

    /// Standing: the fan is meant to stand still.
    enum class Phase : uint8_t { Standing, SpinningUp, Turning };

    void MeasureTach(RegisterFile &registers, const Physics &bench);
    int Poles(const RegisterFile &registers) const;
    FanDrive Wanted(const RegisterFile &registers, const TemperatureMonitor &monitor);
    FanDrive WantedByTable(const RegisterFile &registers, size_t channel);
    void ChangePhase(bool isToTurn);
    void MoveDemand(const RegisterFile &registers, double wantedRpm);
    void WatchSpeed();

    size_t fan;
    Phase phase = Phase::Standing;
    double tachRpm = 0;              ///< as the chip reads it
    std::optional<double> demandRpm; ///< moves towards the wanted speed, if there is one
    std::optional<double> tableCelsius;
    FanDrive drive;
    int ticksToTach = 0;
    int ticksSinceUpdate = 0;
    int spinUpTicks = 0;
    int quietTicks = 0;
    int slowTicks = 0;
    bool isStalled = false;
};

} // namespace ztm::sim
