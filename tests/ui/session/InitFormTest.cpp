#include "support/UiTest.h"
#include "ui/instruments/ToggleIndicator.h"
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
    /// "Back Next Cancel Finish" with those left out that are disabled.
    static std::string EnabledButtons() {
        std::string names;
        for (const char *name : {"BackCMD", "NextCMD", "CancelCMD", "FinishCMD"}) {
            names += IsEnabled(name) ? std::string(name) + " " : "";
        }
        return names;
    }

    static QString FocusedIn(const QString &form) { return Find(form).focusWidget()->objectName(); }

    static void PlugInChip() { Adapter().registers[0x3D] = 0x34; }
};

TEST_F(InitFormTest, ExactlyOnePageIsOnScreen) {
    PlugInChip();
    OpenWizard();
    const auto &wizard = Find("InitForm");
    const auto pagesOnScreen = [&] {
        std::vector<std::string> names;
        for (const char *name :
             {"WelcomePanel", "SeclectComsMediumPanel", "SearchingPanel", "SearchResultsPanel"}) {
            const auto &panel = Find(name);
            if (panel.isVisible()) {
                EXPECT_EQ(panel.x(), Twips(1320, wizard)) << name;
                names.emplace_back(name);
            } else {
                EXPECT_EQ(panel.x(), Twips(-5000, wizard)) << name;
            }
        }
        return names;
    };
    EXPECT_THAT(pagesOnScreen(), ElementsAre("WelcomePanel"));
    Click("NextCMD");
    EXPECT_THAT(pagesOnScreen(), ElementsAre("SeclectComsMediumPanel"));
    std::vector<std::string> whileSearching;
    Adapter().script = [&](const Call &call) {
        if (call == Read(0x3D)) {
            whileSearching = pagesOnScreen();
            EXPECT_EQ(EnabledButtons(), "");
            EXPECT_EQ(Find("InitForm").cursor().shape(), Qt::WaitCursor);
        }
        return int16_t{0};
    };
    Click("NextCMD");
    EXPECT_THAT(whileSearching, ElementsAre("SearchingPanel"));
    EXPECT_THAT(pagesOnScreen(), ElementsAre("SearchResultsPanel"));
    EXPECT_EQ(Find("InitForm").cursor().shape(), Qt::ArrowCursor);
}

TEST_F(InitFormTest, ButtonsFollowThePages) {
    PlugInChip();
    OpenWizard();
    EXPECT_EQ(EnabledButtons(), "NextCMD CancelCMD ");
    EXPECT_EQ(FocusedIn("InitForm"), "NextCMD");
    EXPECT_THAT(Adapter().firmwarePaths, IsEmpty());
    Click("NextCMD");
    EXPECT_EQ(EnabledButtons(), "BackCMD NextCMD CancelCMD ");
    Click("BackCMD");
    EXPECT_EQ(EnabledButtons(), "NextCMD CancelCMD ");
    EXPECT_EQ(FocusedIn("InitForm"), "NextCMD");
    SearchInWizard();
    EXPECT_EQ(EnabledButtons(), "BackCMD CancelCMD FinishCMD ");
    EXPECT_EQ(FocusedIn("InitForm"), "FinishCMD");
    Click("BackCMD");
    EXPECT_EQ(EnabledButtons(), "BackCMD NextCMD CancelCMD ");
    EXPECT_EQ(Find<QListWidget>("SearchResultsLIST").count(), 0);
}

TEST_F(InitFormTest, AsksForAMediumWhenNoneIsChecked) {
    OpenWizard();
    Click("NextCMD");
    Press("USBCheck", Qt::Key_Space);
    const auto message = AnswerMessageOf([] { Click("NextCMD"); });
    EXPECT_EQ(message.text, "Please select a search medium");
    EXPECT_EQ(message.title, "A problem was detected");
    EXPECT_EQ(EnabledButtons(), "BackCMD NextCMD CancelCMD ");
    EXPECT_TRUE(Find("SeclectComsMediumPanel").isVisible());
    EXPECT_THAT(Adapter().firmwarePaths, IsEmpty());
}

TEST_F(InitFormTest, AStartMakesExactlyTheseRequests) {
    PlugInChip();
    OpenWizard();
    SearchInWizard();
    Click("FinishCMD");
    Settle();
    const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path().string();
    EXPECT_THAT(Adapter().firmwarePaths, ElementsAre(folder + "\\ZTM7720FW_v3.Hex"));
    ASSERT_THAT(Adapter().calls,
                ElementsAre(Handshake, Read(0x3D), Read(0x01), Read(0x02), Read(0x00)));
    EXPECT_NEAR(Adapter().times[0] - 36000, 0.020, 0.002);
    EXPECT_NEAR(Adapter().times[1] - Adapter().times[0], 0.200, 0.002);
    EXPECT_NEAR(clock.TotalSeconds(), 0.240, 0.005);
}

