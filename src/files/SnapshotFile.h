#pragma once

#include <string>

namespace ztm {

/// Register snapshots: text files (".sav") with the registers of the chip that differ from
/// their defaults, one line each: "0x01, 0x05", a tab, "// " and the register's name.

/// Reads the first 52 registers of the map from the chip and writes those that differ from their
/// default to a file, replacing an existing one. False if the file could not be written; the
/// registers have been read by then.
bool SaveSnapshot(const std::string &path);

/// Writes the registers listed in a file to the chip, in file order, whatever variant the file was
/// saved from. The fields are found by their fixed columns after the first "x" in the file; a field
/// that starts with no hexadecimal digit counts as 0. False if the file cannot be read or ends
/// inside a line; the registers before it have been written. False with nothing written if it has
/// no "x", no line end at its end, or more than 4096 lines, which no snapshot has.
bool RecallSnapshot(const std::string &path);

} // namespace ztm
