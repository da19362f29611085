#pragma once

#include <array>
#include <optional>
#include <string>

namespace ztm {

/// Lookup-table files (".lut"): text files with eight points, "30, 1000;" a line.

inline constexpr int LutPoints = 8;

/// A point as it stands in the boxes.
struct LutPoint {
    std::string Temperature;
    std::string RPM;
};

/// Writes the points' texts as they stand, UTF-8, to a file that replaces one of that name.
/// False when that fails.
bool SaveLut(const std::string &path, const std::array<LutPoint, LutPoints> &points);

/// The eight points' texts up to their ";", as the bytes of the file. What stands in front of
/// the first line behind the first ";" is passed by, as is everything behind a point's ";" on
/// its line. None when the file cannot be read, ends before the eighth ";", or has a point of
/// more than 65536 characters.
std::optional<std::array<std::string, LutPoints>> ReadLut(const std::string &path);

} // namespace ztm
