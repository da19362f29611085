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
    void Open(std::string_view variant) {
        StartSessionOf(variant);
        ClickTab("Register Access");
        Settle();
        Adapter().calls.clear();
    }

    static QString Shown() {
        return TextOf("lblRegDescription") + "|" + TextOf("lblCurrentAddr") + "|" +
               TextOf("txtReadAddr") + "|" + TextOf("lblHexVal") + "|" + TextOf("lblDecVal");
    }

    static QString Bits() {
        QString bits;
        for (int bit = 7; bit >= 0; --bit) {
            bits += TextOf(QString("lblBit(%1)").arg(bit));
        }
        return bits;
    }

    static QString BitNames() {
        QStringList names;
        for (int place = 0; place < 8; ++place) {
            names += TextOf(QString("lblInfo(%1)").arg(place));
        }
        return names.join(':');
    }
};

TEST_F(RegisterAccessPageTest, ReadShowsARegisterOfTheMap) {
    Open(ZTM7720);
    for (const char *typed : {"3d", "3DH", " 3 d"}) {
        Type("txtReadAddr", typed);
        Adapter().calls.clear();
        Click("cmdRead");
        EXPECT_EQ(Shown(), "Device ID|3Dh|3DH|34|52") << typed;
        EXPECT_EQ(Bits(), "00110100");
        EXPECT_EQ(BitNames(), "7:6:5:4:3:2:1:0");
        EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x3D)));
    }
}

TEST_F(RegisterAccessPageTest, ReadShowsAnAddressOutsideTheMapAsUnknown) {
    Open(ZTM7720);
    Adapter().registers[0xFE] = 0x0A;
    Type("txtReadAddr", "FE");
    Click("cmdRead");
    EXPECT_EQ(Shown(), "Unknown|FEh|FEH|A|10");
    EXPECT_EQ(BitNames(), "7:6:5:4:3:2:1:0");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0xFE)));
}

TEST_F(RegisterAccessPageTest, AnEmptyAddressIsRegisterZero) {
    Open(ZTM7720);
    Find<QLineEdit>("txtReadAddr").clear();
    Click("cmdRead");
    EXPECT_EQ(TextOf("lblRegDescription"), "#Bytes/BlockRead");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x00)));
}

TEST_F(RegisterAccessPageTest, AddressesWithoutARegisterTouchNothingAndAreMarked) {
    Open(ZTM7720);
    for (const char *typed : {"100", "FFFF", "12345678", "123456789"}) {
        Type("txtReadAddr", typed);
        Type("txtDec", "7");
        EXPECT_FALSE(Find("txtReadAddr").toolTip().isEmpty()) << typed;
        Click("cmdRead");
        Click("cmdWrite");
        Click("lblBit(0)");
        EXPECT_TRUE(Shown().startsWith("Unknown|")) << typed;
        EXPECT_EQ(TextOf("lblDecVal"), "0") << typed;
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Type("txtReadAddr", "FF");
    EXPECT_TRUE(Find("txtReadAddr").toolTip().isEmpty());
}

TEST_F(RegisterAccessPageTest, TextThatIsNoWholeNumberIsMarked) {
    Open(ZTM7720);
    const struct {
        const char *box, *text;
        bool marked;
    } cases[] = {
        {"txtReadAddr", "3dh", false}, {"txtReadAddr", "", false},  {"txtReadAddr", " 3 d ", false},
        {"txtReadAddr", "0x08", true}, {"txtReadAddr", "zz", true}, {"txtReadAddr", "-1", true},
        {"txtReadAddr", "08h2", true}, {"txtDec", "12abc", true},   {"txtDec", "0-1", true},
        {"txtDec", "1e1", false},      {"txtDec", "12.", false},    {"txtHex", "1Fg", true},
        {"txtHex", "1F", false},
    };
    for (const auto &c : cases) {
        Find<QLineEdit>(c.box).clear();
        Type(c.box, c.text);
        EXPECT_EQ(!Find(c.box).toolTip().isEmpty(), c.marked) << c.text;
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(RegisterAccessPageTest, WriteSendsTheDecimalBoxAndReadsBack) {
    Open(ZTM7720);
    const struct {
        const char *decimal;
        int32_t written;
        bool marked;
    } cases[] = {{"100", 100, false},
                 {"2.5", 2, false},
                 {"255", 255, false},
                 {"256", 255, true},
                 {"-1", 0, true}};
    Type("txtReadAddr", "b");
    for (const auto &c : cases) {
        Find<QLineEdit>("txtDec").setText(c.decimal);
        EXPECT_EQ(!Find("txtDec").toolTip().isEmpty(), c.marked) << c.decimal;
        Adapter().calls.clear();
        Click("cmdWrite");
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0B, c.written), Read(0x0B))) << c.decimal;
        EXPECT_EQ(TextOf("lblDecVal"), QString::number(c.written));
    }
}

