#pragma once

#include "regmap/RegisterValues.h"

#include <string>
#include <string_view>
#include <vector>

namespace ztm {

/// Register snapshots: text files (".sav") with the registers of the chip that differ from
/// their defaults, one line each: "0x01, 0x05", a tab, "// " and the register's name.

struct Snapshot {
    std::vector<RegisterSetting> Registers; ///< in file order
    std::string
        Variant; ///< the name of the chip that it was saved from; empty if the file has none
    std::string Problem; ///< what went wrong; empty if nothing did
};

/// Reads the first 52 registers of the map from the chip and writes those that differ from their
/// default to a file, see SaveFile. If that fails, the registers have been read all the same.
Snapshot SaveSnapshot(const std::string &path);

/// The text of a snapshot file up to its first register, with the present date, and the line of a
/// register. After the last one comes an empty line.
std::string SnapshotHeader();
std::string SnapshotLine(const RegisterSetting &setting, std::string_view description);

/// Reads the registers listed in a file, whatever variant it was saved from; writes nothing to the
/// chip. The fields are found by their fixed columns after the first "x" in the file; a field that
/// starts with no hexadecimal digit counts as 0. There are none if the file cannot be read, see
/// ReadFile, or has no "x" or no line end at its end. If it ends in another line than the empty
/// one, that line is left out.
Snapshot ReadSnapshot(const std::string &path);

} // namespace ztm
