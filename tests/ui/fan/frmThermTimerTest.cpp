#include "ui/fan/frmThermTimer.h"
#include "support/UiTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ThermTimerTest : public UiTest {
protected:
    static void Open(std::string_view variant, uint8_t configuration1, uint8_t configuration4,
                     uint8_t limit) {
        ResetCore();
        Adapter().registers[0x01] = configuration1;
        Adapter().registers[0x04] = configuration4;
        Adapter().registers[0x19] = limit;
        StartSessionOf(variant);
        ClickTab("Control");
        Click("cmdThermTimer");
        Settle();
    }

    static QString Checked() {
        QStringList names;
        for (const char *name :
             {"chkEnableTimer", "chkEnRef", "chkEnLocal", "chkEnR1", "chkEnR2"}) {
            if (Find<QCheckBox>(name).isChecked()) {
                names += name;
            }
        }
        return names.join(' ');
    }
};

TEST_F(ThermTimerTest, ShowsEveryFieldAndWritesItBackAsItWas) {
    const struct {
        uint8_t configuration1, configuration4, limit;
        const char *checked, *window, *percent;
        uint8_t written4;
    } cases[] = {
        {0x00, 0x00, 0, "", ".25 sec", "0", 0x00},
        {0xFB, 0x18, 255, "", ".5 sec", "100", 0x18},
        {0x04, 0x21, 128, "chkEnableTimer chkEnLocal", "1 sec", "50.2", 0x21},
        {0x84, 0x3A, 1, "chkEnableTimer chkEnR1", "2 sec", ".39", 0x3A},
        {0x01, 0xC4, 254, "chkEnRef chkEnR2", "4 sec", "99.61", 0xC4},
        {0x01, 0x50, 26, "", "8 sec", "10.2", 0x50},
        {0x01, 0x60, 26, "", "8 sec", "10.2", 0x50},
        {0xFF, 0xFF, 26, "chkEnableTimer chkEnRef chkEnLocal chkEnR1 chkEnR2", "8 sec", "10.2",
         0xDF},
    };
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        for (const auto &c : cases) {
            Open(variant, c.configuration1, c.configuration4, c.limit);
            EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x01), Read(0x04), Read(0x19)));
            EXPECT_EQ(Checked(), c.checked);
            EXPECT_EQ(Find<QComboBox>("cmbWindow").currentText(), c.window);
            EXPECT_EQ(TextOf("txtLimit"), c.percent);
            Adapter().calls.clear();
            Click("cmdOK");
            EXPECT_EQ(LoadedForm<frmThermTimer>(), nullptr);
            EXPECT_THAT(Adapter().calls,
                        ElementsAre(Read(0x01), Write(0x01, c.configuration1), Read(0x01),
                                    Read(0x04), Write(0x04, c.written4), Write(0x19, c.limit)));
            DeleteAllForms();
        }
    }
}

TEST_F(ThermTimerTest, OneRemoteChannelIsShown) {
    Open(ZTM7720, 0, 0, 0);
    EXPECT_EQ(Find("frmThermTimer").windowTitle(), "THERM Timer");
    EXPECT_TRUE(Find("chkEnR2").isVisible());
    EXPECT_EQ(TextOf("chkEnR1"), "Enable Remote1 THERM events");
    DeleteAllForms();
    Open(ZTM7710, 0, 0, 0);
    EXPECT_FALSE(Find("chkEnR2").isVisible());
    EXPECT_EQ(TextOf("chkEnR1"), "Enable Remote THERM events");
}

TEST_F(ThermTimerTest, OkWritesWhatTheUserSetOverWhatTheChipHoldsNow) {
    Open(ZTM7720, 0x84, 0x00, 0);
    for (const char *name : {"chkEnableTimer", "chkEnRef", "chkEnLocal", "chkEnR2"}) {
        Click(name);
    }
    auto &window = Find<QComboBox>("cmbWindow");
    EXPECT_FALSE(window.isEditable());
    Press("cmbWindow", Qt::Key_End);
    Press("cmbWindow", Qt::Key_Up);
    Type("txtLimit", "50");
    Adapter().calls.clear();
    Adapter().registers[0x01] = 0xC5;
    Adapter().registers[0x04] = 0x7A;
    Click("cmdOK");
    EXPECT_THAT(Adapter().Writes(),
                ElementsAre(Write(0x01, 0xC1), Write(0x04, 0xCD), Write(0x19, 128)));
}

TEST_F(ThermTimerTest, TheLimitStaysWithinAHundredPercentWhileItIsTyped) {
    const struct {
        const char *typed, *shown;
        bool marked;
        uint8_t written;
    } cases[] = {{"120", "100", false, 255},   {"100", "100", false, 255},
                 {"100.5", "100", false, 255}, {"1e9", "100", false, 255},
                 {"99.9", "99.9", false, 255}, {"12 %", "12 %", false, 31},
                 {"-5", "-5", true, 0},        {"", "", false, 0}};
    for (const auto &c : cases) {
        Open(ZTM7720, 0, 0, 77);
        Type("txtLimit", c.typed);
        EXPECT_EQ(TextOf("txtLimit"), c.shown);
        EXPECT_EQ(!Find("txtLimit").toolTip().isEmpty(), c.marked) << c.typed;
        Click("cmdOK");
        EXPECT_EQ(Adapter().registers[0x19], c.written) << c.typed;
        DeleteAllForms();
    }
}

TEST_F(ThermTimerTest, CancelWritesNothing) {
    Open(ZTM7720, 0, 0, 0);
    Click("chkEnableTimer");
    Click("cmdCancel");
    EXPECT_EQ(LoadedForm<frmThermTimer>(), nullptr);
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

} // namespace
} // namespace ztm::test
