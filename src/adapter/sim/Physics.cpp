#include "adapter/sim/Physics.h"

#include "adapter/sim/Noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ztm::sim {
namespace {

constexpr std::array<double, Physics::fanCount> fullDriveRpm = {8000, 9000};
constexpr double fanLagSeconds = 0.7;
constexpr double startingShare = 0.15;
constexpr double keepingShare = 0.04;
constexpr double draggingShare = 0.5;
constexpr double standingRpm = 30;

/// A body that exchanges heat.
struct Node {
    double joulesPerKelvin;
    double watts; ///< its own, without a heater
    double wattsPerKelvinAtRest;
    double wattsPerKelvinOfAir; ///< additional, per unit of moving air
};
constexpr Node boardNode = {30, 0.5, 0.10, 0.03};
constexpr Node remoteNode = {2, 1.1, 0.02, 0.035};
constexpr double remoteToBoardWattsPerKelvin = 0.01;
constexpr double fullHeaterWatts = 4.5;
constexpr double airOfOwnFan = 0.8;
constexpr double convectionExponent = 0.8;

/// A sine around 0.
struct Swing {
    double amplitude;
    double periodSeconds;
};
constexpr Swing boardDraft = {1.2, 310};
constexpr std::array<Swing, Physics::remoteCount> remoteDraft = {{{0.9, 190}, {0.8, 230}}};
constexpr std::array<Swing, Physics::fanCount> fanSwing = {{{0.01, 47}, {0.01, 61}}};
constexpr uint64_t ticksPerWander = 10;

constexpr double sensorNoiseCelsius = 0.06;
constexpr double tachNoise = 0.004;
constexpr uint64_t boardSource = 1;
constexpr uint64_t remoteSource = 2;
constexpr uint64_t fanSource = 4;

double At(const Swing &swing, double seconds) {
    return swing.amplitude *
           std::sin(2 * std::numbers::pi * std::fmod(seconds / swing.periodSeconds, 1));
}

/// Heat conductance to air moved by a fan at `airRpm`.
double Convection(const Node &node, double airRpm) {
    return node.wattsPerKelvinAtRest +
           node.wattsPerKelvinOfAir * std::pow(airRpm / 1000, convectionExponent);
}

} // namespace

Physics::Physics(size_t fansOnBoard, const BenchSettings &settings) : settings(settings) {
    constexpr double untilSettledSeconds = 1e9;
    for (size_t fan = 0; fan < fansOnBoard; ++fan) {
        drives[fan] = undirectedDrive;
        fanRpm[fan] = undirectedDrive.share * fullDriveRpm[fan];
    }
    ExchangeHeat(untilSettledSeconds);
}

void Physics::Tick() {
    ++ticks;
    if (ticks % ticksPerWander == 0) {
        Wander();
    }
    TurnFans();
    ExchangeHeat(tickSeconds);
}

void Physics::SetHeaterPercent(size_t heater, int percent) {
    heaterPercent[heater] = std::clamp(percent, 0, maxHeaterPercent);
}

double Physics::HeaterWatts(size_t heater) const {
    return fullHeaterWatts * heaterPercent[heater] / maxHeaterPercent;
}

double Physics::SensedBoardCelsius() const {
    return boardCelsius + (settings.isNoisy
                               ? sensorNoiseCelsius * Noise(ticks, boardSource, settings.noiseSeed)
                               : 0);
}

double Physics::SensedRemoteCelsius(size_t remote) const {
    return remoteCelsius[remote] +
           (settings.isNoisy
                ? sensorNoiseCelsius * Noise(ticks, remoteSource + remote, settings.noiseSeed)
                : 0);
}

double Physics::SensedFanRpm(size_t fan) const {
    return fanRpm[fan] * (settings.isNoisy
                              ? 1 + tachNoise * Noise(ticks, fanSource + fan, settings.noiseSeed)
                              : 1);
}

void Physics::Wander() {
    const double seconds = static_cast<double>(ticks) * tickSeconds;
    const double scale = settings.isNoisy ? 1 : 0;
    boardDraftCelsius = scale * At(boardDraft, seconds);
    for (size_t i = 0; i < remoteCount; ++i) {
        remoteDraftCelsius[i] = scale * At(remoteDraft[i], seconds);
        fanFactor[i] = 1 + scale * At(fanSwing[i], seconds);
    }
}

/// The speed that the fan moves towards.
double Physics::WantedRpm(size_t fan) const {
    const double full = fullDriveRpm[fan];
    const double reach = settings.fans[fan] == FanFault::Drags ? full * draggingShare : full;
    const double asked = std::max(drives[fan].rpm, drives[fan].share * full);
    const double least = (fanRpm[fan] > 0 ? keepingShare : startingShare) * full;
    if (settings.fans[fan] == FanFault::Stalled || asked < least) {
        return 0;
    }
    return std::min(asked, reach) * fanFactor[fan];
}

void Physics::TurnFans() {
    static const double share = -std::expm1(-tickSeconds / fanLagSeconds);
    for (size_t fan = 0; fan < fanCount; ++fan) {
        const double wanted = WantedRpm(fan);
        fanRpm[fan] += (wanted - fanRpm[fan]) * share;
        if (wanted == 0 && fanRpm[fan] < standingRpm) {
            fanRpm[fan] = 0;
        }
    }
}

/// One implicit step: all heat flows follow from the temperatures at its end, so it is stable for
/// any number of seconds. The diodes are coupled only through the board, so each is expressed by
/// the board's temperature, and one equation remains.
void Physics::ExchangeHeat(double seconds) {
    const double bridge = remoteToBoardWattsPerKelvin;
    const double boardAir = Convection(boardNode, (fanRpm[0] + fanRpm[1]) / 2);
    const double boardInertia = boardNode.joulesPerKelvin / seconds;
    double boardFactor = boardInertia + boardAir + static_cast<double>(remoteCount) * bridge;
    double boardWatts = boardInertia * boardCelsius + boardNode.watts +
                        boardAir * (settings.ambientCelsius + boardDraftCelsius);

    std::array<double, remoteCount> factor{};
    std::array<double, remoteCount> watts{};
    for (size_t i = 0; i < remoteCount; ++i) {
        const double airRpm = airOfOwnFan * fanRpm[i] + (1 - airOfOwnFan) * fanRpm[1 - i];
        const double air = Convection(remoteNode, airRpm);
        const double inertia = remoteNode.joulesPerKelvin / seconds;
        factor[i] = inertia + air + bridge;
        watts[i] = inertia * remoteCelsius[i] + remoteNode.watts + HeaterWatts(i) +
                   air * (settings.ambientCelsius + remoteDraftCelsius[i]);
        boardFactor -= bridge * bridge / factor[i];
        boardWatts += bridge * watts[i] / factor[i];
    }
    boardCelsius = boardWatts / boardFactor;
    for (size_t i = 0; i < remoteCount; ++i) {
        remoteCelsius[i] = (watts[i] + bridge * boardCelsius) / factor[i];
    }
}

} // namespace ztm::sim
