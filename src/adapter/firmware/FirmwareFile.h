#pragma once

#include "adapter/firmware/IntelHex.h"

#include <optional>
#include <string>
#include <vector>

namespace ztm {

/// The path under which this platform finds a firmware file: the last separator may be a
/// backslash; any other backslash belongs to the name of a folder.
std::string NativePath(std::string path);

/// Reads an Intel HEX file by its native path; if it is not accepted, `whyNot` says why. Only an
/// ordinary file is opened, since a pipe could keep the caller waiting for ever.
std::optional<std::vector<HexBlock>> ReadFirmwareFile(const std::string &path, std::string &whyNot);

} // namespace ztm
