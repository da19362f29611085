#include "adapter/firmware/IntelHex.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <string_view>

namespace ztm {
namespace {

constexpr size_t maxFileBytes = 0x100000;
constexpr uint32_t windowBytes = 0x10000;

enum RecordType : uint8_t {
    Data = 0,
    EndOfFile = 1,
    ExtendedSegmentAddress = 2,
    StartSegmentAddress = 3,
    ExtendedLinearAddress = 4,
    StartLinearAddress = 5
};

/// The byte count that each record type except Data must have.
constexpr std::array<size_t, 6> byteCountOfType = {0, 0, 2, 4, 2, 4};

/// The bytes of one record with their layout: count, offset (high byte first), type, data,
/// checksum.
struct Record {
    std::vector<uint8_t> bytes;

    size_t Count() const { return bytes[0]; }
    uint32_t Offset() const { return Word(1); }
    uint8_t Type() const { return bytes[3]; }
    const uint8_t *Begin() const { return bytes.data() + 4; }
    const uint8_t *End() const { return Begin() + Count(); }
    /// The first two data bytes; only for records that have them.
    uint32_t AddressField() const { return Word(4); }

private:
    uint32_t Word(size_t at) const { return static_cast<uint32_t>(bytes[at] << 8 | bytes[at + 1]); }
};

/// The value of a hexadecimal digit, -1 for any other character.
int DigitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

/// Fills `record` from one line of text. Returns null if it is well formed, otherwise what is
/// wrong.
const char *ParseRecord(std::string_view line, Record &record) {
    constexpr size_t bytesBesideData = 5;
    if (line.empty() || line[0] != ':') {
        return "a record must start with a colon";
    }
    line.remove_prefix(1);
    record.bytes.clear();
    for (size_t i = 0; i + 1 < line.size(); i += 2) {
        const int high = DigitValue(line[i]);
        const int low = DigitValue(line[i + 1]);
        if (high < 0 || low < 0) {
            return "not a hexadecimal digit";
        }
        record.bytes.push_back(static_cast<uint8_t>(high * 16 + low));
    }
    if (line.size() % 2 != 0 || record.bytes.size() < bytesBesideData ||
        record.bytes.size() != bytesBesideData + record.Count()) {
        return "the length does not match the byte count";
    }
    if (std::accumulate(record.bytes.begin(), record.bytes.end(), 0U) % 256 != 0) {
        return "wrong checksum";
    }
    if (record.Type() >= byteCountOfType.size()) {
        return "unknown record type";
    }
    if (record.Type() != Data &&
        (record.Offset() != 0 || record.Count() != byteCountOfType[record.Type()])) {
        return "wrong byte count or offset for the record type";
    }
    return nullptr;
}

/// Takes the lines of a file one by one and collects the data.
class Reader {
public:
    /// Returns null if the line is accepted, otherwise what is wrong.
    const char *Take(std::string_view line) {
        if (ended) {
            return line.empty() ? nullptr : "text after the end-of-file record";
        }
        if (const char *fault = ParseRecord(line, record)) {
            return fault;
        }
        switch (record.Type()) {
        case Data:
            return TakeData();
        case EndOfFile:
            ended = true;
            break;
        case ExtendedSegmentAddress:
            base = record.AddressField() << 4;
            break;
        case ExtendedLinearAddress:
            base = record.AddressField() << 16;
            break;
        default:
            break;
        }
        return nullptr;
    }

    /// Sorts and joins the collected data. Returns null if the file is complete and valid.
    const char *Finish() {
        if (!ended) {
            return "no end-of-file record";
        }
        std::sort(blocks.begin(), blocks.end(),
                  [](const HexBlock &a, const HexBlock &b) { return a.address < b.address; });
        std::vector<HexBlock> joined;
        for (HexBlock &block : blocks) {
            const uint64_t end = joined.empty() ? 0 : EndOf(joined.back());
            if (block.address < end) {
                return "two records give the same byte";
            }
            if (joined.empty() || block.address != end) {
                joined.push_back(std::move(block));
                continue;
            }
            std::vector<uint8_t> &data = joined.back().data;
            data.insert(data.end(), block.data.begin(), block.data.end());
        }
        blocks = std::move(joined);
        return nullptr;
    }

    std::vector<HexBlock> blocks;

private:
    static uint64_t EndOf(const HexBlock &block) { return block.address + block.data.size(); }

    const char *TakeData() {
        if (record.Offset() + record.Count() > windowBytes) {
            return "the data runs past the end of its 64 KiB";
        }
        if (record.Count() != 0) {
            blocks.push_back({base + record.Offset(), {record.Begin(), record.End()}});
        }
        return nullptr;
    }

    Record record;
    uint32_t base = 0;
    bool ended = false;
};

/// Passes the file's lines, without line ends, to the reader and finishes it. Empty if all is well,
/// otherwise the reason for refusing the file.
std::string ReadLines(std::string_view text, Reader &reader) {
    for (size_t lineNumber = 1; !text.empty(); ++lineNumber) {
        const size_t length = text.find('\n');
        std::string_view line = text.substr(0, length);
        text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (const char *fault = reader.Take(line)) {
            return "line " + std::to_string(lineNumber) + ": " + fault;
        }
    }
    const char *fault = reader.Finish();
    return fault ? fault : "";
}

} // namespace

std::optional<std::vector<HexBlock>> ReadIntelHex(std::istream &file, std::string *whyNot) {
    std::string text(maxFileBytes + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(file.gcount()));

    Reader reader;
    std::string fault;
    if (file.bad()) {
        fault = "the file cannot be read";
    } else if (text.size() > maxFileBytes) {
        fault = "the file is longer than 1 MiB";
    } else {
        fault = ReadLines(text, reader);
    }
    if (fault.empty()) {
        return std::move(reader.blocks);
    }
    if (whyNot) {
        *whyNot = fault;
    }
    return std::nullopt;
}

} // namespace ztm
