#pragma once

#include "adapter/sim/SimulatedBoard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace ztm::sim {

constexpr int16_t registerRequest = 0xDE;
constexpr int16_t handshakeRequest = 0xDF;
constexpr int16_t setHeaterRequest = 0xDB;
constexpr int16_t readHeaterRequest = 0xDA;

/// The firmware file that goes with the program.
inline const std::string shippedFirmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

/// The least and the most of what it takes.
struct Extremes {
    double least = 1e9;
    double most = -1e9;

    void Take(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
};

/// A board without noise, with its firmware loaded, on a clock that stands still until it is
/// told to move.
struct TestBoard {
    explicit TestBoard(Variant variant = Variant::ZTM7720, int32_t address = 0x50)
        : address(address)
        , board(
              variant, address, [this] { return seconds; },
              [this](double wait) { seconds += wait; }) {
        Arrange([](BoardSettings &settings) { settings.bench.isNoisy = false; });
        EXPECT_EQ(board.LoadFirmWare(shippedFirmware.c_str()), 0);
        Pass(1); // the first readings were noisy still
    }
    TestBoard(const TestBoard &) = delete;
    TestBoard &operator=(const TestBoard &) = delete;

    template <class Change>
    void Arrange(Change change) {
        BoardSettings settings = board.Settings();
        change(settings);
        board.Arrange(settings);
    }

    /// Lets time pass, as it does for a program that looks now and then.
    void Pass(double passing) {
        seconds += passing;
        board.Look();
    }

    uint8_t ReadAt(int32_t device, int32_t index) {
        uint8_t reply = 0;
        EXPECT_EQ(board.VendorIORequest(registerRequest, device, index, 1, 1, &reply), 0);
        return reply;
    }
    uint8_t Read(int32_t index) { return ReadAt(address, index); }
    void Write(int registerAddress, int data) {
        const int32_t index = data * 256 + registerAddress;
        EXPECT_EQ(board.VendorIORequest(registerRequest, address, index, 0, 0, nullptr), 0);
    }
    void WriteLimit(int registerAddress, int celsius) { Write(registerAddress, celsius + 64); }
    /// The speed of a pair whose low register is given.
    void WriteRpm(int low, double rpm) {
        const RegisterPair pair = EncodeTach(rpm);
        Write(low + 1, pair.high);
        Write(low, pair.low);
    }
    std::map<int, int> AllRegisters() {
        std::map<int, int> all;
        for (int registerAddress = 0; registerAddress < 256; ++registerAddress) {
            all[registerAddress] = Read(registerAddress);
        }
        return all;
    }
    double Celsius(uint8_t low) {
        const int fraction = Read(low);
        return Read(low + 1) + fraction / 256.0 - 64;
    }
    double Rpm(uint8_t low) {
        const uint8_t lowByte = Read(low);
        return DecodeTach({lowByte, Read(low + 1)});
    }
    void SetHeaters(int32_t first, int32_t second) {
        EXPECT_EQ(board.VendorIORequest(setHeaterRequest, first, second, 0, 0, nullptr), 0);
    }
    std::array<uint8_t, 2> Heaters() {
        std::array<uint8_t, 3> reply{};
        EXPECT_EQ(board.VendorIORequest(readHeaterRequest, 0, 0, 1, 3, reply.data()), 0);
        return {reply[0], reply[1]};
    }

    double seconds = 5000;
    int32_t address;
    SimulatedBoard board;
};

} // namespace ztm::sim
