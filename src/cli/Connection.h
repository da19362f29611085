#pragma once

#include "cli/Session.h"

#include "common/Clock.h"

#include <memory>

namespace ztm::cli {

/// The clock of a run, whose sleeps end by a signal. With `isFast` it jumps instead, and moves the
/// clock of the simulated board with it.
std::unique_ptr<Clock> NewClock(bool isFast);

/// Brings the adapter up and finds the chip, as the wizard does. Throws Failure NothingFound if
/// there is none, or another than the wanted one.
void Connect(const Options &options);

/// Prints the I2C buses that the kernel knows. Nothing is sent on them.
void PrintBuses(Output &out);

} // namespace ztm::cli
