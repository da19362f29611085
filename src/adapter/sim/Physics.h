#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ztm::sim {

enum class DiodeFault : uint8_t { None, Open, Shorted };

/// A dragging fan reaches half its speed; a stalled one stands still.
enum class FanFault : uint8_t { None, Drags, Stalled };

/// What the user can change at the bench. Remotes, fans and heaters are numbered from 0; heater n
/// warms remote n.
struct BenchSettings {
    double ambientCelsius = 24;
    std::array<DiodeFault, 2> diodes{};
    std::array<FanFault, 2> fans{};
    bool isNoisy = true;
    uint64_t noiseSeed = 1;

    bool operator==(const BenchSettings &) const = default;
};

/// The drive of a fan: to turn at `rpm`, or with that share of full drive, 0 to 1, whichever is
/// more. The fan's top speed limits both.
struct FanDrive {
    double rpm = 0;
    double share = 0;

    bool operator==(const FanDrive &) const = default;
};

/// The chip's drive for a fan before any speed is set.
constexpr FanDrive undirectedDrive = {.rpm = 0, .share = 0.3};

/// The physics of the board: air, board, two remote diodes, two heaters and two fans. Time advances
/// in ticks. Everything follows from the ticks, the settings, the heaters and the drives, so two
/// benches treated alike show the same values.
class Physics {
public:
    static constexpr size_t remoteCount = 2;
    static constexpr size_t fanCount = 2;
    static constexpr size_t heaterCount = 2;
    static constexpr int maxHeaterPercent = 100;
    static constexpr int ticksPerSecond = 40;
    static constexpr double tickSeconds = 1.0 / ticksPerSecond;

    /// With the first `fansOnBoard` fans. Starts settled, with the heaters off and the fans at
    /// `undirectedDrive`.
    explicit Physics(size_t fansOnBoard = fanCount, const BenchSettings &settings = {});

    /// Advances one tick.
    void Tick();

    /// Skips ticks: only noise and drafts, which depend on time alone, move on.
    void Skip(uint64_t unlivedTicks) { ticks += unlivedTicks; }

    BenchSettings settings;

    /// `percent` is limited to 0 to 100.
    void SetHeaterPercent(size_t heater, int percent);
    int HeaterPercent(size_t heater) const { return heaterPercent[heater]; }
    double HeaterWatts(size_t heater) const;

    void DriveFan(size_t fan, FanDrive drive) { drives[fan] = drive; }

    // The true values, and those that a sensor reads in this tick.
    double BoardCelsius() const { return boardCelsius; }
    double RemoteCelsius(size_t remote) const { return remoteCelsius[remote]; }
    double FanRpm(size_t fan) const { return fanRpm[fan]; }
    double SensedBoardCelsius() const;
    double SensedRemoteCelsius(size_t remote) const;
    double SensedFanRpm(size_t fan) const;

private:
    void Wander();
    double WantedRpm(size_t fan) const;
    void TurnFans();
    void ExchangeHeat(double seconds);

    uint64_t ticks = 0;
    std::array<int, heaterCount> heaterPercent{};
    std::array<FanDrive, fanCount> drives{};
    std::array<double, fanCount> fanRpm{};
    double boardCelsius = 0;
    std::array<double, remoteCount> remoteCelsius{};

    // Drafts and fan supply, which change over minutes.
    double boardDraftCelsius = 0;
    std::array<double, remoteCount> remoteDraftCelsius{};
    std::array<double, fanCount> fanFactor = {1, 1};
};

} // namespace ztm::sim
