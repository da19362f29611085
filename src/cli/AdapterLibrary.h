#pragma once

#include "adapter/i2c/BusControl.h"
#include "adapter/sim/BoardControl.h"

#include <string>

namespace ztm::cli {

enum class Adapter { Usb, Sim, I2c };

/// Loads the library of that adapter, which stands in a folder beside the program. From now on the
/// two entries of link/USBFunctions.h lead to it, and are told of signals between two requests, see
/// CheckInterruption.
void OpenAdapterLibrary(Adapter adapter);

/// The entries of the library that is open, for adapters that have them.
void ListBuses(std::vector<i2c::ListedBus> &buses);
void ChooseBus(const i2c::BusChoice &choice);
void LookAtBus(i2c::BusReport &report);
void ReadBoard(sim::BoardSettings &settings, sim::BoardState &state);
void ArrangeBoard(const sim::BoardSettings &settings);
void MoveBoardClock(double seconds);

/// What the library has said on standard error since the last call, in place of saying it there:
/// why a start or a request failed. Empty if it said nothing.
std::string TakeLibraryText();

} // namespace ztm::cli