TEST_F(RegisterAccessPageTest, ValueBoxesStayInStep) {
    Open(ZTM7720);
    const struct {
        const char *box, *typed, *hex, *decimal;
    } cases[] = {
        {"txtDec", "255", "FF", "255"}, {"txtDec", "x", "0", "0"},
        {"txtHex", "1f", "1F", "31"},   {"txtHex", "FFFF", "FFFFFFFF", "-1"},
        {"txtHex", "q", "0", "0"},      {"txtDec", "1e3", "3E8", "1000"},
    };
    for (const auto &c : cases) {
        Type(c.box, c.typed);
        EXPECT_EQ(TextOf("txtHex"), c.hex) << c.typed;
        EXPECT_EQ(TextOf("txtDec"), c.decimal) << c.typed;
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(RegisterAccessPageTest, UpperCasingTheAddressKeepsTheCaret) {
    Open(ZTM7720);
    auto &box = Find<QLineEdit>("txtReadAddr");
    Type("txtReadAddr", "ad");
    EXPECT_EQ(box.text(), "AD");
    box.setCursorPosition(1);
    QTest::keyClicks(&box, "bc");
    EXPECT_EQ(box.text(), "ABCD");
    EXPECT_EQ(box.cursorPosition(), 3);
    box.setCursorPosition(0);
    QTest::keyClicks(&box, "\u00DF"); // upper case takes two letters
    EXPECT_EQ(box.text(), "SSABCD");
    EXPECT_EQ(box.cursorPosition(), 2);
}

TEST_F(RegisterAccessPageTest, EnterReadsOrWrites) {
    Open(ZTM7720);
    Type("txtReadAddr", "B");
    Type("txtDec", "5");
    const struct {
        const char *control;
        bool writes;
    } cases[] = {{"cmdRead", false},
                 {"txtReadAddr", false},
                 {"cmdWrite", true},
                 {"txtHex", true},
                 {"txtDec", true}};
    for (const auto &c : cases) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            Adapter().calls.clear();
            Press(c.control, key);
            EXPECT_EQ(Adapter().Writes().size(), c.writes ? 1U : 0U) << c.control;
            EXPECT_EQ(Adapter().calls.back(), Read(0x0B)) << c.control;
        }
    }
}

TEST_F(RegisterAccessPageTest, AfterEnterTheNextAddressReplacesTheLast) {
    Open(ZTM7720);
    Type("txtReadAddr", "8");
    Press("txtReadAddr", Qt::Key_Return);
    QTest::keyClicks(&Find("txtReadAddr"), "0a");
    Press("txtReadAddr", Qt::Key_Return);
    EXPECT_EQ(TextOf("lblCurrentAddr"), "Ah");
}

TEST_F(RegisterAccessPageTest, ABitIsFlippedByClickOrSpace) {
    Open(ZTM7720);
    Adapter().registers[0x0B] = 0x04;
    Type("txtReadAddr", "B");
    Click("cmdRead");
    Adapter().calls.clear();
    Click("lblBit(3)");
    Click("lblBit(2)");
    Press("lblBit(7)", Qt::Key_Space);
    EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0B, 0x0C), Read(0x0B), Write(0x0B, 0x08),
                                             Read(0x0B), Write(0x0B, 0x88), Read(0x0B)));
    EXPECT_EQ(Bits(), "10001000");
}

