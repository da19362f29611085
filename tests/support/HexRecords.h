#pragma once

#include <cstdint>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

namespace ztm::test {

/// The last line of an Intel HEX file.
inline const std::string endOfFile = ":00000001FF\n";

/// A line of an Intel HEX file with the right byte count and checksum.
inline std::string Record(uint8_t type, uint16_t offset, const std::vector<uint8_t> &data) {
    std::vector<unsigned> bytes = {static_cast<unsigned>(data.size()), offset / 0x100U,
                                   offset % 0x100U, type};
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.push_back(-std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x100);
    std::string line = ":";
    for (const unsigned byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", byte & 0xFF);
        line += digits;
    }
    return line + "\n";
}

} // namespace ztm::test
