#include "fan/LookupGraphScale.h"
#include "link/Heaters.h"
#include "link/USBComms.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"
#include "ui/display/frmBigGraph.h"
#include "ui/kit/Guide.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QWindow>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SessionTest = UiTest;

TEST_F(SessionTest, StartsFromTheDefaultsAndAnIdleTickOnlyAppliesThePeriod) {
    auto &heater = Heaters[1];
    auto numbers = std::tie(MonitorInterval, GraphType, LogInterval, MaxLogEntries, GraphRpmRange,
                            SmbusDelayMs, heater.LowPct, heater.IntervalMs);
    auto switches = std::tie(MonitoringEnabled, GraphingEnabled, LimitMonitorEnabled,
                             BargraphEnabled, BigGraphEnabled, MonitorInReadWrite, ManualDialogOpen,
                             heater.SoftwareControl, heater.StartPending);
    numbers = std::tuple(1, 3, 1, 1, 1, 1, 1, 1);
    switches = std::tuple(true, true, true, true, true, true, true, true, true);
    SmbusDelayEnabled = false;
    StartSessionOf(ZTM7720);
    EXPECT_EQ(numbers, std::tuple(30, 1, 100, 10000, 8000, 20, 20, 500));
    EXPECT_EQ(switches, std::tuple(false, false, false, false, false, false, false, false, false));
    EXPECT_TRUE(SmbusDelayEnabled);
    const auto &timer = Find<QTimer>("tmrMain");
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(timer.interval(), 30);
    MonitorInterval = 50;
    Tick();
    EXPECT_EQ(timer.interval(), 50);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(SessionTest, TheStatusBarTellsWhatPassedByAndLeadsWhereItComesFrom) {
    const TemporaryFolder folder;
    const std::string name(80, 'n');
    const std::string path = folder.Path(name + "<b>.xls");
    StartSessionOf(ZTM7720);
    Find("frmMain").resize(800, 600);
    const auto shown = [] {
        QStringList texts;
        for (const auto *label : Find("stbMain").findChildren<QLabel *>()) {
            EXPECT_EQ(label->isVisible(), !label->text().isEmpty());
            texts += label->text();
        }
        return texts.join('|').toStdString();
    };
    EXPECT_EQ(shown(), "Not measuring (30 ms)|||Alarms not read|");
    ClickTab("Visual Display");
    Click("cmdEasySetup");
    Adapter().registers[0x4F] = 0x20;
    Adapter().registers[0x51] = 0x01;
    StartLog(path, {{}, 30000, 0});
    clock.Advance(1);
    Tick();
    EXPECT_EQ(shown(), "Measuring every 30 ms|" + name + "<b>.xls, 1 entry, " +
                           std::to_string(std::filesystem::file_size(path)) +
                           " B||Alarm: Remote1|");
    EXPECT_EQ(Find("lblLogState").toolTip().toStdString(),
              "<span>" + QString::fromStdString(path).toHtmlEscaped().toStdString() + "</span>");
    SetHeaterDuty(45, 0);
    Heaters[1].SoftwareControl = true;
    ClickTab("Register Access");
    Adapter().registers[0x51] = 0;
    std::filesystem::remove(path);
    clock.Advance(1);
    Tick();
    EXPECT_EQ(shown(), "Not measuring on this page (30 ms)||Heater1 45 %, Heater2 20 % ramp|"
                       "Alarm: Remote1 at 10:00:01|"
                       "10:00:02 The log was stopped: No such file or directory");

    Find<QTimer>("tmrMain").stop();
    Adapter().calls.clear();
    const auto &tabs = Find<QTabWidget>("SSTab1");
    Click("lblLastProblem");
    EXPECT_EQ(tabs.currentIndex(), 3);
    Press("lblMonitorState", Qt::Key_Space);
    EXPECT_THAT(LoadedForms(), ElementsAre(&Find("frmMain"), &Find("frmGraphOptions")));
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Press("lblHeaterState", Qt::Key_Return);
    EXPECT_TRUE(Find("frmHeaters").isVisible());
    Press("lblAlarmState", Qt::Key_Enter);
    EXPECT_EQ(tabs.currentIndex(), 2);
}

TEST_F(SessionTest, F1OpensThePageOfTheWindow) {
    if (!QFileInfo::exists(GuidePage("index"))) {
        GTEST_SKIP() << "made without a guide";
    }
    QTextBrowser viewer;
    QDesktopServices::setUrlHandler("file", &viewer, "setSource");
    const auto askIn = [&](const char *window) {
        Press(window, Qt::Key_F1);
        EXPECT_EQ(viewer.source(), QUrl::fromLocalFile(GuidePage(window)));
        EXPECT_GT(viewer.toPlainText().size(), 100) << window;
    };
    OpenWizard();
    askIn("InitForm");
    StartSessionOf(ZTM7720);
    askIn("frmMain");
    ShowForm<frmBigGraph>();
    askIn("frmBigGraph");
    ForEveryDialog(askIn);
    ClickTab("About");
    Click("lblGuide");
    EXPECT_EQ(viewer.source().fileName(), "index.html");
    Find("frmMain").setObjectName("frmNone");
    EXPECT_TRUE(
        AnswerMessageOf([] { Press("frmNone", Qt::Key_F1); }).text.endsWith("/guide/frmNone.html"));
    QDesktopServices::unsetUrlHandler("file");
}

TEST_F(SessionTest, ClosingTheMainWindowClosesEveryOtherFirstAndThenSaysGoodbye) {
    StartSessionOf(ZTM7720);
    ForEveryDialog([](const char *window) {
        const auto *handle = Find(window).windowHandle();
        EXPECT_EQ(handle->transientParent(), Find("frmMain").windowHandle()) << window;
        EXPECT_EQ(handle->modality(), Qt::NonModal) << window;
    });
    Press("frmGraphOptions", Qt::Key_Escape);
    ClickTab("Visual Display");
    Click("cmdGraphOptions");
    Click("chkBigGraph");
    Press("frmGraphOptions", Qt::Key_Enter);
    Press("frmBigGraph", Qt::Key_Escape);
    EXPECT_EQ(Find("frmBigGraph").windowHandle()->transientParent(), nullptr);
    Adapter().calls.clear();
    Adapter().script = [](const Call &) {
        EXPECT_THAT(LoadedForms(), ElementsAre(&Find("frmMain")));
        return int16_t{0};
    };
    CloseByCloseBox("frmMain");
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_THAT(Adapter().calls, ElementsAre(Handshake));
}

} // namespace
} // namespace ztm::test
