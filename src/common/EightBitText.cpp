#include "common/EightBitText.h"

#include <algorithm>
#include <array>

namespace ztm {
namespace {

constexpr char32_t noCharacter = 0xFFFF'FFFF;
constexpr char replacement = '?';

/// The characters of the bytes 0x80 to 0x9F; 0 where the set has none.
constexpr std::array<char32_t, 32> between80And9F{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

/// Removes one character from the front of the text; returns `noCharacter` for invalid bytes.
char32_t TakeCharacter(std::string_view &text) {
    const auto byteAt = [&text](size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const unsigned first = byteAt(0);
    size_t length = 1;
    char32_t character = first;
    if (first >= 0xF0) {
        length = 4;
        character = first & 0x07U;
    } else if (first >= 0xE0) {
        length = 3;
        character = first & 0x0FU;
    } else if (first >= 0xC0) {
        length = 2;
        character = first & 0x1FU;
    } else if (first >= 0x80) {
        character = noCharacter;
    }
    for (size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80U) {
            length = index;
            character = noCharacter;
            break;
        }
        character = character << 6U | (byteAt(index) & 0x3FU);
    }
    text.remove_prefix(length);
    return character;
}

char ByteOf(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        return static_cast<char>(character);
    }
    const auto *found = std::find(between80And9F.begin(), between80And9F.end(), character);
    return found != between80And9F.end()
               ? static_cast<char>(0x80 + (found - between80And9F.begin()))
               : replacement;
}

} // namespace

bool AppendWindows1252(std::string &bytes, std::string_view utf8) {
    bool hasAll = true;
    while (!utf8.empty()) {
        const char32_t character = TakeCharacter(utf8);
        bytes.push_back(ByteOf(character));
        hasAll = hasAll && (bytes.back() != replacement || character == replacement);
    }
    return hasAll;
}

} // namespace ztm
