#pragma once

#include "adapter/sim/SimulatedBoard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace ztm::sim {

/// The firmware file that goes with the program.
inline const std::string shippedFirmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

// The low registers of the measured pairs.
constexpr int local = 0x40;
constexpr int remote1 = 0x42;
constexpr int remote2 = 0x44;
constexpr int tach1 = 0x4A;
constexpr int tach2 = 0x4C;

/// What a register for a whole temperature holds.
constexpr int Limit(int celsius) {
    return celsius + 64;
}

/// Registers and what is written to them.
using Writes = std::vector<std::pair<int, int>>;

/// The least and the most of some readings.
struct Extremes {
    double least = 1e9;
    double most = -1e9;

    double Spread() const { return most - least; }
};

/// A board without noise, with its firmware loaded, on a clock that stands still until it is
/// told to move.
struct TestBoard {
    explicit TestBoard(Variant variant = Variant::ZTM7720, int32_t address = 0x50)
        : address(address)
        , board(
              variant, address, [this] { return seconds; },
              [this](double wait) { seconds += wait; }) {
        SetBench({});
        Load();
        // The first readings were noisy still. The half tick keeps rounding from counting.
        Pass(1 + Physics::tickSeconds / 2);
    }
    TestBoard(const TestBoard &) = delete;
    TestBoard &operator=(const TestBoard &) = delete;

    void SetBench(BenchSettings bench, bool isNoisy = false) {
        bench.isNoisy = isNoisy;
        BoardSettings settings = board.Settings();
        settings.bench = bench;
        board.Arrange(settings);
    }
    void Load() { EXPECT_EQ(board.LoadFirmWare(shippedFirmware.c_str()), 0); }

    /// Lets time pass, as it does for a program that looks now and then.
    void Pass(double passing) {
        seconds += passing;
        board.Look();
    }
    /// The seconds until `condition` holds, 100 at most.
    double SecondsUntil(const auto &condition) {
        const double start = seconds;
        while (!condition() && seconds < start + 100) {
            Pass(Physics::tickSeconds);
        }
        return seconds - start;
    }
    /// What the pair reads during so many seconds.
    Extremes Watch(int low, double passing, double step = 1) {
        Extremes seen;
        for (const double end = seconds + passing; seconds < end; Pass(step)) {
            seen = {std::min(seen.least, Reading(low)), std::max(seen.most, Reading(low))};
        }
        return seen;
    }

    uint8_t ReadAt(int32_t device, int32_t index) {
        uint8_t reply = 0;
        EXPECT_EQ(board.VendorIORequest(0xDE, device, index, 1, 1, &reply), 0);
        return reply;
    }
    uint8_t Read(int32_t index) { return ReadAt(address, index); }
    void WriteAt(int32_t device, int32_t index) {
        EXPECT_EQ(board.VendorIORequest(0xDE, device, index, 0, 0, nullptr), 0);
    }
    void Write(const Writes &writes) {
        for (const auto &[index, data] : writes) {
            WriteAt(address, data * 256 + index);
        }
    }
    /// Writes the speed to the pair of registers.
    void WriteRpm(int low, double rpm) {
        const RegisterPair pair = EncodeTach(rpm);
        Write({{low + 1, pair.high}, {low, pair.low}});
    }
    std::vector<int> AllRegisters() {
        std::vector<int> all;
        for (int index = 0; index < 256; ++index) {
            all.push_back(Read(index));
        }
        return all;
    }
    /// The degrees or RPM of a pair.
    double Reading(int low) {
        const uint8_t lowByte = Read(low);
        const RegisterPair pair = {lowByte, Read(low + 1)};
        return low < tach1 ? DecodeTemperature(pair) : DecodeTach(pair);
    }
    void SetHeaters(int32_t first, int32_t second) {
        EXPECT_EQ(board.VendorIORequest(0xDB, first, second, 0, 0, nullptr), 0);
    }
    std::array<int, 2> Heaters() {
        std::array<uint8_t, 3> reply{};
        EXPECT_EQ(board.VendorIORequest(0xDA, 0, 0, 1, 3, reply.data()), 0);
        return {reply[0], reply[1]};
    }

    double seconds = 5000;
    int32_t address;
    SimulatedBoard board;
};

} // namespace ztm::sim
