#include "Fuzz.h"

#include "files/LutFile.h"

#include <algorithm>

namespace ztm::fuzz {
namespace {

constexpr char endOfPoint = ';';

/// Points come out of the file in its order, and only where it has eight behind its heading.
void ReadAnything(std::string_view text) {
    std::string whyNot;
    const auto points = ReadLut(MemoryFile(text).Path(), whyNot);
    Require(points.has_value() == whyNot.empty(), "a reason exactly where there are no points");
    if (!points) {
        return;
    }
    Require(std::count(text.begin(), text.end(), endOfPoint) > LutPoints, "a point each \";\"");
    size_t from = text.find(endOfPoint);
    for (const std::string &point : *points) {
        from = text.find('\n', from) + 1;
        Require(text.substr(from, point.size() + 1) == point + endOfPoint, "points in file order");
        from += point.size();
    }
}

/// Texts without a ";" come back, whatever they are.
void SaveAndRead(std::string_view text) {
    std::array<LutPoint, LutPoints> points;
    size_t box = 0;
    for (const char character : text) {
        const char plain = static_cast<char>(character & 0x7F);
        if (plain == endOfPoint) {
            box = std::min<size_t>(box + 1, size_t{2} * LutPoints - 1);
        } else {
            (box % 2 == 0 ? points[box / 2].Temperature : points[box / 2].RPM) += plain;
        }
    }
    const MemoryFile file;
    Require(SaveLut(file.Path(), points).empty(), "a table can be saved");
    std::string whyNot;
    const auto read = ReadLut(file.Path(), whyNot);
    Require(read.has_value(), "what was saved can be read");
    for (size_t point = 0; point < LutPoints; ++point) {
        Require((*read)[point] == points[point].Temperature + ", " + points[point].RPM,
                "texts are read as they were saved");
    }
}

} // namespace

void Try(std::string_view text) {
    ReadAnything(text);
    SaveAndRead(text);
}

} // namespace ztm::fuzz
