#include "adapter/firmware/FirmwareFile.h"
#include "support/HexRecords.h"
#include "support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <sys/stat.h>

namespace ztm {
namespace {

using Blocks = std::vector<HexBlock>;
using test::endOfFile;
using test::Record;

constexpr size_t longestFile = 0x100000;

std::optional<Blocks> Take(const std::string &text, std::string &whyNot) {
    std::istringstream stream(text);
    return ReadIntelHex(stream, &whyNot);
}

TEST(IntelHexTest, ReadsTheDataOfSoundFiles) {
    const Blocks abc = {{0x10, {0xAA, 0xBB, 0xCC}}};
    const std::vector<uint8_t> longest(255, 7);
    const std::string segment = Record(2, 0, {0x12, 0x34});
    const struct {
        const char *what;
        std::string text;
        Blocks expected;
    } files[] = {
        {"no data", endOfFile, {}},
        {"longest file", endOfFile + std::string(longestFile - endOfFile.size(), '\n'), {}},
        {"a written-out record", ":03001000AABBCCBC\n" + endOfFile, abc},
        {"lower case, CR LF, no last end", ":03001000aabbccbc\r\n:00000001ff", abc},
        {"empty lines after the end", ":03001000AABBCCBC\n" + endOfFile + "\r\n\n", abc},
        {"out of order and adjoining",
         Record(0, 0x20, {3}) + Record(0, 0x11, {2}) + Record(0, 0x10, {1}) + endOfFile,
         {{0x10, {1, 2}}, {0x20, {3}}}},
        {"longest record", Record(0, 0, longest) + endOfFile, {{0, longest}}},
        {"segment address", segment + Record(0, 5, {9}) + endOfFile, {{0x12345, {9}}}},
        {"linear address replaces segment address",
         segment + Record(4, 0, {0xFF, 0xFF}) + Record(0, 0xFFFF, {9}) + endOfFile,
         {{0xFFFFFFFF, {9}}}},
        {"start addresses",
         Record(3, 0, {1, 2, 3, 4}) + Record(5, 0, {1, 2, 3, 4}) + endOfFile,
         {}},
    };
    for (const auto &file : files) {
        std::string whyNot;
        EXPECT_EQ(Take(file.text, whyNot), file.expected) << file.what << ": " << whyNot;
    }
}

TEST(IntelHexTest, RefusesFaultyFilesAndSaysWhereAndWhy) {
    const std::string good = Record(0, 0x10, {1, 2});
    const struct {
        std::string text;
        const char *whyNot;
    } files[] = {
        {"", "no end-of-file record"},
        {good, "no end-of-file record"},
        {good + "\n" + endOfFile, "line 2: a record must start with a colon"},
        {" " + endOfFile, "line 1: a record must start with a colon"},
        {":", "line 1: the length does not match the byte count"},
        {":0000", "line 1: the length does not match the byte count"},
        {":00000001F", "line 1: the length does not match the byte count"},
        {":01001000AABBCCBE\n", "line 1: the length does not match the byte count"},
        {":00000001FF \n", "line 1: the length does not match the byte count"},
        {":00000001FF\r\r\n", "line 1: the length does not match the byte count"},
        {":0000000GFF\n", "line 1: not a hexadecimal digit"},
        {good + ":03001000AABBCCBD\n" + endOfFile, "line 2: wrong checksum"},
        {Record(6, 0, {}) + endOfFile, "line 1: unknown record type"},
        {Record(1, 1, {}), "line 1: wrong byte count or offset for the record type"},
        {Record(2, 0, {1}), "line 1: wrong byte count or offset for the record type"},
        {Record(4, 2, {1, 2}), "line 1: wrong byte count or offset for the record type"},
        {Record(5, 0, {1, 2}), "line 1: wrong byte count or offset for the record type"},
        {good + Record(0, 0x11, {2}) + endOfFile, "two records give the same byte"},
        {Record(2, 0, {0, 1}) + Record(0, 0, {1}) + Record(4, 0, {0, 0}) + good + endOfFile,
         "two records give the same byte"},
        {Record(0, 0xFFFF, {1, 2}) + endOfFile, "line 1: the data runs past the end of its 64 KiB"},
        {endOfFile + endOfFile, "line 2: text after the end-of-file record"},
        {endOfFile + "\n" + good, "line 3: text after the end-of-file record"},
        {endOfFile + std::string(longestFile, '\n'), "the file is longer than 1 MiB"},
    };
    for (const auto &file : files) {
        std::string whyNot;
        EXPECT_FALSE(Take(file.text, whyNot)) << file.whyNot;
        EXPECT_EQ(whyNot, file.whyNot) << file.text.substr(0, 100);
    }
}

/// A change that another writer of the same file could have made.
bool IsHarmless(char before, char after, bool isLast) {
    return std::toupper(static_cast<unsigned char>(after)) == before || (isLast && after == '\r');
}

TEST(IntelHexTest, NoSingleChangedByteIsReadUnnoticed) {
    const std::string sound = ":01001000AB44\r\n" + endOfFile;
    std::string whyNot;
    const auto expected = Take(sound, whyNot);
    ASSERT_TRUE(expected);
    for (size_t at = 0; at < sound.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = sound;
            changed[at] = static_cast<char>(byte);
            const bool isHarmless = IsHarmless(sound[at], changed[at], at + 1 == sound.size());
            EXPECT_EQ(Take(changed, whyNot), isHarmless ? expected : std::nullopt) << changed;
        }
    }
}

TEST(FirmwareFileTest, OpensOrdinaryFilesAloneByTheirNativePath) {
    EXPECT_EQ(NativePath(R"(a\b\c.Hex)"), R"(a\b/c.Hex)");
    EXPECT_EQ(NativePath(R"(a\b/c.Hex)"), R"(a\b/c.Hex)");
    EXPECT_EQ(NativePath("c.Hex"), "c.Hex");
    const test::TemporaryFolder folder;
    std::string whyNot;
    EXPECT_TRUE(ReadFirmwareFile(folder.Put("sound.Hex", endOfFile), whyNot));
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    for (const char *name : {"missing", "pipe", ""}) {
        whyNot.clear();
        EXPECT_FALSE(ReadFirmwareFile(folder.Path(name), whyNot)) << name;
        EXPECT_NE(whyNot, "") << name;
    }
}

} // namespace
} // namespace ztm
