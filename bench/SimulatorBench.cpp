// The cost of the simulated board: a day of its time, and one request. Fails if it is too high.

#include "Measure.h"
#include "adapter/sim/SimulatedBoard.h"

#include <array>
#include <cstdlib>

namespace {

using namespace ztm::sim;
using ztm::bench::CpuMicroseconds;

constexpr int16_t registerRequest = 0xDE;
constexpr int16_t setHeaterRequest = 0xDB;
constexpr double stepSeconds = 0.030;

uint8_t Read(SimulatedBoard &board, int32_t address) {
    uint8_t reply = 0;
    board.VendorIORequest(registerRequest, SimulatedBoard::defaultChipAddress, address, 1, 1,
                          &reply);
    return reply;
}

void Write(SimulatedBoard &board, int address, int data) {
    board.VendorIORequest(registerRequest, SimulatedBoard::defaultChipAddress, data * 256 + address,
                          0, 0, nullptr);
}

/// Firmware loaded, noise on, both fans under linear automatic control, both heaters on.
void SetUp(SimulatedBoard &board) {
    if (board.LoadFirmWare(ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex") < 0) {
        std::exit(EXIT_FAILURE);
    }
    for (int point = 0; point < 8; ++point) {
        const RegisterPair speed = EncodeTach(1000 + 700 * point);
        Write(board, 0x22 + point, 64 + 30 + 10 * point);
        Write(board, 0x2B + 2 * point, speed.high);
        Write(board, 0x2A + 2 * point, speed.low);
    }
    Write(board, 0x02, 0x8C);
    Write(board, 0x01, 0x85);
    board.VendorIORequest(setHeaterRequest, 60, 25, 0, 0, nullptr);
}

double DaySeconds() {
    constexpr double daySeconds = 86400;
    double now = 0;
    SimulatedBoard board(Variant::ZTM7720, SimulatedBoard::defaultChipAddress, [&] { return now; });
    SetUp(board);
    const double start = CpuMicroseconds();
    for (long step = 1; now < daySeconds; ++step) {
        now = static_cast<double>(step) * stepSeconds;
        Read(board, 0x42);
    }
    return (CpuMicroseconds() - start) / 1e6;
}

double NightMilliseconds() {
    constexpr double nightSeconds = 8 * 3600;
    double now = 0;
    SimulatedBoard board(Variant::ZTM7720, SimulatedBoard::defaultChipAddress, [&] { return now; });
    SetUp(board);
    now = nightSeconds;
    const double start = CpuMicroseconds();
    Read(board, 0x42);
    return (CpuMicroseconds() - start) / 1e3;
}

/// The median over batches of back-to-back requests on the machine's clock, including those in
/// which a tick passes.
double MedianRequestMicroseconds() {
    constexpr int batches = 2001;
    constexpr int requests = 200;
    constexpr std::array<int32_t, 8> addresses = {0x40, 0x41, 0x4A, 0x4B, 0x4E, 0x4F, 0x50, 0x51};
    SimulatedBoard board;
    SetUp(board);
    ztm::bench::Times times;
    for (int batch = 0; batch < batches; ++batch) {
        times.Take([&] {
            for (size_t i = 0; i < requests; ++i) {
                Read(board, addresses[i % addresses.size()]);
            }
        });
    }
    return times.Median() / requests;
}

} // namespace

int main() {
    ztm::bench::Table table;
    ztm::bench::Table::Heading("simulated board");
    table.AtMost("a day in steps of 30 ms", DaySeconds(), 2, "s");
    table.AtMost("the first request after a night asleep", NightMilliseconds(), 100, "ms");
    table.AtMost("one request, median", MedianRequestMicroseconds(), 1, "us");
    return table.ExitCode();
}
