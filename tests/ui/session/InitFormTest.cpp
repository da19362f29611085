#include "support/UiTest.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/kit/HeldKeys.h"
#include "ui/kit/Twips.h"
#include "ui/session/frmMain.h"

#include <QListWidget>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InitFormTest : public UiTest {
protected:
    InitFormTest() { Adapter().registers[0x3D] = 0x34; }

    /// The pages on screen, the number of devices found, the buttons that can be used, and "Wait"
    /// under a wait cursor.
    static std::string Seen() {
        const auto &wizard = Find("InitForm");
        std::string seen;
        for (const char *name :
             {"WelcomePanel", "SeclectComsMediumPanel", "SearchingPanel", "SearchResultsPanel"}) {
            const auto &panel = Find(name);
            EXPECT_EQ(panel.x(), Twips(panel.isVisible() ? 1320 : -5000, wizard)) << name;
            seen += panel.isVisible() ? std::string(name) + ' ' : "";
        }
        seen += std::to_string(Find<QListWidget>("SearchResultsLIST").count());
        for (const char *name : {"BackCMD", "NextCMD", "CancelCMD", "FinishCMD"}) {
            seen += IsEnabled(name) ? std::string(" ") + name : "";
        }
        return seen + (wizard.cursor().shape() == Qt::WaitCursor ? " Wait" : "");
    }
};

TEST_F(InitFormTest, PagesButtonsAndFocusFollowTheWayAndEverySearchUsesTheOneStart) {
    const char *welcome = "WelcomePanel 0 NextCMD CancelCMD";
    const char *medium = "SeclectComsMediumPanel 0 BackCMD NextCMD CancelCMD";
    const char *found = "SearchResultsPanel 1 BackCMD CancelCMD FinishCMD";
    const struct {
        const char *button, *seen, *focus; ///< afterwards
        std::vector<Call> asked;
        uint8_t id = 0x34; ///< of the chip
    } steps[] = {
        {"BackCMD", welcome, "NextCMD", {}},
        {"NextCMD", medium, "NextCMD", {}},
        {"BackCMD", welcome, "NextCMD", {}},
        {"NextCMD", medium, "NextCMD", {}},
        {"NextCMD", found, "FinishCMD", {Handshake, Read(0x3D)}},
        {"BackCMD", medium, "NextCMD", {}},
        {"NextCMD", found, "FinishCMD", {Read(0x3D)}},
        {"BackCMD", medium, "NextCMD", {}},
        {"NextCMD", "SearchResultsPanel 0 BackCMD CancelCMD", "BackCMD", {}, 0},
    };
    OpenWizard();
    for (const auto &step : steps) {
        Adapter().calls.clear();
        Adapter().registers[0x3D] = step.id;
        Adapter().script = [&](const Call &call) {
            EXPECT_TRUE(call == Handshake || Seen() == "SearchingPanel 0 Wait") << Seen();
            return int16_t{0};
        };
        Click(step.button);
        EXPECT_EQ(Seen(), step.seen) << step.button;
        EXPECT_EQ(Find("InitForm").focusWidget()->objectName(), step.focus) << step.seen;
        EXPECT_TRUE(step.id == 0 || Adapter().calls == step.asked) << step.seen;
    }
    EXPECT_EQ(std::count(Adapter().calls.begin(), Adapter().calls.end(), Handshake), 0);
    EXPECT_EQ(Adapter().firmwarePaths.size(), 1U);
}

TEST_F(InitFormTest, AsksForAMediumWhenNoneIsChecked) {
    OpenWizard();
    Click("NextCMD");
    Press("USBCheck", Qt::Key_Space);
    const auto message = AnswerMessageOf([] { Click("NextCMD"); });
    EXPECT_EQ(message.text, "Please select a search medium");
    EXPECT_EQ(message.title, "A problem was detected");
    EXPECT_EQ(Seen(), "SeclectComsMediumPanel 0 BackCMD NextCMD CancelCMD");
    EXPECT_THAT(Adapter().firmwarePaths, IsEmpty());
}

