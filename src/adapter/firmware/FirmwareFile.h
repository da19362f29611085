#pragma once

#include "adapter/firmware/IntelHex.h"

#include <optional>
#include <string>
#include <vector>

namespace ztm {

/// The native path of a firmware file: the last separator may be a backslash; any other backslash
/// is part of a folder name.
std::string NativePath(std::string path);

/// Reads an Intel HEX file by its native path; if it is not accepted, `whyNot` says why. Only a
/// regular file is opened, since a pipe could block forever.
std::optional<std::vector<HexBlock>> ReadFirmwareFile(const std::string &path, std::string &whyNot);

} // namespace ztm
