#include "ui/fan/frmLookup.h"

#include "link/LinkState.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ztm::test {
namespace {

using testing::IsEmpty;

constexpr const char *eightPoints =
    "30 1000|40 2300|50 3500|60 4000|70 4700|80 5500|90 6000|100 7500";
constexpr const char *twiceFourPoints =
    "30 1900|40 3800|55 5500|80 6500|40 1500|70 2600|95 4800|105 7000";

class LookupTest : public UiTest {
protected:
    static void Open(std::string_view variant, bool eightPointMode) {
        DeleteAllForms();
        ResetCore();
        for (size_t address = 0x22; address <= 0x39; ++address) {
            Adapter().registers[address] = 0xFF;
        }
        Adapter().registers[0x01] = 0x80;
        Adapter().registers[0x02] = eightPointMode ? 0x08 : 0x00;
        StartSessionOf(variant);
        ClickTab("Control");
        Click("cmdSetLookups");
        Settle();
    }

    static std::string Points() {
        QStringList points;
        for (int point = 0; point < 8; ++point) {
            points += TextOf(QString("txtTemp(%1)").arg(point)) + ' ' +
                      TextOf(QString("txtRPM(%1)").arg(point));
        }
        return points.join('|').toStdString();
    }

    std::string PointsAfterLoading(const std::string &bytes) {
        const std::string path = folder.Put("table.lut", bytes);
        AnswerFileDialogOf([] { Click("cmdLoadLUT"); }, QString::fromStdString(path));
        return Points();
    }

    static void ClickIn(const char *button) {
        Find("frmLookup").findChild<QPushButton *>(button)->click();
    }

