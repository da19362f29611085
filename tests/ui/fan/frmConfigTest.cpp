#include "ui/fan/frmConfig.h"
#include "support/UiTest.h"
#include "ui/kit/Twips.h"

#include <QComboBox>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint8_t defaults[] = {1, 132, 68, 9, 0, 17}; // of 0x01, 0x02, 0x03, 0x07, 0x3B, 0x3C

class ConfigTest : public UiTest {
protected:
    static void SetChip(const uint8_t (&values)[6]) {
        constexpr size_t addresses[] = {0x01, 0x02, 0x03, 0x07, 0x3B, 0x3C};
        for (size_t i = 0; i < 6; ++i) {
            Adapter().registers[addresses[i]] = values[i];
        }
    }

    static void Open(std::string_view variant, const uint8_t (&values)[6] = defaults) {
        DeleteAllForms();
        ResetCore();
        SetChip(values);
        StartSessionOf(variant);
        ClickTab("Control");
        Click("cmdConParam");
        Settle();
    }

    static QTabWidget &Tabs() { return *Find("frmConfig").findChild<QTabWidget *>("SSTab1"); }

    static QStringList Shown() {
        QStringList texts;
        texts += Find<QRadioButton>("optAuto").isChecked() ? "auto" : "manual";
        texts += Find<QRadioButton>("opt8Points").isChecked() ? "8" : "4+4";
        for (const char *box :
             {"cmbPoles(%1)", "cmbSource(%1)", "cmbRPMResponse(%1)", "cmbRamp(%1)"}) {
            for (const int fan : {0, 1}) {
                texts += Find<QComboBox>(QString(box).arg(fan)).currentText();
            }
        }
        return texts;
    }

    static void Choose(const char *box, const QString &text) {
        auto &combo = Find<QComboBox>(box);
        EXPECT_FALSE(combo.isEditable());
        combo.setCurrentText(text);
        EXPECT_EQ(combo.currentText(), text);
    }
};

TEST_F(ConfigTest, ReadsSixRegistersInOrderAndShowsThem) {
    Open(ZTM7720);
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x01), Read(0x02), Read(0x03), Read(0x3C),
                                             Read(0x07), Read(0x3B)));
    EXPECT_EQ(Find("frmConfig").windowTitle(), "Fan Configuration");
    EXPECT_EQ(Shown().join('|'), "manual|4+4|4|4|Remote1|Remote2|2.5 updates/sec|2.5 updates/sec|"
                                 "No Limit|No Limit");
    Open(ZTM7720, {0x81, 0x0C, 0x86, 0x0C, 0x75, 0x07});
    EXPECT_EQ(Shown().join('|'), "auto|8|6|8|Local|Full Speed|160 updates/sec|1.25 updates/sec|"
                                 "25 counts/sec|35 counts/sec");
    Open(ZTM7720, {0, 0, 0x31, 0, 0, 0});
    EXPECT_EQ(Shown().mid(2, 2).join('|'), "2|2");
    Open(ZTM7720, {0, 0, 0x75, 0, 0, 0});
    EXPECT_EQ(Shown().mid(2, 2).join('|'), "6|6");
}

