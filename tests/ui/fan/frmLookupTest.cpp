#include "monitor/Events.h"
#include "support/DialogTest.h"
#include "support/TemporaryFile.h"

#include <QClipboard>
#include <QLineEdit>

namespace ztm::test {
namespace {

constexpr const char *eightPoints =
    "30|1000|40|2300|50|3500|60|4000|70|4700|80|5500|90|6000|100|7500";

class LookupTest : public DialogTest {
protected:
    // Each speed's low byte first.
    LookupTest()
        : DialogTest("cmdSetLookups",
                     "22? 23? 24? 25? 26? 27? 28? 29? 2A? 2B? 2C? 2D? 2E? 2F? 30? 31? 32? 33? 34? "
                     "35? 36? 37? 38? 39?") {}

    static std::string Points() {
        const auto texts =
            Shown("txtTemp(0) txtRPM(0) txtTemp(1) txtRPM(1) txtTemp(2) txtRPM(2) txtTemp(3) "
                  "txtRPM(3) txtTemp(4) txtRPM(4) txtTemp(5) txtRPM(5) txtTemp(6) txtRPM(6) "
                  "txtTemp(7) txtRPM(7)");
        return QString::fromStdString(texts).remove(" !").toStdString();
    }

    /// Answers the file dialog of a button.
    static ShownFileDialog Answer(const char *button, const std::string &path) {
        return AnswerFileDialogOf([button] { Click(button); }, QString::fromStdString(path));
    }

