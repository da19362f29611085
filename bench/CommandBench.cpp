// The command "ztm" as a process on a virtual I2C bus: the time from its start to the value of a
// register, and how fast it watches, compared with bare reads of the same registers from the
// kernel's device file on the same bus. Fails if it is too slow.

#include "Measure.h"
#include "support/VirtualI2c.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using namespace ztm;

constexpr int starts = 21;
constexpr int lines = 300;
constexpr int rounds = 7;
constexpr unsigned long address = 0x2C;
/// What a start waits for: 20 ms after the firmware, 200 ms after the handshake, 20 ms of search.
constexpr double statedWaitsMs = 240;
/// Those of a line of all measurements, in their order.
constexpr std::array<uint8_t, 11> registers{0x40, 0x41, 0x42, 0x43, 0x44, 0x45,
                                            0x4A, 0x4B, 0x4C, 0x4D, 0x4E};

/// Runs the command until it has printed so many lines; calls `seen` at each.
template <class Seen>
void Run(const std::string &arguments, int wanted, const Seen &seen) {
    const std::string line = "exec env LD_PRELOAD=libumockdev-preload.so.0 " ZTM_COMMAND
                             " --adapter i2c --bus 7 --address 0x2C " +
                             arguments;
    FILE *output = popen(line.c_str(), "r");
    std::array<char, 256> text{};
    int count = 0;
    while (output != nullptr && std::fgets(text.data(), text.size(), output) != nullptr) {
        ++count;
        seen(count);
    }
    if (output == nullptr || pclose(output) != 0 || count != wanted) {
        std::fprintf(stderr, "a run went wrong: %s\n", arguments.c_str());
        std::exit(EXIT_FAILURE);
    }
}

double Now() {
    return bench::Microseconds(CLOCK_MONOTONIC);
}

/// From the start of the process to the value of a register, in milliseconds.
double StartToValue() {
    const double start = Now();
    double end = start;
    Run("read 0B", 1, [&](int) { end = Now(); });
    return (end - start) / 1000;
}

/// Lines of all measurements in a second.
double WatchedLines() {
    double start = 0;
    double end = 0;
    Run("watch -i 0 -n " + std::to_string(lines), lines + 1, [&](int line) {
        (line == 2 ? start : end) = Now(); // the first one is the headings
    });
    return (lines - 1) / (end - start) * 1e6;
}

/// The same by bare requests.
double BareLines(int device) {
    const double start = Now();
    for (int line = 1; line < lines; ++line) {
        for (const uint8_t number : registers) {
            i2c_smbus_data data{};
            i2c_smbus_ioctl_data call{I2C_SMBUS_READ, number, I2C_SMBUS_BYTE_DATA, &data};
            ioctl(device, I2C_SLAVE, address);
            ioctl(device, I2C_SMBUS, &call);
        }
    }
    return (lines - 1) / (Now() - start) * 1e6;
}

} // namespace

int main() {
    static test::VirtualI2c bus;
    bus.Plug([](size_t, const test::ByteTransfer & /*transfer*/) {
        return test::BusAnswer{.data = 0x34};
    });
    const int device = open("/dev/i2c-7", O_RDWR | O_CLOEXEC);
    if (device < 0) {
        std::fprintf(stderr, "the virtual bus cannot be opened\n");
        return EXIT_FAILURE;
    }
    std::vector<double> times;
    for (int start = 0; start < starts; ++start) {
        times.push_back(StartToValue());
    }
    std::vector<double> shares;
    double fastest = 0;
    for (int round = 0; round < rounds; ++round) {
        const double bare = BareLines(device);
        const double watched = WatchedLines();
        fastest = std::max(fastest, watched);
        shares.push_back(watched / bare);
    }
    close(device);
    std::sort(times.begin(), times.end());
    std::sort(shares.begin(), shares.end());

    bench::Table table;
    bench::Table::Heading("the command, on a virtual I2C bus");
    table.AtMost("start to the value of a register, besides 240 ms, median",
                 times[starts / 2] - statedWaitsMs, 50, "ms");
    bench::Table::Figure("watch without an interval, lines of 11 registers", fastest, "/s");
    table.AtLeast("its rate to that of bare reads, median", shares[rounds / 2], 0.9, "x");
    return table.ExitCode();
}
