#include "regmap/RegisterTree.h"
#include "support/UiTest.h"
#include "ui/kit/Twips.h"

#include <QAccessible>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RegisterAccessPageTest : public UiTest {
protected:
    RegisterAccessPageTest() { Open(ZTM7720); }

    static void Open(std::string_view variant) {
        DeleteAllForms();
        ResetCore();
        StartSessionOf(variant);
        ClickTab("Register Access");
        Settle();
        Adapter().calls.clear();
    }

    static void ReadAt(const char *address) {
        Type("txtReadAddr", address);
        Click("cmdRead");
        Adapter().calls.clear();
    }

    /// The names of the bits with their values.
    static QString Bits() {
        QStringList bits;
        for (int bit = 7; bit >= 0; --bit) {
            bits += TextOf(QString("lblInfo(%1)").arg(7 - bit)) + "=" +
                    TextOf(QString("lblBit(%1)").arg(bit));
        }
        return bits.join(' ');
    }

    static QString Shown() {
        return TextOf("lblRegDescription") + "|" + TextOf("lblCurrentAddr") + "|" +
               TextOf("txtReadAddr") + "|" + TextOf("lblHexVal") + "|" + TextOf("lblDecVal");
    }
};

TEST_F(RegisterAccessPageTest, ReadAndWriteUseTheRegisterAtTheAddressIfThereIsOne) {
    Adapter().registers[0xFE] = 0x0A;
    const std::tuple<const char *, int, bool, const char *> cases[] = {
        {"3d", 0x3D, false, "Device ID|3Dh|3DH|34|52"},
        {"3DH", 0x3D, false, "Device ID|3Dh|3DH|34|52"},
        {" 3 d ", 0x3D, false, "Device ID|3Dh|3DH|34|52"},
        {"FE", 0xFE, false, "Unknown|FEh|FEH|A|10"},
        {"", 0x00, false, "#Bytes/BlockRead|0h|0H|0|0"},

        {"h", 0x00, true, "#Bytes/BlockRead|0h|0H|0|0"},
        {"08h2", 0x08, true, "Mask1|8h|8H|0|0"},
        {"-1", 0x00, true, "#Bytes/BlockRead|0h|0H|0|0"},
        {"100", -1, true, "Unknown|100h|100H||"},
        {"FFFF", -1, true, "Unknown|FFFFFFFFh|FFFFFFFFH||"},
        {"12345678", -1, true, "Unknown|12345678h|12345678H||"},
        {"123456789", -1, true, "Unknown|7FFFFFFFh|7FFFFFFFH||"},
    };
    for (const auto &[typed, address, marked, shown] : cases) {
        SCOPED_TRACE(typed);
        Find<QLineEdit>("txtReadAddr").clear();
        Type("txtReadAddr", typed);
        EXPECT_EQ(!Find("txtReadAddr").toolTip().isEmpty(), marked);
        Adapter().calls.clear();
        Click("cmdRead");
        EXPECT_EQ(Shown().toStdString(), shown);
        if (address < 0) {
            Click("cmdWrite");
            Click("lblBit(0)");
            EXPECT_THAT(Adapter().calls, IsEmpty());
        } else {
            EXPECT_THAT(Adapter().calls, ElementsAre(Read(address)));
        }
    }
    ReadAt("8");
    EXPECT_EQ(Bits(), "LH=0 LL=0 R1H=0 R1L=0 R1D=0 R2H=0 R2L=0 R2D=0");
    ReadAt("FE");
    EXPECT_EQ(Bits(), "7=0 6=0 5=0 4=0 3=1 2=0 1=1 0=0");
}

