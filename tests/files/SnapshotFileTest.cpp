#include "files/SnapshotFile.h"

#include "common/DateTimeText.h"
#include "link/LinkTest.h"
#include "support/TemporaryFile.h"

#include <clocale>

namespace ztm::test {
namespace {

using testing::EndsWith;
using testing::IsEmpty;

std::time_t ADayInJune() {
    std::tm day{};
    day.tm_year = 126;
    day.tm_mon = 5;
    day.tm_mday = 7;
    day.tm_hour = 14;
    day.tm_isdst = -1;
    return std::mktime(&day);
}

class SnapshotFileTest : public LinkTest {
protected:
    SnapshotFileTest() { HoldDefaults(); }

    static void HoldDefaults() {
        std::setlocale(LC_TIME, "C");
        SetDateTimeSource(ADayInJune);
        for (const RegisterEntry &entry : RegisterMap) {
            Adapter().registers[static_cast<size_t>(entry.Address)] =
                static_cast<uint8_t>(entry.Default);
        }
        Adapter().registers[0] = static_cast<uint8_t>(RegisterMap[0].Default);
    }

    std::string Saved() {
        EXPECT_TRUE(SaveSnapshot(folder.Path("saved")));
        return BytesOf(folder.Path("saved"));
    }

    /// What recalling a file of those bytes writes.
    Calls WritesOf(const std::string &bytes) {
        Adapter().calls.clear();
        RecallSnapshot(folder.Put("recalled", bytes));
        return Adapter().Writes();
    }

    TemporaryFolder folder;
};

const std::string head = "ZTM7720 Evaluation Software\r\n\r\nSaved: 06/07/26 14:00:00\r\n\r\n"
                         "Address, Data\r\n";

TEST_F(SnapshotFileTest, SavesWhatDiffersFromItsDefaultByteForByte) {
    EXPECT_EQ(Saved(), head + "\r\n");
    Adapter().registers[0x01] = 0x05;
    Adapter().registers[0x0F] = 0x0A;
    Adapter().registers[0x3C] = 0xFF;
    Adapter().registers[0x3D] = 0x77; // the first behind those that are saved
    Adapter().calls.clear();
    EXPECT_EQ(Saved(), head + "0x01, 0x05\t// Configuration1\r\n"
                              "0x0F, 0x0A\t// Remote1 Low Limit\r\n"
                              "0x3C, 0xFF\t// Fan Response\r\n\r\n");
    ASSERT_EQ(Adapter().calls.size(), 52U);
    EXPECT_EQ(Adapter().calls.front(), Read(0x00));
    EXPECT_EQ(Adapter().calls.back(), Read(0x3C));
}

TEST_F(SnapshotFileTest, TheOneFanVariantAlsoSavesItsIdentification) {
    StartSession(ZTM7710);
    HoldDefaults();
    Adapter().registers[0x3D] = 0x33;
    const std::string text = Saved();
    EXPECT_THAT(text, testing::StartsWith("ZTM7710 Evaluation Software\r\n"));
    EXPECT_THAT(text, EndsWith("Data\r\n0x3D, 0x33\t// Device ID\r\n\r\n"));
    EXPECT_EQ(Adapter().calls.back(), Read(0x40));
    EXPECT_EQ(Adapter().calls.size(), 52U);
}

TEST_F(SnapshotFileTest, RecallWritesTheLinesInFileOrder) {
    const struct {
        const char *what;
        std::string bytes;
        Calls writes;
    } cases[] = {
        {"saved",
         head + "0x01, 0x05\t// a\r\n0x3C, 0xFF\t// b\r\n\r\n",
         {Write(0x01, 0x05), Write(0x3C, 0xFF)}},
        {"any order and variant",
         "ZTM7710\n0x0c, 0xaB \n0x01, 0x00\n0x0C, 0x01\n\n",
         {Write(0x0C, 0xAB), Write(0x01, 0x00), Write(0x0C, 0x01)}},
        {"no empty line at the end", head + "0x01, 0x05\r\n0x02, 0x06\r\n", {Write(0x01, 0x05)}},
        {"no data", head + "\r\n", {}},
        {"empty", "", {}},
        {"without a mark", "Address, Data\r\n0X01, 0X05\r\n\r\n", {}},
        {"only a mark", "x", {}},
        {"cut inside a line", head + "0x01, 0x05\r\n0x02, 0x06\r\n0x0", {}},
        {"no digits", "x??, 0x??\n\n", {Write(0, 0)}},
        {"one digit", "x1!, 0x2!\n\n", {Write(1, 2)}},
        {"lines too short", "x01, 0x05\n\n\n\n", {Write(0x01, 0x05)}},
        {"binary", std::string("\0\xFFx\x80\0\0\0\0\0\xFE\xFF\n\n", 13), {Write(0, 0)}},
    };
    for (const auto &[what, bytes, writes] : cases) {
        EXPECT_EQ(WritesOf(bytes), writes) << what;
    }
}

TEST_F(SnapshotFileTest, AFileThatCannotBeReadOrWrittenIsNoSnapshot) {
    std::string lines = "x01, 0x05\n";
    while (lines.size() < 200'000) {
        lines += "0x01, 0x05\n";
    }
    EXPECT_THAT(WritesOf(lines + "\n"), IsEmpty());
    EXPECT_FALSE(RecallSnapshot(folder.Path("missing")));
    EXPECT_FALSE(RecallSnapshot(folder.Path(".")));

    const std::string path = folder.Path("gigabyte");
    for (const char *start : {"", "x01, 0x05"}) {
        folder.Put("gigabyte", start);
        std::filesystem::resize_file(path, 1'000'000'000); // one line, of nothing but zeros
        EXPECT_FALSE(RecallSnapshot(path));
        EXPECT_THAT(Adapter().calls, IsEmpty());
    }
    EXPECT_FALSE(SaveSnapshot(folder.Path("missing/file")) || SaveSnapshot("/dev/full"));
}

} // namespace
} // namespace ztm::test