TEST_F(ConfigTest, ApplyAfterLoadWritesTheSameBack) {
    const struct {
        std::string_view variant;
        uint8_t behaviour, writtenBehaviour;
    } cases[] = {{ZTM7720, 0xF9, 0x09}, {ZTM7720, 0x0E, 0x0E}, {ZTM7710, 0xF9, 0x01},
                 {ZTM7710, 0x0E, 0x01}, {ZTM7710, 0x0B, 0x03}, {ZTM7710, 0x0C, 0x00}};
    for (const auto &c : cases) {
        Open(c.variant, {0x55, 0xA4, 0x28, c.behaviour, 0xF9, 0xBF});
        Adapter().calls.clear();
        Click("cmdApply");
        EXPECT_THAT(Adapter().calls,
                    ElementsAre(Read(0x01), Write(0x01, 0x55), Read(0x01), Read(0x02),
                                Write(0x02, 0xA4), Read(0x02), Write(0x03, 0x28), Write(0x3C, 0x37),
                                Write(0x3B, 0x71), Write(0x07, c.writtenBehaviour)));
        EXPECT_TRUE(Find("frmConfig").isVisible());
    }
    Open(ZTM7720, {0, 0, 0xC0, 0, 0, 0});
    EXPECT_EQ(Shown().mid(2, 2).join('|'), "0|12") << "what the list does not have";
    Adapter().calls.clear();
    Click("cmdOK");
    EXPECT_EQ(LoadedForm<frmConfig>(), nullptr);
    EXPECT_EQ(Adapter().registers[0x03], 0xC0);
}

TEST_F(ConfigTest, WritesWhatIsChosen) {
    Open(ZTM7720);
    Click("optAuto");
    Click("opt8Points");
    Choose("cmbPoles(0)", "2");
    Choose("cmbPoles(1)", "8");
    Choose("cmbSource(0)", "Full Speed");
    Choose("cmbSource(1)", "Local");
    Choose("cmbRPMResponse(1)", "80 updates/sec");
    Choose("cmbRamp(0)", "15 counts/sec");
    Click("cmdOK");
    const auto &chip = Adapter().registers;
    EXPECT_EQ(chip[0x01], 0x81);
    EXPECT_EQ(chip[0x02], 0x8C);
    EXPECT_EQ(chip[0x03], 0x82);
    EXPECT_EQ(chip[0x07], 0x03);
    EXPECT_EQ(chip[0x3B], 0x03);
    EXPECT_EQ(chip[0x3C], 0x61);
    EXPECT_TRUE(EightPointMode);
    Open(ZTM7710);
    Choose("cmbSource33", "Full Speed");
    Click("cmdOK");
    EXPECT_EQ(chip[0x07], 0x03);
}

TEST_F(ConfigTest, TheButtonsOfTheMainWindowFollowTheControlType) {
    const auto enabled = [] {
        return QString("%1%2%3")
            .arg(IsEnabled("cmdAuto"))
            .arg(IsEnabled("cmdSetLookups"))
            .arg(IsEnabled("cmdManual"));
    };
    Open(ZTM7720);
    EXPECT_EQ(enabled(), "001");
    Click("optAuto");
    EXPECT_EQ(enabled(), "001");
    Click("cmdApply");
    EXPECT_EQ(enabled(), "110");
    Click("optManual");
    Click("cmdApply");
    EXPECT_EQ(enabled(), "001");
    Click("optAuto");
    Click("cmdCancel");
    EXPECT_EQ(LoadedForm<frmConfig>(), nullptr);
    EXPECT_EQ(enabled(), "001");
}

TEST_F(ConfigTest, OneFanHasOneTabAndItsOwnSources) {
    Open(ZTM7710);
    EXPECT_FALSE(Tabs().isTabVisible(2));
    EXPECT_EQ(Tabs().tabText(1), "Fan");
    EXPECT_FALSE(Find("opt8Points").isVisible());
    EXPECT_EQ(Find("Frame5").x(), Twips(2040, Find("Frame5")));
    EXPECT_EQ(Find<QComboBox>("cmbSource33").currentText(), "Remote");
    Tabs().setCurrentIndex(1);
    Settle();
    EXPECT_TRUE(Find("cmbSource33").isVisible());
    EXPECT_FALSE(Find("cmbSource(0)").isVisible());
    EXPECT_TRUE(Find("frmConfig").findChild<QWidget *>("cmdOK")->hasFocus());
    Open(ZTM7720);
    EXPECT_TRUE(Tabs().isTabVisible(2));
    Tabs().setCurrentIndex(1);
    Settle();
    EXPECT_FALSE(Find("cmbSource33").isVisible());
}

} // namespace
} // namespace ztm::test