TEST_F(RegisterAccessPageTest, ValueBoxesStayInStepAndWriteSendsWhatIsTaken) {
    Type("txtReadAddr", "b");
    const std::tuple<const char *, const char *, const char *, const char *, bool, int32_t>
        cases[] = {
            {"txtDec", "255", "FF", "255", false, 255},
            {"txtDec", "x", "0", "0", false, 0},
            {"txtDec", "100", "64", "100", false, 100},
            {"txtDec", "2.5", "2", "2.5", false, 2},
            {"txtDec", "12abc", "C", "12abc", true, 12},
            {"txtDec", "0-1", "0", "0-1", true, 0},
            {"txtDec", "+", "0", "+", true, 0},
            {"txtDec", "e5", "0", "e5", true, 0},
            {"txtDec", "1e1", "A", "10", false, 10},
            {"txtDec", "12.", "C", "12.", false, 12},
            {"txtDec", "1e3", "3E8", "1000", true, 255},
            {"txtDec", "256", "100", "256", true, 255},
            {"txtHex", "1f", "1F", "31", false, 31},
            {"txtHex", "1Fg", "1Fg", "31", true, 31},
            {"txtHex", "FFFF", "FFFFFFFF", "-1", true, 0},
            {"txtHex", "q", "0", "0", false, 0},
        };
    for (const auto &[box, typed, hex, decimal, marked, written] : cases) {
        SCOPED_TRACE(typed);
        Type(box, typed);
        EXPECT_EQ(TextOf("txtHex"), hex);
        EXPECT_EQ(TextOf("txtDec"), decimal);
        EXPECT_EQ(!Find(box).toolTip().isEmpty(), marked);
        Adapter().calls.clear();
        Click("cmdWrite");
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0B, written), Read(0x0B)));
        EXPECT_EQ(TextOf("lblDecVal"), QString::number(written));
    }
}

TEST_F(RegisterAccessPageTest, UpperCasingTheAddressKeepsTheCaret) {
    auto &box = Find<QLineEdit>("txtReadAddr");
    box.clear();
    const std::tuple<int, const char *, const char *, int> cases[] = {
        {0, "ad", "AD", 2}, {1, "bc", "ABCD", 3}, {0, "\u00DF", "SSABCD", 2}};
    for (const auto &[caretBefore, typed, text, caret] : cases) {
        box.setCursorPosition(caretBefore);
        QTest::keyClicks(&box, typed);
        EXPECT_EQ(box.text(), text);
        EXPECT_EQ(box.cursorPosition(), caret) << text;
    }
}

TEST_F(RegisterAccessPageTest, CtrlZLeadsToWhatWasThereAndTheValueBoxesStayInStep) {
    const auto undo = [](const char *name) {
        QTest::keyClick(&Find(name), Qt::Key_Z, Qt::ControlModifier);
        return (TextOf(name) + '|' + TextOf("txtHex") + '|' + TextOf("txtDec")).toStdString();
    };
    ReadAt("b");
    Type("txtReadAddr", "3d");
    EXPECT_EQ(undo("txtReadAddr"), "BH||");
    Type("txtReadAddr", "3d");
    Click("cmdRead");
    EXPECT_EQ(undo("txtReadAddr"), "BH||");
    Type("txtDec", "31");
    for (const char *typed : {"1e1", "x"}) {
        Type("txtDec", typed);
        EXPECT_EQ(undo("txtDec"), "31|1F|31") << typed;
    }
    Type("txtDec", "");
    EXPECT_EQ(Find<QLineEdit>("txtDec").selectedText(), "0");
    QTest::keyClicks(&Find("txtDec"), "7");
    EXPECT_EQ(TextOf("txtHex"), "7");
    EXPECT_EQ(undo("txtHex"), "0|0|0");
    EXPECT_EQ(undo("txtHex"), "1F|1F|31");
    Type("txtHex", "a");
    EXPECT_EQ(undo("txtHex"), "1F|1F|31");
}

TEST_F(RegisterAccessPageTest, EnterReadsOrWritesAndTheNextAddressReplacesTheLast) {
    Type("txtDec", "5");
    const std::vector<Call> reads{Read(0x0B)};
    const std::vector<Call> writes{Write(0x0B, 5), Read(0x0B)};
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const char *control : {"txtReadAddr", "cmdRead", "txtHex", "txtDec", "cmdWrite"}) {
            Type("txtReadAddr", "B");
            Adapter().calls.clear();
            Press(control, key);
            EXPECT_EQ(Adapter().calls, QString(control).contains("Read") ? reads : writes);
        }
        Press("txtReadAddr", key);
        QTest::keyClicks(&Find("txtReadAddr"), "0a");
        Press("txtReadAddr", key);
        EXPECT_EQ(TextOf("lblCurrentAddr"), "Ah");
    }
}