TEST_F(RegisterAccessPageTest, AFlippedBitStartsFromTheValueShownAndEndsAtTheOneReadBack) {
    Open(ZTM7720);
    Adapter().registers[0x0B] = 0x04;
    Type("txtReadAddr", "B");
    Click("cmdRead");
    Adapter().registers[0x0B] = 0xFF;
    Adapter().script = [](const Call &call) {
        if (call == Read(0x0B)) {
            Adapter().registers[0x0B] = 0x80;
        }
        return int16_t{0};
    };
    Click("lblBit(3)");
    EXPECT_THAT(Adapter().Writes(), ElementsAre(Write(0x0B, 0x0C)));
    EXPECT_EQ(Bits(), "10000000");
}

TEST_F(RegisterAccessPageTest, HoveringOverABitTellsItsName) {
    Open(ZTM7720);
    Type("txtReadAddr", "1");
    Click("cmdRead");
    for (const auto &[bit, name] : {std::pair{0, "MON/SB"}, {7, "TBL/SW"}}) {
        auto &label = Find(QString("lblBit(%1)").arg(bit));
        QTest::mouseMove(&label, QPoint(3, 3));
        Settle();
        QTest::mouseMove(&label, QPoint(4, 4));
        EXPECT_EQ(label.toolTip(), name);
    }
}

TEST_F(RegisterAccessPageTest, BitsAreLaidOutForTheWidthOfTheirFrame) {
    Open(ZTM7720);
    auto &window = Find("frmMain");
    for (const int width : {800, 1400}) {
        window.resize(width, 700);
        Settle();
        const auto &frame = Find("fraBits");
        const auto bit = [](int k) { return Find(QString("lblBit(%1)").arg(k)).geometry(); };
        EXPECT_NEAR(bit(7).left(), Twips(100, frame), 1);
        EXPECT_NEAR(frame.width() - bit(0).right() - 1, Twips(100, frame), 1);
        for (int k = 0; k < 8; ++k) {
            EXPECT_EQ(bit(k).top(), Twips(240, frame));
            EXPECT_NEAR(bit(k).width(), (frame.width() - Twips(200, frame)) / 8.0, 1);
            if (k > 0) {
                EXPECT_EQ(bit(k).right() + 1, bit(k - 1).left());
            }
            const auto name = Find(QString("lblInfo(%1)").arg(7 - k)).geometry();
            EXPECT_NEAR(name.center().x(), bit(k).center().x(), 1);
            EXPECT_GT(name.top(), bit(k).bottom());
        }
    }
}

TEST_F(RegisterAccessPageTest, ChoosingANodeShowsItsRegister) {
    const struct {
        std::string_view variant;
        int16_t index;
    } cases[] = {{ZTM7720, 56}, {ZTM7710, 52}};
    for (const auto &c : cases) {
        ResetCore();
        Open(c.variant);
        for (const char *text : {"Temperature", "Local", "General"}) {
            ClickNode(text);
        }
        EXPECT_THAT(Adapter().calls, IsEmpty()) << "roots and groups choose nothing";
        EXPECT_EQ(SelectedRegisterIndex, 0);
        ClickNode("Local Temperature(MSB)");
        EXPECT_EQ(SelectedRegisterIndex, c.index);
        EXPECT_EQ(Shown(), "Local Temperature(MSB)|41h|41H|0|0");
        EXPECT_EQ(BitNames(), "12:11:10:9:8:7:6:5");
        ClickNode("Local Temperature(MSB)");
        EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x41), Read(0x41)));
        DeleteAllForms();
    }
}

TEST_F(RegisterAccessPageTest, TheTreeIsUsableByKeyboard) {
    Open(ZTM7720);
    ClickNode("Configuration");
    Press("TreeView1", Qt::Key_Right);
    Press("TreeView1", Qt::Key_Down);
    EXPECT_EQ(TextOf("lblRegDescription"), "Configuration1");
    Press("TreeView1", Qt::Key_Return);
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x01), Read(0x01)));
}

