#include "files/LutFile.h"

#include "common/DateTimeText.h"
#include "common/EightBitText.h"
#include "common/WholeFile.h"
#include "files/TextFile.h"

#include <sstream>

namespace ztm {
namespace {

constexpr char endOfPoint = ';';

} // namespace

std::string SaveLut(const std::string &path, const std::array<LutPoint, LutPoints> &points) {
    std::string text = "ZTM7720 Look-up Table Data\r\n\r\nSaved: ";
    text.append(DateTimeText()).append("\r\n\r\nTemperature, RPM;\r\n");
    for (const LutPoint &point : points) {
        text.append(point.Temperature).append(", ").append(point.RPM).append(";\r\n");
    }
    std::string bytes;
    AppendWindows1252(bytes, text.append("\r\n"));
    return SaveFile(path, bytes);
}

std::optional<std::array<std::string, LutPoints>> ReadLut(const std::string &path,
                                                          std::string &whyNot) {
    const auto bytes = ReadFile(path, whyNot);
    if (!bytes) {
        return std::nullopt;
    }
    std::istringstream file(*bytes);
    if (!SkipPast(file, endOfPoint)) {
        whyNot = "no table in this file";
        return std::nullopt;
    }
    std::array<std::string, LutPoints> points;
    for (std::string &point : points) {
        if (!SkipPast(file, '\n') || !std::getline(file, point, endOfPoint).good()) {
            whyNot = "fewer than 8 points in this file";
            return std::nullopt;
        }
    }
    return points;
}

LutPieces PiecesOf(const std::string &point) {
    const size_t comma = point.find(',');
    LutPieces pieces{point.substr(0, comma), {}};
    if (comma != std::string::npos) {
        pieces.RPM = point.substr(comma + 1, point.find(',', comma + 1) - comma - 1);
    }
    return pieces;
}

} // namespace ztm
