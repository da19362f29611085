#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace ztm {

/// A run of consecutive bytes and the address of its first one.
struct HexBlock {
    uint32_t address;
    std::vector<uint8_t> data;

    bool operator==(const HexBlock &) const = default;
};

/// Reads a complete Intel HEX file and returns its data in ascending address order, with adjacent
/// runs joined. A file that is not accepted gives nothing, and `whyNot` (if not null) says why,
/// with the line number if one line is at fault.
///
/// Accepted: one record per line, each `:`, byte count, 16-bit offset, type, data and checksum in
/// hexadecimal digits of either case, with nothing before or after it; lines end in LF or CR LF,
/// the last one may end with the file. Record types:
/// - 00 data, of 0 to 255 bytes, within the 64 KiB that its offset can reach;
/// - 01 end of file, exactly once, with nothing but empty lines after it;
/// - 02 and 04 extended segment and linear address, the base of the data that follows;
/// - 03 and 05 start address, checked for form and not kept.
/// All but data records must have offset 0 and the byte count of their type. No byte may be given
/// twice. A file is at most 1 MiB long, so time and memory are bounded whatever the stream
/// delivers.
std::optional<std::vector<HexBlock>> ReadIntelHex(std::istream &file,
                                                  std::string *whyNot = nullptr);

} // namespace ztm