TEST_F(RegisterAccessPageTest, AFlippedBitStartsFromTheValueShownAndEndsAtTheOneReadBack) {
    Adapter().registers[0x0B] = 0x04;
    ReadAt("B");
    Adapter().registers[0x0B] = 0xFF;
    Adapter().script = [](const Call &call) {
        if (call == Read(0x0B)) {
            Adapter().registers[0x0B] |= 0x80; // a bit that stays
        }
        return int16_t{0};
    };
    EXPECT_EQ(TextOf("lblBitTarget"), "");
    Type("txtReadAddr", "c");
    EXPECT_THAT(TextOf("lblBitTarget").toStdString(), testing::HasSubstr("register Ch"));
    Type("txtReadAddr", "b");
    EXPECT_EQ(TextOf("lblBitTarget"), "");
    QTest::mouseClick(&Find("lblBit(6)"), Qt::RightButton);
    QTest::mousePress(&Find("lblBit(6)"), Qt::LeftButton);
    QTest::mouseRelease(&Find("lblBit(6)"), Qt::LeftButton, {}, {-9, 5});
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Click("lblBit(3)");
    Click("lblBit(2)");
    Press("lblBit(7)", Qt::Key_Space);
    EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0B, 0x0C), Read(0x0B), Write(0x0B, 0x88),
                                             Read(0x0B), Write(0x0B, 0x08), Read(0x0B)));
    EXPECT_EQ(Bits(), "7=1 6=0 5=0 4=0 3=1 2=0 1=0 0=0");
}

TEST_F(RegisterAccessPageTest, WhatIsReadIsToldToAssistiveTechnologyAndWhoHovers) {
    Adapter().registers[0x01] = 0x80;
    ReadAt("1");
    for (const auto &[name, told] : {std::pair{"lblRegDescription", "Configuration1"},
                                     {"lblHexVal", "80"},
                                     {"lblBit(7)", "Bit 7, TBL/SW"},
                                     {"txtReadAddr", "Address"}}) {
        const auto *access = QAccessible::queryAccessibleInterface(&Find(name));
        EXPECT_EQ(access->text(QAccessible::Name), told);
    }
    auto *bit = QAccessible::queryAccessibleInterface(&Find("lblBit(7)"));
    EXPECT_TRUE(bit->state().checked);
    bit->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_THAT(Adapter().Writes(), ElementsAre(Write(0x01, 0x00)));
    EXPECT_FALSE(bit->state().checked);
    for (const auto &[bit, name] : {std::pair{"lblBit(0)", "MON/SB"}, {"lblBit(7)", "TBL/SW"}}) {
        QTest::mouseMove(&Find(bit), QPoint(4, 4));
        EXPECT_EQ(Find(bit).toolTip(), name);
    }
}

TEST_F(RegisterAccessPageTest, BitsAreLaidOutForTheWidthOfTheirFrame) {
    for (const int width : {800, 1400}) {
        Find("frmMain").resize(width, 700);
        Settle();
        const auto &frame = Find("fraBits");
        const double bitWidth = (frame.width() - Twips(200, frame)) / 8.0;
        int right = frame.width() - Twips(100, frame);
        for (int bit = 0; bit < 8; ++bit) {
            const QRect place = Find(QString("lblBit(%1)").arg(bit)).geometry();
            const QRect name = Find(QString("lblInfo(%1)").arg(7 - bit)).geometry();
            EXPECT_NEAR(place.right() + 1, right, bit == 0 ? 1 : 0);
            EXPECT_EQ(place.top(), Twips(240, frame));
            EXPECT_NEAR(place.width(), bitWidth, 1);
            EXPECT_NEAR(name.center().x(), place.center().x(), 1);
            EXPECT_GT(name.top(), place.bottom());
            right = place.left();
        }
        EXPECT_NEAR(right, Twips(100, frame), 1);
    }
}

