#include "adapter/sim/SimulatedBoard.h"

#include "adapter/firmware/FirmwareFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

namespace ztm::sim {
namespace {

constexpr int16_t success = 0;
constexpr int16_t failure = -1;

constexpr uint8_t openBus = 0xFF; // no chip pulls the data line low
constexpr int32_t leaveHeaterUnchanged = 255;
constexpr double slowBusSeconds = 0.020;
constexpr int64_t longestLivedGapTicks = int64_t{3600} * Physics::ticksPerSecond;

size_t FansOf(Variant variant) {
    return variant == Variant::ZTM7710 ? 1 : 2;
}

} // namespace

/// A request that the adapter's firmware knows. Register reads and writes share a code and
/// differ in the direction.
struct SimulatedBoard::Command {
    int16_t request;
    int16_t direction;
    int16_t length;
    void (SimulatedBoard::*run)(int32_t value, int32_t index, uint8_t *reply);
};

const SimulatedBoard::Command SimulatedBoard::commands[] = {
    {0xDE, 1, 1, &SimulatedBoard::ReadRegister},   {0xDE, 0, 0, &SimulatedBoard::WriteRegister},
    {0xDF, 0, 0, &SimulatedBoard::Handshake},      {0xDB, 0, 0, &SimulatedBoard::SetHeaterDuty},
    {0xDA, 1, 3, &SimulatedBoard::ReadHeaterDuty},
};

SimulatedBoard::SimulatedBoard(Variant variant, int32_t chipAddress, Clock clock, Sleep sleep)
    : clock(std::move(clock))
    , sleep(std::move(sleep))
    , startSeconds(this->clock())
    , settings{.variant = variant, .chipAddress = chipAddress, .bench = {}}
    , bench(FansOf(variant)) {
    SwitchChipOn();
}

int16_t SimulatedBoard::LoadFirmWare(const char *path) {
    PassTime();
    if (!path || !settings.isPluggedIn) {
        return failure;
    }
    const std::string file = NativePath(path);
    std::string whyNot;
    if (settings.refusesFirmware) {
        whyNot = "refused by the adapter";
    }
    if (settings.refusesFirmware || !ReadFirmwareFile(file, whyNot)) {
        std::fprintf(stderr, "ztm-eval-sim: %s: %s\n", file.c_str(), whyNot.c_str());
        return failure;
    }
    isFirmwareLoaded = true;
    SwitchHeatersOff();
    return success;
}

int16_t SimulatedBoard::VendorIORequest(int16_t request, int32_t value, int32_t index,
                                        int16_t direction, int16_t length, uint8_t *buffer) {
    if (settings.isSlow) {
        sleep(slowBusSeconds);
    }
    PassTime();
    if (!isFirmwareLoaded || (direction == 1 && !buffer)) {
        return failure;
    }
    for (const Command &command : commands) {
        if (command.request == request && command.direction == direction &&
            command.length == length) {
            (this->*command.run)(value, index, buffer);
            return success;
        }
    }
    return failure;
}

BoardSettings SimulatedBoard::Settings() const {
    BoardSettings all = settings;
    all.bench = bench.settings;
    return all;
}

BoardState SimulatedBoard::Look() {
    PassTime();
    BoardState state{};
    state.isFirmwareLoaded = isFirmwareLoaded;
    state.boardCelsius = bench.BoardCelsius();
    for (size_t i = 0; i < Physics::remoteCount; ++i) {
        state.remoteCelsius[i] = bench.RemoteCelsius(i);
        state.fanRpm[i] = bench.FanRpm(i);
        state.heaterWatts[i] = bench.HeaterWatts(i);
    }
    return state;
}

void SimulatedBoard::Arrange(const BoardSettings &wanted) {
    PassTime();
    const bool isAnotherBoard =
        wanted.variant != settings.variant || wanted.chipAddress != settings.chipAddress;
    settings = wanted;
    if (isAnotherBoard) {
        bench = Physics(FansOf(settings.variant), wanted.bench);
    }
    bench.settings = wanted.bench;
    if (isAnotherBoard || !settings.isPluggedIn) {
        SwitchChipOff();
    }
    if (settings.isPluggedIn && !chip) {
        SwitchChipOn();
    }
}

void SimulatedBoard::SwitchHeatersOff() {
    for (size_t heater = 0; heater < Physics::heaterCount; ++heater) {
        bench.SetHeaterPercent(heater, 0);
    }
}

void SimulatedBoard::SwitchChipOn() {
    chip.emplace(settings.variant, bench);
}

/// Cuts the power of the adapter, the chip and all that they drive.
void SimulatedBoard::SwitchChipOff() {
    isFirmwareLoaded = false;
    chip.reset();
    SwitchHeatersOff();
    for (size_t fan = 0; fan < Physics::fanCount; ++fan) {
        bench.DriveFan(fan, {});
    }
}

void SimulatedBoard::PassTime() {
    constexpr double endOfTimeSeconds = 1e15;
    const double seconds = std::min(clock() - startSeconds, endOfTimeSeconds);
    const auto now = static_cast<int64_t>(seconds * Physics::ticksPerSecond);
    const int64_t unlived = now - ticks - longestLivedGapTicks;
    if (unlived > 0) {
        bench.Skip(static_cast<uint64_t>(unlived));
        ticks += unlived;
    }
    for (; ticks < now; ++ticks) {
        LiveOneTick();
    }
}

void SimulatedBoard::LiveOneTick() {
    bench.Tick();
    if (!chip) {
        return;
    }
    chip->Tick(bench);
    for (size_t fan = 0; fan < Physics::fanCount; ++fan) {
        bench.DriveFan(fan, chip->Drive(fan));
    }
}

/// Uses only bits 0 to 7 of the index, the register address.
void SimulatedBoard::ReadRegister(int32_t value, int32_t index, uint8_t *reply) {
    reply[0] =
        value == settings.chipAddress ? chip->Read(static_cast<uint8_t>(index & 0xFF)) : openBus;
}

/// Uses only bits 0 to 7 (register address) and 8 to 15 (data) of the index.
void SimulatedBoard::WriteRegister(int32_t value, int32_t index, uint8_t * /*reply*/) {
    if (value == settings.chipAddress) {
        chip->Write(static_cast<uint8_t>(index & 0xFF), static_cast<uint8_t>(index >> 8 & 0xFF),
                    bench);
    }
}

void SimulatedBoard::Handshake(int32_t /*value*/, int32_t /*index*/, uint8_t * /*reply*/) {}

void SimulatedBoard::SetHeaterDuty(int32_t value, int32_t index, uint8_t * /*reply*/) {
    if (value != leaveHeaterUnchanged) {
        bench.SetHeaterPercent(0, value);
    }
    if (index != leaveHeaterUnchanged) {
        bench.SetHeaterPercent(1, index);
    }
}

void SimulatedBoard::ReadHeaterDuty(int32_t /*value*/, int32_t /*index*/, uint8_t *reply) {
    reply[0] = static_cast<uint8_t>(bench.HeaterPercent(0));
    reply[1] = static_cast<uint8_t>(bench.HeaterPercent(1));
    reply[2] = 0;
}

} // namespace ztm::sim
