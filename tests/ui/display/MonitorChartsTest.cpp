#include "monitor/Channels.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MonitorSettings.h"
#include "support/Instrument.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"
#include "ui/display/frmBigGraph.h"
#include "ui/display/frmLogView.h"
#include "ui/instruments/StripChart.h"
#include "ui/kit/Twips.h"

#include <qcustomplot.h>

#include <QAbstractButton>
#include <QTest>
#include <QTimer>

namespace ztm::test {
namespace {

class MonitorChartsTest : public UiTest {
protected:
    /// Opens a session, and its full-screen graph.
    static void Open(std::string_view variant) {
        StartSessionOf(variant);
        ClickTab("Visual Display");
        GraphingEnabled = true;
        SetMeasurements({1, 2, 3, 4, 5, 6});
        Click("cmdGraphOptions");
        Click("chkBigGraph");
        Click("cmdApply");
        Settle();
    }

    /// The one of a window's charts that is visible.
    static StripChart &ChartIn(const char *form) {
        std::vector<StripChart *> shown;
        for (auto *chart : Find(form).findChildren<StripChart *>()) {
            if (chart->isVisible()) {
                shown.push_back(chart);
            }
        }
        EXPECT_EQ(shown.size(), 1U);
        return *shown.at(0);
    }

    /// Up to where in time a window's chart shows.
    static double ShownTo(const char *form) {
        Settle();
        return ChartIn(form).VisibleTo();
    }
};

TEST_F(MonitorChartsTest, BothWindowsShowTheChartThatIsChosenAsTheVariantHasIt) {
    const struct {
        std::string_view variant;
        const char *option, *chart, *labels;
        double lastRow, lastRowOfBig; // of the label that stands lowest
        const char *readings;
    } cases[] = {
        {ZTM7720, "optGraphType(0)", "stpTemp", "Temperature/THERM%|Local|Remote1|Remote2|THERM%",
         0.24, 0.20, "Local 1°C, Remote1 2°C, Remote2 3°C, THERM% 6%"},
        {ZTM7720, "optGraphType(1)", "stpFan", "Fan Speed|Fan1|Fan2", 0.12, 0.10,
         "Fan1 4RPM, Fan2 5RPM"},
        {ZTM7720, "optGraphType(2)", "stpTempFan",
         "Temperature/THERM%|Local|Remote1|Remote2|Fan Speed|Fan1|Fan2|THERM%", 0.24, 0.16,
         "Local 1°C, Remote1 2°C, Remote2 3°C, Fan1 4RPM, Fan2 5RPM, THERM% 6%"},
        {ZTM7710, "optGraphType(0)", "stpTemp", "Temperature/THERM%|Local|Remote||THERM%", 0.18,
         0.15, "Local 1°C, Remote 2°C, THERM% 6%"},
        {ZTM7710, "optGraphType(1)", "stpFan", "Fan Speed||", 0.12, 0.10, "Fan 4RPM"},
        {ZTM7710, "optGraphType(2)", "stpTempFan",
         "Temperature/THERM%|Local|Remote||Fan Speed|||THERM%", 0.18, 0.12,
         "Local 1°C, Remote 2°C, Fan 4RPM, THERM% 6%"},
    };
    for (const auto &c : cases) {
        if (DeviceName != c.variant) {
            DeleteAllForms();
            ResetCore();
            Open(c.variant);
            EXPECT_EQ(ChartIn("frmMain").objectName(), "stpTempFan") << "at the start";
        }
        Click(c.option);
        Click("cmdApply");
        EXPECT_EQ(ChartIn("frmMain").objectName(), c.chart) << "at once";
        Tick();
        clock.Advance(1);
        Tick();
        Settle();
        for (const char *form : {"frmMain", "frmBigGraph"}) {
            SCOPED_TRACE(form + std::string(" of ") + c.readings);
            auto &chart = ChartIn(form);
            EXPECT_EQ(chart.objectName(), c.chart);
            EXPECT_EQ(chart.Labels().join('|'), c.labels);
            const bool big = std::string_view(form) == "frmBigGraph";
            EXPECT_NEAR(chart.LabelVerticalPosition(static_cast<int>(chart.Labels().size() - 1)),
                        big ? c.lastRowOfBig : c.lastRow, 1e-9);
            QFocusEvent focus(QEvent::FocusIn);
            QCoreApplication::sendEvent(&chart, &focus);
            EXPECT_EQ(chart.accessibleDescription().toStdString(), c.readings);
            const double halfASecondAgo = MeasurementHistory().LastTime() - 0.5;
            SendMouse(chart, QEvent::MouseMove, chart.PointOf(halfASecondAgo, 50), Qt::NoButton);
            EXPECT_EQ(chart.CursorText().mid(1).join(", ").toStdString(), c.readings);
        }
    }
    GraphType = 1;
    Find("frmBigGraph").resize(500, 400);
    GraphType = 2;
    Find("frmBigGraph").resize(501, 400);
    EXPECT_EQ(ChartIn("frmBigGraph").objectName(), "stpFan") << "resized";
}

TEST_F(MonitorChartsTest, EveryTickFeedsTheChartsOnAnyTabIfAsked) {
    Open(ZTM7720);
    ClickTab("Control");
    const auto before = MeasurementHistory().SampleCount();
    Tick();
    EXPECT_EQ(MeasurementHistory().SampleCount(), before + 1);
    GraphingEnabled = false;
    Tick();
    EXPECT_EQ(MeasurementHistory().SampleCount(), before + 1);
}

TEST_F(MonitorChartsTest, TheFullScreenGraphFillsItsWindowAndIsFedWhileAskedFor) {
    Open(ZTM7720);
    EXPECT_EQ(Find("frmBigGraph").windowTitle(), "Graphing");
    for (const QSize size : {QSize(400, 300), QSize(1200, 700)}) {
        Find("frmBigGraph").resize(size);
        Settle();
        const auto &chart = ChartIn("frmBigGraph");
        const int allowance = Twips(200, chart);
        EXPECT_EQ(chart.size(), size - QSize(allowance, allowance));
    }
    Tick();
    for (const bool asked : {true, false}) {
        EXPECT_EQ(Find<QAbstractButton>("chkBigGraph").isChecked(), asked);
        EXPECT_EQ(BigGraphEnabled, asked);
        const double before = ShownTo("frmMain");
        const double bigBefore = ShownTo("frmBigGraph");
        clock.Advance(30);
        Tick();
        EXPECT_NEAR(ShownTo("frmMain") - before, 30, 1);
        EXPECT_NEAR(ShownTo("frmBigGraph") - bigBefore, asked ? 30 : 0, 1);
        Click("chkBigGraph");
        Click("cmdApply");
    }
    EXPECT_TRUE(BigGraphEnabled);
    CloseByCloseBox("frmBigGraph");
    EXPECT_FALSE(BigGraphEnabled);
    Click("cmdOK");
    EXPECT_NE(LoadedForm<frmBigGraph>(), nullptr) << "opened again";
}

TEST_F(MonitorChartsTest, ARecordedLogIsShownWithASecondOneOverItAndNoneIsLostToABadFile) {
    Open(ZTM7720);
    const TemporaryFolder folder;
    const std::string heading = "Started At: now\r\n\tLocal\tFan1\t\r\n";
    const auto file = [&](const char *name, const std::string &rows) {
        return QString::fromStdString(folder.Put(name, heading + rows));
    };
    const QString one =
        file("one", " .5\t20\xB0\x43\t1000RPM\t\r\n 10.5\t40\xB0\x43\t2000RPM\t\r\n 1");
    const QString two = file("two", " 1\t5\xB0\x43\t1RPM\t\r\n 21\t6\xB0\x43\t2RPM\t\r\n");
    const QString bad = file("bad", " 1\t5\xB0\x43\t\r\n");
    const auto read = [] {
        while (Find<QTimer>("reading").isActive()) {
            QCoreApplication::processEvents();
        }
        Settle();
    };
    const auto chart = []() -> StripChart & { return Find<StripChart>("stpLog"); };
    AnswerFileDialogOf([&] { emit ChartIn("frmBigGraph").OpenLogRequested(); }, one);
    read();
    EXPECT_EQ(TextOf("lblLog"), "Line: one, started at now, 2 rows, cut off within the last line");
    EXPECT_EQ(chart().Labels().join('|'), "Temperature/THERM%|Local|||Fan Speed|Fan1||");
    EXPECT_NEAR(chart().VisibleTo(), 10.5, 0.1);
    AnswerFileDialogOf([] { Click("cmdLayOver"); }, two);
    read();
    EXPECT_NEAR(chart().VisibleTo(), 20.5, 0.1);
    Type("txtShift", "-5");
    chart().Fit();
    Settle();
    EXPECT_LT(chart().ValueRange().lower, 6) << "the second log counts";
    QTest::keyClick(&chart(), Qt::Key_Left, Qt::ControlModifier);
    Settle();
    EXPECT_THAT(chart().CursorText().join('|').toStdString(),
                testing::MatchesRegex(
                    ".* s\\|Local .*°C\\|Fan1 .*RPM\\|Local dashed 5°C\\|Fan1 dashed 1RPM"));
    EXPECT_THAT(AnswerMessageOf([&] {
                    AnswerFileDialogOf([] { Click("cmdOpenLog"); }, bad);
                    read();
                }).text.toStdString(),
                testing::HasSubstr("line 3: no value of Fan1"));
    EXPECT_EQ(chart().LastValue(0), 40);
    Click("cmdRemove");
    EXPECT_FALSE(Find<QWidget>("txtShift").isVisible());
    Press("frmLogView", Qt::Key_Escape);
    EXPECT_EQ(LoadedForm<frmLogView>(), nullptr);
}

} // namespace
} // namespace ztm::test
