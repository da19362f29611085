#include "files/SnapshotFile.h"

#include "common/DateTimeText.h"
#include "link/LinkTest.h"
#include "support/TemporaryFile.h"

#include <clocale>

namespace ztm::test {
namespace {

using testing::EndsWith;

std::time_t ADayInJune() {
    std::tm day{};
    day.tm_year = 126;
    day.tm_mon = 5;
    day.tm_mday = 7;
    day.tm_hour = 14;
    day.tm_isdst = -1;
    return std::mktime(&day);
}

using Registers = std::vector<std::pair<int32_t, int32_t>>;

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
        EXPECT_EQ(SaveSnapshot(folder.Path("saved")).Problem, "");
        return BytesOf(folder.Path("saved"));
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

TEST_F(SnapshotFileTest, ListsTheRegistersOfAFileInItsOrder) {
    const std::string odd = "the file does not end like a saved setup";
    const std::string none = "no setup in this file";
    const struct {
        const char *what;
        std::string bytes;
        Registers registers;
        std::string problem;
    } cases[] = {
        {"saved",
         head + "0x01, 0x05\t// a\r\n0x3C, 0xFF\t// b\r\n\r\n",
         {{1, 5}, {0x3C, 0xFF}},
         ""},
        {"any order and variant",
         "ZTM7710\n0x0c, 0xaB \n0x01, 0x00\n0x0C, 0x01\n\n",
         {{0x0C, 0xAB}, {1, 0}, {0x0C, 1}},
         ""},
        {"no empty line at the end", head + "0x01, 0x05\r\n0x02, 0x06\r\n", {{1, 5}}, odd},
        {"no data", head + "\r\n", {}, ""},
        {"empty", "", {}, none},
        {"without a mark", "Address, Data\r\n0X01, 0X05\r\n\r\n", {}, none},
        {"only a mark", "x", {}, odd},
        {"one line", "x01, 0x05\n", {}, odd},
        {"cut inside a line", head + "0x01, 0x05\r\n0x02, 0x06\r\n0x0", {}, odd},
        {"no digits", "x??, 0x??\n\n", {{0, 0}}, ""},
        {"one digit", "x1!, 0x2!\n\n", {{1, 2}}, ""},
        {"lines too short", "x01, 0x05\n\n\n\n", {{1, 5}}, odd},
        {"binary", std::string("\0\xFFx\x80\0\0\0\0\0\xFE\xFF\n\n", 13), {{0, 0}}, ""},
    };
    for (const auto &[what, bytes, registers, problem] : cases) {
        const Snapshot snapshot = ReadSnapshot(folder.Put("file", bytes));
        Registers found;
        for (const auto &[address, value] : snapshot.Registers) {
            found.emplace_back(address, value);
        }
        EXPECT_EQ(found, registers) << what;
        EXPECT_EQ(snapshot.Problem, problem) << what;
    }
    EXPECT_EQ(ReadSnapshot(folder.Path("missing")).Problem, "No such file or directory");
    EXPECT_EQ(SaveSnapshot("/dev/full").Problem, "No space left on device");
}

} // namespace
} // namespace ztm::test
