#include "files/SnapshotFile.h"

#include "common/DateTimeText.h"
#include "common/NumberText.h"
#include "common/RegularFile.h"
#include "files/TextFile.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ztm {
namespace {

/// The map slots that are saved; for a ZTM7720 all registers before the Device ID.
constexpr size_t savedRegisters = 52;

constexpr int mostLines = 4096;

/// The reader looks for the first one, so nothing before the data may contain it.
constexpr char mark = 'x';

std::string TwoHexDigits(int32_t value) {
    std::string digits = HexText(value);
    return digits.insert(0, digits.size() < 2 ? 1 : 0, '0');
}

std::string DataLine(const RegisterEntry &entry, int32_t value) {
    return std::string("0x")
        .append(TwoHexDigits(entry.Address))
        .append(", 0x")
        .append(TwoHexDigits(value))
        .append("\t// ")
        .append(entry.Description)
        .append("\r\n");
}

std::string SnapshotText() {
    std::string date = DateTimeText();
    std::replace(date.begin(), date.end(), mark, 'X');
    std::string text(DeviceName);
    text.append(" Evaluation Software\r\n\r\nSaved: ").append(date);
    text.append("\r\n\r\nAddress, Data\r\n");
    for (size_t index = 0; index < savedRegisters; ++index) {
        const RegisterEntry &entry = RegisterMap[index];
        const int32_t value = ReadRegister(entry.Address);
        if (value != entry.Default) {
            text += DataLine(entry, value);
        }
    }
    return text;
}

/// The number of data lines after the first mark, without the empty line at the end. Nothing if the
/// file cannot be read that far or does not end in a line end.
std::optional<int> CountLines(const std::string &path) {
    std::ifstream file = OpenRegularFile(path);
    if (!SkipPast(file, mark)) {
        return std::nullopt;
    }
    int lines = 0;
    while (file.peek() != std::istream::traits_type::eof() && lines <= mostLines + 1) {
        if (!SkipPast(file, '\n')) {
            return std::nullopt;
        }
        ++lines;
    }
    return lines - 1;
}

bool Skip(std::istream &file, int count) {
    return file.ignore(count).gcount() == count;
}

std::optional<int32_t> NextTwoHexDigits(std::istream &file) {
    std::array<char, 2> digits;
    if (!file.read(digits.data(), digits.size())) {
        return std::nullopt;
    }
    return HexValue({digits.data(), digits.size()});
}

} // namespace

bool SaveSnapshot(const std::string &path) {
    const std::string text = SnapshotText();
    TextFileWriter file;
    return file.Create(path) && file.WriteLine(text) && file.Close();
}

bool RecallSnapshot(const std::string &path) {
    const auto lines = CountLines(path);
    if (!lines || *lines > mostLines) {
        return false;
    }
    std::ifstream file = OpenRegularFile(path);
    if (!SkipPast(file, mark)) {
        return false;
    }
    for (int line = 0; line < *lines; ++line) {
        if (line > 0 && !Skip(file, 2)) {
            return false;
        }
        const auto address = NextTwoHexDigits(file);
        if (!address || !Skip(file, 4)) {
            return false;
        }
        const auto value = NextTwoHexDigits(file);
        if (!value) {
            return false;
        }
        WriteRegister(*address, *value);
        if (!SkipPast(file, '\n')) {
            return false;
        }
    }
    return true;
}

} // namespace ztm
