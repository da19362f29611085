#pragma once

#include "regmap/RegisterValues.h"

#include <string>
#include <vector>

namespace ztm {

// Register settings of the current chip as text for other programs, in the order given. The texts
// are ASCII.

/// A register's name in the map; "Register 0x7F" where it has none.
std::string RegisterName(int32_t address);

/// C: an array with the names in comments, and a function that hands its elements to one that
/// writes a register. It compiles without warnings.
std::string SettingsAsC(const std::vector<RegisterSetting> &settings);

/// A shell script that writes the settings to the chip at that 7-bit address of that I2C bus with
/// i2cset. It first makes sure that the chip there is of the current variant and stops at the first
/// failure.
std::string SettingsAsScript(const std::vector<RegisterSetting> &settings, int bus, int address);

/// A snapshot file, see SnapshotFile.h. Unlike a saved one it has just these settings.
std::string SettingsAsSnapshot(const std::vector<RegisterSetting> &settings);

/// A line each: address, name, value and default, with tabs between.
std::string SettingsAsText(const std::vector<RegisterSetting> &settings);

} // namespace ztm
