#pragma once

#include <array>
#include <optional>
#include <string>

namespace ztm {

/// Lookup-table files (".lut"): text files with eight points, "30, 1000;" a line.

inline constexpr int LutPoints = 8;

/// A point as typed in the boxes.
struct LutPoint {
    std::string Temperature;
    std::string RPM;
};

/// Writes the points' UTF-8 texts unchanged to a file, replacing an existing one. False on failure.
bool SaveLut(const std::string &path, const std::array<LutPoint, LutPoints> &points);

/// The eight points' texts up to their ";", as the bytes of the file. Skips everything before the
/// line after the first ";", and the rest of each point's line. Returns nothing if the file cannot
/// be read, ends before the eighth point's ";", or has a point of more than 65536 characters.
std::optional<std::array<std::string, LutPoints>> ReadLut(const std::string &path);

} // namespace ztm