TEST_F(RegisterAccessPageTest, TheTreeHasColoursByLevel) {
    Open(ZTM7720);
    const auto &tree = Find<QTreeWidget>("TreeView1");
    EXPECT_EQ(tree.indentation(), Twips(200, tree));
    const auto *root = tree.topLevelItem(0);
    EXPECT_TRUE(root->isExpanded());
    EXPECT_FALSE(tree.topLevelItem(1)->isExpanded());
    EXPECT_EQ(root->foreground(0).color(), QColor(0, 128, 0));
    EXPECT_EQ(root->child(0)->foreground(0).color(), QColor(192, 0, 0));
    EXPECT_EQ(root->child(0)->child(0)->foreground(0).color(), QColor(0, 0, 192));
    EXPECT_EQ(tree.findItems("", Qt::MatchContains | Qt::MatchRecursive).size(), 82);
}

TEST_F(RegisterAccessPageTest, ReturningToTheTabReadsTheSelectedRegisterAfresh) {
    StartSessionOf(ZTM7720);
    ClickTab("Register Access");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x00)));
    ClickNode("Temperature");
    ClickNode("Local");
    ClickNode("Local High Limit");
    ClickTab("Control");
    Adapter().calls.clear();
    Adapter().registers[0x0B] = 77;
    ClickTab("Register Access");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x0B)));
    EXPECT_EQ(TextOf("lblDecVal"), "77");
}

TEST_F(RegisterAccessPageTest, AnAddressCanBeTypedWhileReadsRepeat) {
    Open(ZTM7720);
    Click("chkContRead");
    auto &box = Find<QLineEdit>("txtReadAddr");
    box.clear();
    for (const char digit : {'4', '1'}) {
        QTest::keyClick(&box, digit);
        clock.Advance(0.6);
        Tick();
    }
    EXPECT_EQ(Shown().section('|', 0, 2), "Local Temperature(MSB)|41h|41H");
    box.selectAll();
    clock.Advance(0.6);
    Tick();
    EXPECT_EQ(box.selectedText(), "41H");
}

TEST_F(RegisterAccessPageTest, WhatIsReadIsToldToAssistiveTechnology) {
    Open(ZTM7720);
    Adapter().registers[0x01] = 0x80;
    Type("txtReadAddr", "1");
    Click("cmdRead");
    const auto told = [](const QString &name) {
        return QAccessible::queryAccessibleInterface(&Find(name))->text(QAccessible::Name);
    };
    EXPECT_EQ(told("lblRegDescription"), "Configuration1");
    EXPECT_EQ(told("lblHexVal"), "80");
    EXPECT_EQ(told("lblBit(7)"), "Bit 7, TBL/SW: 1");
    EXPECT_EQ(told("txtReadAddr"), "Address");
}

TEST_F(RegisterAccessPageTest, ContinuousReadRepeatsWhileItsTabIsShown) {
    Open(ZTM7720);
    Type("txtReadAddr", "41");
    Click("chkContRead");
    EXPECT_FALSE(IsEnabled("cmdRead"));
    EXPECT_FALSE(IsEnabled("cmdWrite"));
    const auto readsIn = [&](double seconds) {
        Adapter().calls.clear();
        for (double passed = 0; passed < seconds; passed += 0.030) {
            Tick();
            clock.Advance(0.030);
        }
        return Adapter().calls.size();
    };
    EXPECT_EQ(readsIn(2.5), 5U);
    EXPECT_EQ(Adapter().calls.front(), Read(0x41));
    ClickTab("Control");
    EXPECT_EQ(readsIn(2), 0U);
    ClickTab("Register Access");
    Click("chkContRead");
    EXPECT_TRUE(IsEnabled("cmdRead"));
    EXPECT_TRUE(IsEnabled("cmdWrite"));
    EXPECT_EQ(readsIn(2), 0U);
}

} // namespace
} // namespace ztm::test
