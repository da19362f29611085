#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ztm {

/// All bytes of a regular file of at most 1 MiB. Otherwise nothing, and `whyNot` says why, in the
/// system's words if it has any. Never waits: a FIFO would block, a device might never end.
std::optional<std::string> ReadFile(const std::string &path, std::string &whyNot);

/// Makes `bytes` the whole content of a file, which need not exist. An existing one is replaced,
/// with its mode kept, once the new content is on the disk: after a failure, or if the machine dies
/// meanwhile, it is as it was. Only what cannot be replaced is written in place: a device, a FIFO,
/// or a file in a folder that takes no other. A link stays, and what it leads to is written.
/// Returns the system's reason of a failure, empty if there was none.
std::string SaveFile(const std::string &path, std::string_view bytes);

/// Writes to a file descriptor, as often as needed. Returns how many bytes were written; errno says
/// why not all.
size_t WriteAll(int descriptor, std::string_view bytes);

} // namespace ztm
