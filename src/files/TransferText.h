#pragma once

#include "link/Traffic.h"
#include "regmap/RegisterValues.h"

#include <optional>
#include <string>
#include <vector>

namespace ztm {

// Transfers in words.

/// What was done: "read", "write", "set heaters", "read heaters", "handshake".
std::string KindText(const Transfer &transfer);

/// The register with its name, "0B Local High Limit"; empty if it is about none.
std::string RegisterText(const Transfer &transfer);

/// What was read or written: "0x8B" or, of the heaters, "40 %, unchanged"; "failed" if it did.
std::string ValueText(const Transfer &transfer);

/// The names of the register's bits that were another before; empty if there are none or that is
/// not known.
std::string ChangedBits(const Transfer &transfer);

/// The setting that a transfer wrote; none if it wrote no register.
std::optional<RegisterSetting> SettingOf(const Transfer &transfer);

/// A line for each of the transfers of those numbers, with tabs between: seconds from the first
/// one, kind, register, value, changed bits, requester.
std::string TransfersAsText(const std::vector<uint64_t> &numbers);

} // namespace ztm