TEST_F(RegisterAccessPageTest, ChoosingANodeShowsItsRegister) {
    for (const auto &[variant, index] : {std::pair{ZTM7720, 56}, {ZTM7710, 52}}) {
        Open(variant);
        for (const char *text : {"Temperature", "Local", "General"}) {
            ClickNode(text);
        }
        EXPECT_THAT(Adapter().calls, IsEmpty()) << "roots and groups choose nothing";
        EXPECT_EQ(SelectedRegisterIndex, 0);
        ClickNode("Local Temperature(MSB)");
        EXPECT_EQ(SelectedRegisterIndex, index);
        EXPECT_EQ(Shown(), "Local Temperature(MSB)|41h|41H|0|0");
        EXPECT_EQ(Bits(), "12=0 11=0 10=0 9=0 8=0 7=0 6=0 5=0");
        ClickNode("Local Temperature(MSB)");
        EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x41), Read(0x41)));
    }
}

TEST_F(RegisterAccessPageTest, TheTreeIsUsableByKeyboardAndItsChoiceIsReadAfreshOnReturn) {
    ClickNode("Configuration");
    Press("TreeView1", Qt::Key_Right);
    Press("TreeView1", Qt::Key_Down);
    EXPECT_EQ(TextOf("lblRegDescription"), "Configuration1");
    Press("TreeView1", Qt::Key_Return);
    ClickTab("Control");
    Adapter().registers[0x01] = 77;
    ClickTab("Register Access");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x01), Read(0x01), Read(0x01)));
    EXPECT_EQ(TextOf("lblDecVal"), "77");
}

TEST_F(RegisterAccessPageTest, TheTreeHasColoursByLevel) {
    const auto &tree = Find<QTreeWidget>("TreeView1");
    EXPECT_EQ(tree.indentation(), Twips(200, tree));
    const auto *node = tree.topLevelItem(0);
    EXPECT_TRUE(node->isExpanded());
    EXPECT_FALSE(tree.topLevelItem(1)->isExpanded());
    for (const QColor colour : {QColor(0, 128, 0), QColor(192, 0, 0), QColor(0, 0, 192)}) {
        EXPECT_EQ(node->foreground(0).color(), colour);
        node = node->child(0);
    }
    EXPECT_EQ(tree.findItems("", Qt::MatchContains | Qt::MatchRecursive).size(), 82);
}

TEST_F(RegisterAccessPageTest, ContinuousReadRepeatsWhileItsTabIsShownAndLeavesTheBoxInUse) {
    Click("chkContRead");
    auto &box = Find<QLineEdit>("txtReadAddr");
    box.clear();
    for (const char digit : {'4', '1'}) {
        QTest::keyClick(&box, digit);
        clock.Advance(0.6);
        Tick();
    }
    EXPECT_TRUE(Shown().startsWith("Local Temperature(MSB)|41h|41H|"));
    box.selectAll();
    clock.Advance(0.6);
    Tick();
    EXPECT_EQ(box.selectedText(), "41H");
    box.clear();
    clock.Advance(0.6);
    Tick();
    QTest::keyClicks(&box, "b");
    EXPECT_EQ(box.text(), "B") << "instead of the 0H that the tick has put there";

    const auto readsIn2Seconds = [this] {
        Adapter().calls.clear();
        for (int tick = 0; tick < 67; ++tick) {
            Tick();
            clock.Advance(0.030);
        }
        return Adapter().calls.size();
    };
    for (const bool reads : {true, false}) {
        EXPECT_TRUE(IsEnabled("cmdRead") != reads && IsEnabled("cmdWrite") != reads);
        EXPECT_EQ(readsIn2Seconds(), reads ? 3U : 0U);
        ClickTab("Control");
        EXPECT_EQ(readsIn2Seconds(), 0U);
        ClickTab("Register Access");
        Click("chkContRead");
    }
}

} // namespace
} // namespace ztm::test
