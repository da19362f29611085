#include "files/LutFile.h"

#include "common/DateTimeText.h"
#include "files/TextFile.h"

namespace ztm {
namespace {

constexpr char endOfPoint = ';';
constexpr size_t longestPoint = 65536;

std::optional<std::string> NextPoint(TextFileReader &file) {
    std::string point;
    while (const auto character = file.Next()) {
        if (*character == endOfPoint) {
            return point;
        }
        if (point.size() == longestPoint) {
            return std::nullopt;
        }
        point += *character;
    }
    return std::nullopt;
}

} // namespace

bool SaveLut(const std::string &path, const std::array<LutPoint, LutPoints> &points) {
    std::string text = "ZTM7720 Look-up Table Data\r\n\r\nSaved: ";
    text.append(DateTimeText()).append("\r\n\r\nTemperature, RPM;\r\n");
    for (const LutPoint &point : points) {
        text.append(point.Temperature).append(", ").append(point.RPM).append(";\r\n");
    }
    TextFileWriter file;
    return file.Create(path) && file.WriteLine(text) && file.Close();
}

std::optional<std::array<std::string, LutPoints>> ReadLut(const std::string &path) {
    TextFileReader file;
    if (!file.Open(path) || !file.SkipPast(endOfPoint)) {
        return std::nullopt;
    }
    std::array<std::string, LutPoints> points;
    for (std::string &point : points) {
        if (!file.SkipPast('\n')) {
            return std::nullopt;
        }
        auto text = NextPoint(file);
        if (!text) {
            return std::nullopt;
        }
        point = std::move(*text);
    }
    return points;
}

} // namespace ztm
