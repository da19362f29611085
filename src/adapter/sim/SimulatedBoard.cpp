#include "adapter/sim/SimulatedBoard.h"

#include "adapter/IntelHex.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>

namespace ztm::sim {
namespace {

constexpr int16_t success = 0;
constexpr int16_t failure = -1;

constexpr uint8_t openBus = 0xFF; // no chip pulls the data line low
constexpr int32_t leaveHeaterUnchanged = 255;

/// The path under which this platform finds the file: the last separator may be a backslash;
/// any other backslash belongs to the name of a folder.
std::string NativePath(std::string path) {
    const size_t lastSeparator = path.find_last_of("/\\");
    if (lastSeparator != std::string::npos) {
        path[lastSeparator] = '/';
    }
    return path;
}

/// Whether the file holds sound firmware; if not, `whyNot` says why. Only an ordinary file is
/// opened, since a pipe could keep the caller waiting for ever.
bool IsFirmware(const std::string &path, std::string &whyNot) {
    std::error_code ignored;
    std::ifstream file;
    if (std::filesystem::is_regular_file(path, ignored)) {
        file.open(path, std::ios::binary);
    }
    if (!file.is_open()) {
        whyNot = "cannot be opened";
        return false;
    }
    return ReadIntelHex(file, &whyNot).has_value();
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

double SteadySeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

SimulatedBoard::SimulatedBoard(Variant variant, int32_t chipAddress, Clock clock)
    : clock(std::move(clock))
    , startSeconds(this->clock())
    , settings{.variant = variant, .chipAddress = chipAddress}
    , chip(variant) {}

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
    if (settings.refusesFirmware || !IsFirmware(file, whyNot)) {
        std::fprintf(stderr, "ztm-eval-sim: %s: %s\n", file.c_str(), whyNot.c_str());
        return failure;
    }
    firmwareLoaded = true;
    SwitchHeatersOff();
    return success;
}

int16_t SimulatedBoard::VendorIORequest(int16_t request, int32_t value, int32_t index,
                                        int16_t direction, int16_t length, uint8_t *buffer) {
    PassTime();
    if (!firmwareLoaded || (direction == 1 && !buffer)) {
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

/// A board that is pulled out, or put in anew, starts from its power-on.
void SimulatedBoard::Arrange(const BoardSettings &wanted) {
    PassTime();
    const bool isAnotherBoard =
        wanted.variant != settings.variant || wanted.chipAddress != settings.chipAddress;
    if (isAnotherBoard || !wanted.isPluggedIn) {
        firmwareLoaded = false;
        SwitchHeatersOff();
        chip = Chip(wanted.variant);
    }
    settings = wanted;
}

void SimulatedBoard::SwitchHeatersOff() {
    for (size_t heater = 0; heater < Bench::heaterCount; ++heater) {
        bench.SetHeaterPercent(heater, 0);
    }
}

void SimulatedBoard::PassTime() {
    bench.AdvanceTo(clock() - startSeconds);
    chip.Measure(bench);
}

/// Of the index only bits 0 to 7 count; they are the register's address.
void SimulatedBoard::ReadRegister(int32_t value, int32_t index, uint8_t *reply) {
    reply[0] =
        value == settings.chipAddress ? chip.Read(static_cast<uint8_t>(index & 0xFF)) : openBus;
}

/// Of the index only bits 0 to 7, the register's address, and 8 to 15, the data, count.
void SimulatedBoard::WriteRegister(int32_t value, int32_t index, uint8_t * /*reply*/) {
    if (value == settings.chipAddress) {
        chip.Write(static_cast<uint8_t>(index & 0xFF), static_cast<uint8_t>(index >> 8 & 0xFF));
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