TEST_F(InitFormTest, EnterGoesOnFromAnyControlAndAStartMakesExactlyTheseRequests) {
    OpenWizard();
    Press("NextCMD", Qt::Key_Return);
    const HeldKeys filter;
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent marked(type, Qt::Key_Return, Qt::NoModifier, "\r", true);
        QCoreApplication::sendEvent(&Find("NextCMD"), &marked);
        QKeyEvent unmarked(type, Qt::Key_Return, Qt::NoModifier, "\r");
        unmarked.setTimestamp(15);
        QCoreApplication::sendEvent(&Find("USBCheck"), &unmarked);
    }
    EXPECT_TRUE(Find("SeclectComsMediumPanel").isVisible()) << "a held key counts once";
    Press("USBCheck", Qt::Key_Return);
    EXPECT_TRUE(Find("SearchResultsPanel").isVisible());
    Press("SearchResultsLIST", Qt::Key_Enter);
    Settle();
    const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path().string();
    EXPECT_THAT(Adapter().firmwarePaths, ElementsAre(folder + "\\ZTM7720FW_v3.Hex"));
    ASSERT_THAT(Adapter().calls,
                ElementsAre(Handshake, Read(0x3D), Read(0x01), Read(0x02), Read(0x00)));
    EXPECT_NEAR(Adapter().times[0] - 36000, 0.020, 0.002);
    EXPECT_NEAR(Adapter().times[1] - Adapter().times[0], 0.200, 0.002);
    EXPECT_NEAR(clock.TotalSeconds(), 0.240, 0.005);
    EXPECT_THAT(LoadedForms(), ElementsAre(LoadedForm<frmMain>()));
    EXPECT_TRUE(Find("frmMain").isVisible());
    EXPECT_EQ(CommsMedium, MediumUSB);
}

TEST_F(InitFormTest, CancelCloseBoxAndEscapeEndTheProgramFromEveryPage) {
    const struct {
        int pages;
        int16_t firmwareResult;
        std::vector<Call> asked;
    } cases[] = {{0, 0, {}}, {1, 0, {}}, {2, -1, {}}, {2, 0, {Handshake, Read(0x3D), Handshake}}};
    for (const char *way : {"Cancel", "close box", "Escape"}) {
        for (const auto &[pages, firmwareResult, asked] : cases) {
            ResetCore();
            Adapter().registers[0x3D] = 0x34;
            Adapter().firmwareResult = firmwareResult;
            OpenWizard();
            for (int page = 0; page < pages; ++page) {
                Click("NextCMD");
            }
            if (firmwareResult != 0) {
                EXPECT_EQ(Seen(), "SearchResultsPanel 0 BackCMD CancelCMD");
                EXPECT_TRUE(Find<ToggleIndicator>("Shape1").IsAlarm());
            }
            if (pages == 2) {
                EXPECT_EQ(Find("SearchResultsLBL").toolTip().isEmpty(), firmwareResult == 0);
            }
            way == std::string("Cancel")      ? Click("CancelCMD")
            : way == std::string("close box") ? CloseByCloseBox("InitForm")
                                              : Press("BackCMD", Qt::Key_Escape);
            EXPECT_THAT(LoadedForms(), IsEmpty()) << "after " << pages << " pages by " << way;
            EXPECT_EQ(Adapter().calls, asked) << "after " << pages << " pages";
            DeleteAllForms();
        }
    }
}

TEST_F(InitFormTest, ItsCloseBoxEndsTheProgramDuringASearch) {
    OpenWizard();
    int probes = 0;
    Adapter().registers[0x3D] = 0;
    Adapter().script = [&](const Call &call) {
        probes += call == Read(0x3D);
        if (call == Read(0x3D) && probes == 3) {
            QTimer::singleShot(0, [] { Press("InitForm", Qt::Key_Escape); }); // Cancel is gray
        } else if (call == Read(0x3D) && probes == 5) {
            QTimer::singleShot(0, [] { CloseByCloseBox("InitForm"); });
        }
        return int16_t{0};
    };
    SearchInWizard();
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_EQ(probes, 5);
    EXPECT_EQ(Adapter().calls.back(), Handshake);
    EXPECT_LT(clock.TotalSeconds(), 1);
}

TEST_F(InitFormTest, ClicksBesideTheEntryKeepItSelectedAndFinishWithoutOneEndsTheProcessAtOnce) {
    OpenWizard();
    SearchInWizard();
    auto &list = Find<QListWidget>("SearchResultsLIST");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.viewport()->rect().center());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      list.visualItemRect(list.item(0)).center());
    EXPECT_EQ(list.selectedItems().size(), 1);
    list.clear();
    EXPECT_EXIT(Click("FinishCMD"), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace
} // namespace ztm::test
