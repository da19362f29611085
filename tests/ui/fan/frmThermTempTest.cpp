#include "ui/fan/frmThermTemp.h"
#include "support/UiTest.h"
#include "ui/kit/Twips.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ThermTempTest : public UiTest {
protected:
    static void SetChip() {
        auto &registers = Adapter().registers;
        registers[0x0D] = 149;
        registers[0x10] = 9;
        registers[0x13] = 255;
        registers[0x1A] = 0x25;
        registers[0x02] = 0xFD;
    }

    static void Open(std::string_view variant) {
        SetChip();
        StartSessionOf(variant);
        ClickTab("Control");
        Click("cmdThermTemp");
        Settle();
    }

    /// A control of the dialog; other windows have labels of the same name.
    static QLabel &Label(const char *name) {
        return *Find("frmThermTemp").findChild<QLabel *>(name);
    }

    static int TopOf(const char *name) {
        return Find(name).mapTo(&Find("frmThermTemp"), QPoint()).y();
    }
};

TEST_F(ThermTempTest, ReadsTheChipOnceAndShowsItInEngineeringTerms) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        Open(variant);
        Click("cmdThermTemp"); // brings the same window back
        EXPECT_THAT(Adapter().calls,
                    ElementsAre(Read(0x0D), Read(0x10), Read(0x13), Read(0x1A), Read(0x02)));
        EXPECT_EQ(Find("frmThermTemp").windowTitle(), "THERM Temperature");
        EXPECT_EQ(TextOf("txtLocal"), "85");
        EXPECT_EQ(TextOf("txtR1"), "-55");
        EXPECT_EQ(TextOf("txtR2"), "191");
        EXPECT_EQ(TextOf("txtHyst"), "5");
        EXPECT_FALSE(Find<QCheckBox>("chkBoost").isChecked());
        DeleteAllForms();
    }
}

TEST_F(ThermTempTest, OneRemoteChannelIsShownLowerAndTheOtherIsHidden) {
    Open(ZTM7720);
    const int local = TopOf("txtLocal");
    const int remote = TopOf("txtR1");
    EXPECT_TRUE(Find("txtR2").isVisible() && Label("Label3").isVisible());
    EXPECT_EQ(Label("Label2").text(), "Remote1");
    DeleteAllForms();
    ResetCore();
    Open(ZTM7710);
    const int shift = Twips(300, Find("frmThermTemp"));
    EXPECT_EQ(TopOf("txtLocal"), local + shift);
    EXPECT_EQ(TopOf("txtR1"), remote + shift);
    EXPECT_FALSE(Find("txtR2").isVisible() || Find("txtR2Spin").isVisible() ||
                 Label("Label3").isVisible());
    EXPECT_EQ(Label("Label2").text(), "Remote");
}

TEST_F(ThermTempTest, OkWritesTheBoxesInOrderAndKeepsOtherBits) {
    Open(ZTM7720);
    Type("txtLocal", "100");
    Press("txtR1", Qt::Key_Down);
    Press("txtR1", Qt::Key_Up);
    Type("txtR2", "80.5 C");
    Press("txtHyst", Qt::Key_Up);
    Click("chkBoost");
    Adapter().calls.clear();
    Adapter().registers[0x02] = 0x40;
    Click("cmdOK");
    EXPECT_EQ(LoadedForm<frmThermTemp>(), nullptr);
    EXPECT_THAT(Adapter().calls,
                ElementsAre(Write(0x0D, 164), Write(0x10, 10), Write(0x13, 144), Write(0x1A, 6),
                            Read(0x02), Write(0x02, 0x42), Read(0x02)));
}

TEST_F(ThermTempTest, WhatWasReadGoesBackUnchangedFromTheHiddenBoxToo) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        Open(variant);
        Adapter().calls.clear();
        Click("cmdOK");
        EXPECT_THAT(Adapter().Writes(),
                    ElementsAre(Write(0x0D, 149), Write(0x10, 9), Write(0x13, 255), Write(0x1A, 5),
                                Write(0x02, 0xFD)));
        DeleteAllForms();
    }
}

TEST_F(ThermTempTest, CancelAndTheCloseBoxWriteNothing) {
    Open(ZTM7720);
    Type("txtLocal", "1");
    Click("cmdCancel");
    EXPECT_EQ(LoadedForm<frmThermTemp>(), nullptr);
    Click("cmdThermTemp");
    EXPECT_EQ(TextOf("txtLocal"), "85") << "read afresh";
    CloseByCloseBox("frmThermTemp");
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

TEST_F(ThermTempTest, NumbersWithoutAnEncodingAreMarkedAndLimited) {
    const struct {
        const char *box, *text;
        bool marked;
        Call written;
    } cases[] = {
        {"txtLocal", "-64", false, Write(0x0D, 0)},
        {"txtLocal", "-64.5", false, Write(0x0D, 0)}, // a half goes to even
        {"txtLocal", "-65", true, Write(0x0D, 0)},
        {"txtR1", "191.4", false, Write(0x10, 255)},
        {"txtR1", "192", true, Write(0x10, 255)},
        {"txtR2", "1e300", true, Write(0x13, 255)},
        {"txtR2", "", false, Write(0x13, 64)},
        {"txtHyst", "15", false, Write(0x1A, 15)},
        {"txtHyst", "18", true, Write(0x1A, 2)},
        {"txtHyst", "-1", true, Write(0x1A, 15)},
    };
    Open(ZTM7720);
    for (const auto &c : cases) {
        Type(c.box, c.text);
        EXPECT_EQ(!Find(c.box).toolTip().isEmpty(), c.marked) << c.box << " " << c.text;
        Adapter().calls.clear();
        Click("cmdOK");
        EXPECT_THAT(Adapter().Writes(), testing::Contains(c.written)) << c.box << " " << c.text;
        Click("cmdThermTemp");
        Settle();
    }
    Type("txtHyst", "16");
    EXPECT_EQ(Find("txtHyst").toolTip(), "0 to 15 °C");
}

} // namespace
} // namespace ztm::test