TEST_F(InitFormTest, AnotherSearchReusesTheAdapterAndShowsNoStaleEntry) {
    PlugInChip();
    OpenWizard();
    SearchInWizard();
    Click("BackCMD");
    Click("NextCMD");
    EXPECT_EQ(Find<QListWidget>("SearchResultsLIST").count(), 1);
    EXPECT_THAT(Adapter().calls, ElementsAre(Handshake, Read(0x3D), Read(0x3D)));

    Adapter().registers[0x3D] = 0;
    Click("BackCMD");
    Click("NextCMD");
    EXPECT_EQ(Find<QListWidget>("SearchResultsLIST").count(), 0);
    EXPECT_EQ(Adapter().firmwarePaths.size(), 1U);
    EXPECT_EQ(std::count(Adapter().calls.begin(), Adapter().calls.end(), Handshake), 1);
}

TEST_F(InitFormTest, OnlyBackAndCancelAreLeftWhenNothingWasFound) {
    OpenWizard();
    SearchInWizard();
    EXPECT_EQ(EnabledButtons(), "BackCMD CancelCMD ");
    EXPECT_EQ(FocusedIn("InitForm"), "BackCMD");
}

TEST_F(InitFormTest, WithoutFirmwareNothingReachesTheAdapter) {
    PlugInChip();
    Adapter().firmwareResult = -1;
    OpenWizard();
    SearchInWizard();
    EXPECT_EQ(EnabledButtons(), "BackCMD CancelCMD ");
    EXPECT_TRUE(Find<ToggleIndicator>("Shape1").IsAlarm());
    Click("CancelCMD");
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(InitFormTest, CancelAndCloseBoxEndTheProgramFromEveryPage) {
    for (const bool byCloseBox : {false, true}) {
        for (const int pages : {0, 1, 2}) {
            ResetCore();
            PlugInChip();
            OpenWizard();
            for (int page = 0; page < pages; ++page) {
                Click("NextCMD");
            }
            Adapter().calls.clear();
            byCloseBox ? CloseByCloseBox("InitForm") : Click("CancelCMD");
            EXPECT_THAT(LoadedForms(), IsEmpty()) << "after " << pages << " pages";
            const std::vector<Call> shutDown(pages == 2 ? 1 : 0, Handshake);
            EXPECT_EQ(Adapter().calls, shutDown) << "after " << pages << " pages";
            DeleteAllForms();
        }
    }
}

TEST_F(InitFormTest, ItsCloseBoxEndsTheProgramDuringASearch) {
    OpenWizard();
    int probes = 0;
    Adapter().script = [&](const Call &call) {
        if (call == Read(0x3D) && ++probes == 5) {
            QTimer::singleShot(0, [] { CloseByCloseBox("InitForm"); });
        }
        return int16_t{0};
    };
    SearchInWizard();
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_EQ(probes, 5);
    EXPECT_EQ(Adapter().calls.back(), Handshake);
    EXPECT_LT(clock.TotalSeconds(), 1);
    DeleteAllForms();
}

TEST_F(InitFormTest, FinishOnNoVariantEndsTheProcessAtOnce) {
    PlugInChip();
    OpenWizard();
    SearchInWizard();
    Find<QListWidget>("SearchResultsLIST").clear();
    EXPECT_EXIT(Click("FinishCMD"), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(InitFormTest, AClickBesideTheEntriesKeepsTheSelection) {
    PlugInChip();
    OpenWizard();
    SearchInWizard();
    auto &list = Find<QListWidget>("SearchResultsLIST");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.viewport()->rect().center());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      list.visualItemRect(list.item(0)).center());
    EXPECT_EQ(list.selectedItems().size(), 1);
}

TEST_F(InitFormTest, EnterGoesOnFromAnyControl) {
    PlugInChip();
    OpenWizard();
    Press("NextCMD", Qt::Key_Return);
    Press("USBCheck", Qt::Key_Return);
    EXPECT_TRUE(Find("SearchResultsPanel").isVisible());
    Press("SearchResultsLIST", Qt::Key_Enter);
    EXPECT_NE(LoadedForm<frmMain>(), nullptr);
    EXPECT_EQ(LoadedForm<InitForm>(), nullptr);
}

TEST_F(InitFormTest, FinishClosesTheWizardAndLeavesTheMainWindow) {
    StartSessionOf(ZTM7710);
    EXPECT_EQ(LoadedForm<InitForm>(), nullptr);
    ASSERT_NE(LoadedForm<frmMain>(), nullptr);
    EXPECT_TRUE(LoadedForm<frmMain>()->isVisible());
    EXPECT_EQ(DeviceName, ZTM7710);
    EXPECT_EQ(CommsMedium, MediumUSB);
}

} // namespace
} // namespace ztm::test
