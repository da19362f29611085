#pragma once

#include <string>
#include <string_view>

namespace ztm {

/// Appends a UTF-8 text to `bytes` in the Windows-1252 character set, one byte per character (the
/// degree sign is 0xB0). A character that the set lacks, and bytes that are not UTF-8, become "?";
/// false if there were any.
bool AppendWindows1252(std::string &bytes, std::string_view utf8);

} // namespace ztm
