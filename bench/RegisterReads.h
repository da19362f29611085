#pragma once

#include "Measure.h"
#include "link/LinkState.h"
#include "link/USBComms.h"

#include <cstdio>
#include <cstdlib>

namespace ztm::bench {

/// The register whose reads are compared; a virtual chip holds its address plus one.
inline constexpr uint8_t comparedRegister = 0x0B;

/// Measures a read; ends the program if the read returned a wrong value.
template <class Read>
void TakeRead(Times &times, const Read &read) {
    int value = 0;
    times.Take([&] { value = read(); });
    if (value != comparedRegister + 1) {
        std::fprintf(stderr, "a read went wrong\n");
        std::exit(EXIT_FAILURE);
    }
}

/// Compares reads through the program's register operations, in turns, with the same read given
/// directly to what is below the adapter library. Returns the exit code: a failure if the former
/// is too slow.
template <class Read>
int CompareReads(const char *what, const char *directly, const Read &readDirectly) {
    constexpr int reads = 6000;
    CommsMedium = MediumUSB;
    USBDeviceAddress = 0x50;
    Times directTimes(CLOCK_MONOTONIC);
    Times times(CLOCK_MONOTONIC);
    for (int read = 0; read < reads; ++read) {
        TakeRead(directTimes, readDirectly);
        TakeRead(times, [] { return ReadRegister(comparedRegister); });
    }
    Table table;
    Table::Heading(what);
    Table::Figure(directly, directTimes.Median(), "us");
    Table::Figure("register read, median", times.Median(), "us");
    table.AtMost("register read to that, median", times.Median() / directTimes.Median(), 1.05, "x");
    return table.ExitCode();
}

} // namespace ztm::bench
