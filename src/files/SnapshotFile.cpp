#include "files/SnapshotFile.h"

#include "common/DateTimeText.h"
#include "common/EightBitText.h"
#include "common/NumberText.h"
#include "common/WholeFile.h"
#include "files/TextFile.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

namespace ztm {
namespace {

/// The map slots that are saved; for a ZTM7720 all registers before the Device ID.
constexpr size_t savedRegisters = 52;

/// The reader looks for the first one, so nothing before the data may contain it.
constexpr char mark = 'x';

constexpr const char *endOfTitle = " Evaluation Software";
constexpr const char *endOfHeader = "\r\n\r\nAddress, Data\r\n";

/// The registers of the chip that differ from their defaults, and the text with their lines.
std::vector<RegisterSetting> ReadChip(std::string &text) {
    text = SnapshotHeader();
    std::vector<RegisterSetting> registers;
    for (size_t index = 0; index < savedRegisters; ++index) {
        const RegisterEntry &entry = RegisterMap[index];
        const int32_t value = ReadRegister(entry.Address);
        if (value != entry.Default) {
            registers.push_back({entry.Address, value});
            text += SnapshotLine(registers.back(), entry.Description);
        }
    }
    return registers;
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

std::string SnapshotHeader() {
    std::string date = DateTimeText();
    std::replace(date.begin(), date.end(), mark, 'X');
    return DeviceName + endOfTitle + "\r\n\r\nSaved: " + date + endOfHeader;
}

std::string SnapshotLine(const RegisterSetting &setting, std::string_view description) {
    return HexByte(setting.Address)
        .append(", ")
        .append(HexByte(setting.Value))
        .append("\t// ")
        .append(description)
        .append("\r\n");
}

Snapshot SaveSnapshot(const std::string &path) {
    std::string text;
    Snapshot saved{ReadChip(text), DeviceName, {}};
    std::string bytes;
    AppendWindows1252(bytes, text.append("\r\n"));
    saved.Problem = SaveFile(path, bytes);
    return saved;
}

Snapshot ReadSnapshot(const std::string &path) {
    Snapshot snapshot;
    const auto bytes = ReadFile(path, snapshot.Problem);
    if (!bytes) {
        return snapshot;
    }
    for (const std::string_view variant : {ZTM7710, ZTM7720}) {
        if (bytes->starts_with(std::string(variant) + endOfTitle)) {
            snapshot.Variant = variant;
        }
    }
    std::istringstream file(*bytes);
    if (!SkipPast(file, mark)) {
        const bool isEmpty = bytes->find(endOfHeader) != std::string::npos;
        snapshot.Problem = isEmpty ? "" : "no setup in this file";
        return snapshot;
    }
    snapshot.Problem = "the file does not end like a saved setup";
    if (bytes->back() != '\n') {
        return snapshot;
    }
    // The last line is the empty one.
    const auto lines = std::count(bytes->begin() + file.tellg(), bytes->end(), '\n') - 1;
    for (std::ptrdiff_t line = 0; line < lines; ++line) {
        if (line > 0 && !Skip(file, 2)) {
            return snapshot;
        }
        const auto address = NextTwoHexDigits(file);
        if (!address || !Skip(file, 4)) {
            return snapshot;
        }
        const auto value = NextTwoHexDigits(file);
        if (!value) {
            return snapshot;
        }
        snapshot.Registers.push_back({*address, *value});
        if (!SkipPast(file, '\n')) {
            return snapshot;
        }
    }
    const auto rest = bytes->substr(static_cast<size_t>(file.tellg()));
    if (rest == "\n" || rest == "\r\n") {
        snapshot.Problem.clear();
    }
    return snapshot;
}

} // namespace ztm
