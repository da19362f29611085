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

/// Writes the points' UTF-8 texts unchanged to a file, see SaveFile. Returns the reason of a
/// failure, empty if there was none.
std::string SaveLut(const std::string &path, const std::array<LutPoint, LutPoints> &points);

/// The eight points' texts up to their ";", as the bytes of the file. Skips everything before the
/// line after the first ";", and the rest of each point's line. Returns nothing if the file cannot
/// be read, see ReadFile, or ends before the eighth point's ";"; `whyNot` then says why.
std::optional<std::array<std::string, LutPoints>> ReadLut(const std::string &path,
                                                          std::string &whyNot);

/// The pieces of a point's text, which commas separate.
struct LutPieces {
    std::string Temperature;
    std::optional<std::string> RPM; ///< none without a comma
};
LutPieces PiecesOf(const std::string &point);

} // namespace ztm