    TemporaryFolder folder;
};

TEST_F(LookupTest, ReadsTheTemperaturesAndThenTheSpeeds) {
    Open(ZTM7720, true);
    std::vector<Call> expected;
    for (int32_t address = 0x22; address <= 0x39; ++address) {
        expected.push_back(Read(address)); // each speed's low byte first
    }
    EXPECT_EQ(Adapter().calls, expected);
    EXPECT_EQ(Points(), "191 75|191 75|191 75|191 75|191 75|191 75|191 75|191 75");
    EXPECT_EQ(Find("frmLookup").windowTitle(), "Set Lookup Points");
    EXPECT_TRUE(Find("txtRPM(0)").toolTip().isEmpty()) << "the chip holds it already";
}

TEST_F(LookupTest, CaptionsFollowTheLayout) {
    const struct {
        std::string_view variant;
        bool eight;
        const char *caption, *fifth;
    } cases[] = {{ZTM7720, true, "8 Point Lookup Table", "Point 5"},
                 {ZTM7720, false, "2 x 4-Point Lookup Table", "Point 1"},
                 {ZTM7710, false, "8 Point Lookup Table", "Point 5"}};
    for (const auto &c : cases) {
        Open(c.variant, c.eight);
        EXPECT_EQ(Find("frmLookup").findChild<QGroupBox *>("Frame1")->title(), c.caption);
        EXPECT_EQ(TextOf("Label3(0)"), "Point 1");
        EXPECT_EQ(TextOf("Label3(4)"), c.fifth);
        EXPECT_EQ(Find("lblFan(1)").isVisible(), c.fifth == std::string("Point 1"));
        Adapter().calls.clear();
        Click("cmdTestData");
        EXPECT_EQ(Points(), c.fifth == std::string("Point 5") ? eightPoints : twiceFourPoints);
        EXPECT_THAT(Adapter().calls, IsEmpty());
    }
}

TEST_F(LookupTest, ApplyWritesTheTemperaturesAndThenTheSpeeds) {
    Open(ZTM7720, true);
    Click("cmdTestData");
    Type("txtTemp(1)", "-10.5");
    Type("txtRPM(0)", "4800");
    Type("txtRPM(1)", "0");
    Type("txtRPM(2)", "75");
    Adapter().calls.clear();
    ClickIn("cmdApply");
    std::vector<Call> expected;
    const int32_t bytes[] = {94, 54, 114, 124, 134, 144, 154, 164};
    for (int32_t point = 0; point < 8; ++point) {
        expected.push_back(Write(0x22 + point, bytes[point]));
    }
    const auto speed = [&](int32_t point, int32_t count) {
        expected.push_back(Write(0x2B + 2 * point, count / 256));
        expected.push_back(Write(0x2A + 2 * point, count % 256));
    };
    speed(0, 1024);
    speed(1, 0xFFFF);
    const double rpms[] = {4000, 4700, 5500, 6000, 7500}; // the third has no count
    for (int32_t point = 3; point < 8; ++point) {
        speed(point, static_cast<int32_t>(std::nearbyint(4915200 / rpms[point - 3])));
    }
    EXPECT_EQ(Adapter().calls, expected);
    EXPECT_TRUE(Find("frmLookup").isVisible());
    ClickIn("cmdOK");
    EXPECT_EQ(LoadedForm<frmLookup>(), nullptr);
    Adapter().calls.clear();
    Click("cmdSetLookups");
    ClickIn("cmdCancel");
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

TEST_F(LookupTest, NumbersThatTheChipCannotHoldAreMarked) {
    Open(ZTM7720, true);
    const struct {
        const char *box, *text;
        bool marked;
    } cases[] = {{"txtTemp(0)", "191", false},    {"txtTemp(0)", "192", true},
                 {"txtTemp(7)", "-64", false},    {"txtTemp(7)", "-65", true},
                 {"txtRPM(0)", "0", false},       {"txtRPM(0)", "75", true},
                 {"txtRPM(7)", "76", false},      {"txtRPM(7)", "-1", true},
                 {"txtRPM(7)", "4915200", false}, {"txtRPM(7)", "4915201", true}};
    for (const auto &c : cases) {
        Type(c.box, c.text);
        EXPECT_EQ(!Find(c.box).toolTip().isEmpty(), c.marked) << c.box << ' ' << c.text;
    }
    Type("txtRPM(3)", "14980");
    Click("txtRPM(3)SpinUp");
    EXPECT_EQ(TextOf("txtRPM(3)"), "15000");
    Type("txtTemp(3)", "140");
    Click("txtTemp(3)SpinUp");
    EXPECT_EQ(TextOf("txtTemp(3)"), "140");
}

TEST_F(LookupTest, ATableGoesToAFileAndBack) {
    Open(ZTM7710, true);
    Click("cmdTestData");
    const QString path = QString::fromStdString(folder.Path("mine"));
    const auto shown = AnswerFileDialogOf([] { Click("cmdSaveLUT"); }, path);
    EXPECT_TRUE(shown.saves);
    EXPECT_EQ(shown.proposedName, "LUT_Data");
    EXPECT_THAT(shown.filters, testing::ElementsAre("Text Files (*.lut)"));
    EXPECT_EQ(shown.folder, QCoreApplication::applicationDirPath());
    EXPECT_TRUE(
        BytesMatch(BytesOf(folder.Path("mine")),
                   "ZTM7720 Look-up Table Data\r\n\r\nSaved: [^\r\n;]+\r\n\r\nTemperature, RPM;\r\n"
                   "30, 1000;\r\n40, 2300;\r\n50, 3500;\r\n60, 4000;\r\n70, 4700;\r\n80, 5500;\r\n"
                   "90, 6000;\r\n100, 7500;\r\n\r\n"));
    for (int point = 0; point < 8; ++point) {
        Type(QString("txtTemp(%1)").arg(point), "1");
        Type(QString("txtRPM(%1)").arg(point), "");
    }
    Adapter().calls.clear();
    const auto opened = AnswerFileDialogOf([] { Click("cmdLoadLUT"); }, path);
    EXPECT_FALSE(opened.saves);
    EXPECT_EQ(opened.proposedName, "LUT_Data");
    EXPECT_EQ(Points(), eightPoints);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Find<QLineEdit>("txtTemp(0)").setText("12.5 °C Ω");
    AnswerFileDialogOf([] { Click("cmdSaveLUT"); }, path);
    EXPECT_THAT(BytesOf(folder.Path("mine")), testing::HasSubstr(";\r\n12.5 \xB0"
                                                                 "C ?, 1000;\r\n"));
    AnswerFileDialogOf([] { Click("cmdLoadLUT"); }, "");
    EXPECT_EQ(TextOf("txtTemp(0)"), "12.5 °C Ω") << "cancelled";
}

TEST_F(LookupTest, AnyFileIsReadWithoutAWord) {
    const std::string head = "head;\r\n";
    const std::string seven = "1, 10;\n2, 20;\n3, 30;\n4, 40;\n5, 50;\n6, 60;\n7, 70;\n";
    const std::string before = eightPoints;
    const struct {
        const char *what;
        std::string bytes, points;
    } cases[] = {
        {"LF only", "head;\n" + seven + "8, 80;\n", "1 10|2 20|3 30|4 40|5 50|6 60|7 70|8 80"},
        {"nothing behind the last point", head + seven + "8, 80;",
         "1 10|2 20|3 30|4 40|5 50|6 60|7 70|8 80"},
        {"what else stands on a line",
         "a;b;c\r\n 1 ,\t10 rpm, 11;x;\r\n" + seven.substr(7) + "8.50, -80;",
         "1 10|2 20|3 30|4 40|5 50|6 60|7 70|8.5 -80"},
        {"short", head + seven, before},
        {"cut inside the last point", head + seven + "8, 80", before},
        {"empty", "", before},
        {"without a semicolon", "text\n\n", before},
        {"a semicolon in the date",
         "Saved: 1;2\r\n\r\nTemperature, RPM;\r\n" + seven + "8, 80;\r\n",
         "0 0|1 10|2 20|3 30|4 40|5 50|6 60|7 70"},
        {"a point without a comma",
         head + "1, 10;\n2, 20;\n33;\n4, 40;\n5, 5;\n6, 6;\n7, 7;\n8, 8;\n",
         "1 10|2 20|33 3500|60 4000|70 4700|80 5500|90 6000|100 7500"},
        {"binary", std::string("\0;\n\xFF\xFE,\0;\n;\n;\n;\n;\n;\n;\n;\n", 23),
         "0 0|0 2300|50 3500|60 4000|70 4700|80 5500|90 6000|100 7500"},
        {"a number beyond all", head + "1, 10;\n1e999, 5;\n" + seven.substr(14) + "8, 8;\n9, 9;\n",
         "1 10|40 2300|50 3500|60 4000|70 4700|80 5500|90 6000|100 7500"},
        {"an endless point", head + std::string(200'000, '1') + seven + "8;", before},
    };
    Open(ZTM7720, true);
    for (const auto &c : cases) {
        Click("cmdTestData");
        EXPECT_EQ(PointsAfterLoading(c.bytes), c.points) << c.what;
    }
}

} // namespace
} // namespace ztm::test
