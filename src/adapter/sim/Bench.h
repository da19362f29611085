#pragma once

#include <array>
#include <cstddef>

namespace ztm::sim {

/// The physical side of the board: the temperatures and fan speeds that a chip would measure,
/// and the two heaters. Everything is a function of the elapsed time and of when the heaters
/// were set, so two benches that are treated alike show the same values, however often they
/// are looked at.
///
/// Remotes, fans and heaters are numbered from 0; heater n warms remote n.
class Bench {
public:
    static constexpr size_t heaterCount = 2;
    static constexpr int maxHeaterPercent = 100;

    /// Lets the time pass until `seconds` (finite) after the start of the bench. A gap of any
    /// length is taken in one exact step; an earlier time changes nothing.
    void AdvanceTo(double seconds);

    /// `percent` is limited to 0 to 100.
    void SetHeaterPercent(size_t heater, int percent);
    int HeaterPercent(size_t heater) const { return heaters[heater].percent; }

    double LocalCelsius() const;
    double RemoteCelsius(size_t remote) const;
    double FanRpm(size_t fan) const;

private:
    struct Heater {
        int percent = 0;
        double riseCelsius = 0; ///< what it adds to its remote at present
    };

    double elapsedSeconds = 0;
    std::array<Heater, heaterCount> heaters;
};

} // namespace ztm::sim