    TemporaryFolder folder;
};

TEST_F(LookupTest, CaptionsAndTestPointsFollowTheLayout) {
    const char *twiceFour = "30|1900|40|3800|55|5500|80|6500|40|1500|70|2600|95|4800|105|7000";
    const struct {
        std::string_view variant;
        const char *chip, *captions, *points;
    } cases[] = {
        {ZTM7720, "02=08", "8 Point Lookup Table|Point 1|Point 5|hidden", eightPoints},
        {ZTM7720, "", "2 x 4-Point Lookup Table|Point 1|Point 1|Fan2", twiceFour},
        {ZTM7710, "", "8 Point Lookup Table|Point 1|Point 5|hidden", eightPoints},
    };
    for (const auto &c : cases) {
        Open(c.variant, c.chip);
        EXPECT_EQ(Shown("Frame1 Label3(0) Label3(4) lblFan(1)"), c.captions);
        Click("cmdTestData");
        EXPECT_EQ(Points(), c.points);
        EXPECT_EQ(Asked(), "");
    }
}

TEST_F(LookupTest, ApplyWritesTheTemperaturesAndThenTheSpeeds) {
    // The third speed has no count.
    const std::string written = "22=5E 23=36 24=72 25=7C 26=86 27=90 28=9A 29=A4 2B=04 2A=00 2D=FF "
                                "2C=FF 31=04 30=CD 33=04 32=16 35=03 34=7E 37=03 36=33 39=02 38=8F";
    const char *edited =
        "cmdTestData; txtTemp(1)=-10.5; txtRPM(0)=4800; txtRPM(1)=0; txtRPM(2)=75; ";
    Check("txtTemp(0) txtRPM(0) txtTemp(7) txtRPM(7)",
          {{"02=08 22=FF 29=5E 2A=FF 2B=FF 38=00 39=04",
            (std::string("?; ") + edited + "cmdApply; cmdOK"), written + ' ' + written,
            "191|75|30|4800"}});
    EXPECT_EQ(Events()[1].text, "Lookup table applied");
}

TEST_F(LookupTest, NumbersThatTheChipCannotHoldAreMarked) {
    Open(ZTM7720, "2A=FF 2B=FF");
    EXPECT_EQ(Do("?; txtRPM(0)=0; ?; txtRPM(0)=75; ?; txtRPM(0)=76; ?; txtRPM(0)=-1; ?; "
                 "txtRPM(0)=4915200; ?; txtRPM(0)=4915201; ?",
                 "txtRPM(0)"),
              "75 / 0 / 75 / 76 / -1 ! / 4915200 / 4915201 !")
        << "75 RPM is what the chip holds";
    EXPECT_EQ(
        Do("txtTemp(7)=191; txtTemp(7)+Up; ?; txtTemp(7)+Down; ?; txtTemp(7)+Up; ?", "txtTemp(7)"),
        "191 / 140 / 140");
}

TEST_F(LookupTest, ATableGoesToAFileAndBack) {
    Open(ZTM7710);
    Click("cmdTestData");
    const std::string path = folder.Path("mine.lut");
    const auto shown = Answer("cmdSaveLUT", path);
    EXPECT_TRUE(shown.saves);
    EXPECT_EQ(shown.proposedName, "LUT_Data");
    EXPECT_THAT(shown.filters, testing::ElementsAre("Text Files (*.lut)"));
    EXPECT_TRUE(
        BytesMatch(BytesOf(path),
                   "ZTM7720 Look-up Table Data\r\n\r\nSaved: [^\r\n;]+\r\n\r\nTemperature, RPM;\r\n"
                   "30, 1000;\r\n40, 2300;\r\n50, 3500;\r\n60, 4000;\r\n70, 4700;\r\n80, 5500;\r\n"
                   "90, 6000;\r\n100, 7500;\r\n\r\n"));
    for (int point = 0; point < 8; ++point) {
        Type(QString("txtTemp(%1)").arg(point), "1");
        Type(QString("txtRPM(%1)").arg(point), "");
    }
    const auto opened = Answer("cmdLoadLUT", path);
    EXPECT_FALSE(opened.saves);
    EXPECT_EQ(opened.proposedName, "LUT_Data");
    EXPECT_EQ(Points(), eightPoints);
    EXPECT_EQ(Asked(), "");
    Find<QLineEdit>("txtTemp(0)").setText("12.5 °C Ω");
    Answer("cmdSaveLUT", path);
    EXPECT_THAT(BytesOf(path), testing::HasSubstr(";\r\n12.5 \xB0"
                                                  "C ?, 1000;\r\n"));
    Answer("cmdLoadLUT", "");
    EXPECT_EQ(TextOf("txtTemp(0)"), "12.5 °C Ω") << "cancelled";
    EXPECT_EQ(Shown("lblFileResult"), "8 points saved");
    Answer("cmdSaveLUT", folder.Path("missing/table"));
    EXPECT_EQ(Shown("lblFileResult"), "No such file or directory");
}

TEST_F(LookupTest, AnyFileIsReadWithAWordOfWhatItLacks) {
    const std::string head = "head;\r\n";
    const std::string seven = "1, 10;\n2, 20;\n3, 30;\n4, 40;\n5, 50;\n6, 60;\n7, 70;\n";
    const std::string before = eightPoints;
    const struct {
        const char *what;
        std::string bytes, points, result = "8 points loaded";
    } cases[] = {
        {"LF only", "head;\n" + seven + "8, 80;\n", "1|10|2|20|3|30|4|40|5|50|6|60|7|70|8|80"},
        {"nothing behind the last point", head + seven + "8, 80;",
         "1|10|2|20|3|30|4|40|5|50|6|60|7|70|8|80"},
        {"what else stands on a line",
         "a;b;c\r\n 1 ,\t10 rpm, 11;x;\r\n" + seven.substr(7) + "8.50, -80;",
         "1|10|2|20|3|30|4|40|5|50|6|60|7|70|8.5|-80"},
        {"short", head + seven, before, "fewer than 8 points in this file"},
        {"cut inside the last point", head + seven + "8, 80", before,
         "fewer than 8 points in this file"},
        {"empty", "", before, "no table in this file"},
        {"without a semicolon", "text\n\n", before, "no table in this file"},
        {"a semicolon in the date",
         "Saved: 1;2\r\n\r\nTemperature, RPM;\r\n" + seven + "8, 80;\r\n",
         "0|0|1|10|2|20|3|30|4|40|5|50|6|60|7|70", "point 1: no temperature"},
        {"a point without a comma",
         head + "1, 10;\n2, 20;\n33;\n4, 40;\n5, 5;\n6, 6;\n7, 7;\n8, 8;\n",
         "1|10|2|20|33|3500|60|4000|70|4700|80|5500|90|6000|100|7500",
         "point 3: no speed; the rest was not loaded"},
        {"binary", std::string("\0;\n\xFF\xFE,\0;\n;\n;\n;\n;\n;\n;\n;\n", 23),
         "0|0|0|2300|50|3500|60|4000|70|4700|80|5500|90|6000|100|7500",
         "point 1: no temperature; the rest was not loaded"},
        {"a number beyond all", head + "1, 10;\n1e999, 5;\n" + seven.substr(14) + "8, 8;\n9, 9;\n",
         "1|10|40|2300|50|3500|60|4000|70|4700|80|5500|90|6000|100|7500",
         "point 2: number out of range; the rest was not loaded"},
        {"an endless point", head + std::string(200'000, '1') + seven + "8;", before,
         "point 1: number out of range; the rest was not loaded"},
        {"a blank line",
         head + "1, 10;\r\n2, 20;\r\n\r\n3, 30;\r\n" + seven.substr(21) + "8, 80;\r\n",
         "1|10|2|20|0|30|4|40|5|50|6|60|7|70|8|80", "point 3: no temperature"},
    };
    Open(ZTM7710);
    for (const auto &c : cases) {
        Click("cmdTestData");
        Answer("cmdLoadLUT", folder.Put("table.lut", c.bytes));
        EXPECT_EQ(Points(), c.points) << c.what;
        EXPECT_EQ(Shown("lblFileResult"), c.result) << c.what;
    }
}

TEST_F(LookupTest, EveryEditCanBeTakenBackAndSaysWhatItWouldChange) {
    Open(ZTM7720, "01=80 02=08 22=5E 2A=00 2B=10 2C=FF 2D=FF"); // point 1 at 30 °C, 1200 RPM
    const char *names = "txtTemp(0) txtRPM(0) txtRPM(1) lblWhatWillHappen";
    const std::string outlook = "; the control source of fan 1 is not known; the control source of "
                                "fan 2 is not known";
    EXPECT_EQ(
        Do("?; txtTemp(0)=4; txtTemp(0)=41; txtRPM(0)=1300; txtTemp(0)=42; cmdTestData; ?", names),
        "30|1200|75|Nothing changed" + outlook + " / 30|1000|2300|8 of 8 points changed" + outlook);
    Answer("cmdLoadLUT",
           folder.Put("table.lut",
                      ";\n1, 80;\n2, 80;\n3, 80;\n4, 80;\n5, 80;\n6, 80;\n7, 80;\n8, 80;\n"));
    Find("frmLookup").activateWindow();
    QApplication::clipboard()->setText("50\t600\n60\t0\n");
    EXPECT_EQ(Do("cmdPastePoints; ?; txtTemp(0)+Ctrl+Z; ?; cmdCopyPoints+Ctrl+Z; ?; txtRPM(5)+"
                 "Ctrl+Z; ?; txtTemp(0)+Ctrl+Z; ?; txtTemp(0)+Ctrl+Z; ?; txtTemp(0)+Ctrl+Z; ?; "
                 "txtTemp(0)+Ctrl+Z; ?",
                 "txtTemp(0) txtRPM(0) txtRPM(1) lblFileResult"),
              "50|600|0|2 points pasted / 1|80|80|2 points pasted / 30|1000|2300|2 points pasted / "
              "42|1300|75|2 points pasted / 41|1300|75|2 points pasted / "
              "41|1200|75|2 points pasted / 30|1200|75|2 points pasted / "
              "30|1200|75|2 points pasted");
    EXPECT_EQ(Do("txtTemp(0)+Ctrl+Shift+Z; ?; txtRPM(1)=0; ?", names),
              "41|1200|75|1 of 8 points changed" + outlook + " / 41|1200|0|1 of 8 points changed" +
                  outlook)
        << "0 RPM is the same to the chip";
    EXPECT_EQ(Asked(), "");
}

} // namespace
} // namespace ztm::test
