#pragma once

#include <string>

namespace ztm {

/// Register snapshots: text files (".sav") with the registers of the chip that differ from
/// their defaults, one line each: "0x01, 0x05", a tab, "// " and the register's name.

/// Reads the first 52 registers of the map from the chip and writes those that differ from
/// their default to a file, which replaces one of that name. False when the file could not be
/// written; the registers have been read by then.
bool SaveSnapshot(const std::string &path);

/// Writes the registers listed in a file to the chip, in file order, whatever variant the file
/// was saved from. The lines are found by their fixed columns behind the first "x" in the file;
/// a text without two hexadecimal digits counts as 0. False, with the registers before it
/// written, when the file cannot be read or ends inside a line; with nothing written when it
/// has no "x", when its last line has no line end, or when it has more than 4096 lines, which
/// no snapshot has.
bool RecallSnapshot(const std::string &path);

} // namespace ztm
