#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace ztm::test {

/// The last line of an Intel HEX file.
inline const std::string endOfFile = ":00000001FF\n";

/// A line of an Intel HEX file with the right byte count and checksum.
inline std::string Record(uint8_t type, uint16_t offset, const std::vector<uint8_t> &data) {
    std::vector<uint8_t> bytes = {static_cast<uint8_t>(data.size()),
                                  static_cast<uint8_t>(offset >> 8),
                                  static_cast<uint8_t>(offset & 0xFF), type};
    bytes.insert(bytes.end(), data.begin(), data.end());
    unsigned sum = 0;
    std::string line = ":";
    char digits[3];
    const auto append = [&](unsigned byte) {
        std::snprintf(digits, sizeof digits, "%02X", byte & 0xFF);
        line += digits;
        sum += byte;
    };
    for (const uint8_t byte : bytes) {
        append(byte);
    }
    append(0x100 - (sum & 0xFF));
    return line + "\n";
}

} // namespace ztm::test
