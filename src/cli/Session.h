#pragma once

#include "cli/Output.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace ztm::cli {

/// What is chosen before the command.
struct Options {
    std::string Adapter = "usb";
    std::optional<int32_t> Bus;     ///< of the I2C adapter
    std::optional<int32_t> Address; ///< 7 bits
    bool MemoryAddress = false;     ///< addresses where memory modules live are allowed
    std::string Variant;            ///< that is wanted; empty for any
    bool Json = false;
    bool Fast = false; ///< the simulated board's time jumps
    bool KeepHeaters = false;
};

/// The chip that has been found, for the commands of one run.
class Session {
public:
    Session(const Options &options, Output &output) : Settings(options), Out(output) {}

    const Options &Settings;
    Output &Out;

    /// Seconds since the first call in this run.
    double WatchedSeconds();

    /// Sets a heater's duty (0 or 1, 0 to 100 %) and remembers it for the end.
    void SetHeater(int heater, int32_t percent);

    /// Ends the run: switches off the heaters that were set, unless it ends normally or they are to
    /// be kept, and says which ones stay on; then takes leave of the adapter. What fails is passed
    /// over. Takes at most about a second besides the transfers.
    void End(bool isNormal);

private:
    void SwitchHeatersOff();

    std::array<int32_t, 2> duties{};  ///< set in this run
    std::optional<double> watchStart; ///< RunningSeconds
};

} // namespace ztm::cli
