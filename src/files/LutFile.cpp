#include "files/LutFile.h"

#include "common/DateTimeText.h"
#include "common/RegularFile.h"
#include "files/TextFile.h"

#include <vector>

namespace ztm {
namespace {

constexpr char endOfPoint = ';';
constexpr size_t longestPoint = 65536;

std::optional<std::string> NextPoint(std::istream &file) {
    std::vector<char> text(longestPoint + 1);
    file.getline(text.data(), static_cast<std::streamsize>(text.size()), endOfPoint);
    if (!file.good()) {
        return std::nullopt;
    }
    return std::string(text.data(), static_cast<size_t>(file.gcount()) - 1);
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
    std::ifstream file = OpenRegularFile(path);
    if (!SkipPast(file, endOfPoint)) {
        return std::nullopt;
    }
    std::array<std::string, LutPoints> points;
    for (std::string &point : points) {
        if (!SkipPast(file, '\n')) {
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
