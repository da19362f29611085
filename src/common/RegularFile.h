#pragma once

#include <fstream>
#include <string>

namespace ztm {

/// Opens a regular file for reading its bytes. The stream is not open if that fails, or if the
/// path is something else: a FIFO would block, a device might never end.
std::ifstream OpenRegularFile(const std::string &path);

} // namespace ztm
