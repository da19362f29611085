#include "monitor/Channels.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"
#include "ui/display/frmBigGraph.h"
#include "ui/instruments/StripChart.h"
#include "ui/kit/Twips.h"

#include <QAbstractButton>
#include <QMouseEvent>

namespace ztm::test {
namespace {

using testing::ElementsAre;

class MonitorChartsTest : public UiTest {
protected:
    static void Open(std::string_view variant) {
        StartSessionOf(variant);
        ClickTab("Visual Display");
        GraphingEnabled = true;
    }

    static void OpenBigGraph() {
        Click("cmdGraphOptions");
        Click("chkBigGraph");
        Click("cmdOK");
        Settle();
    }

    static StripChart &ChartIn(const QString &form, const QString &name) {
        return *Find(form).findChild<StripChart *>(name);
    }

    /// Those of the three charts that are visible.
    static QString Shown(const QString &form) {
        QStringList names;
        for (const char *name : {"stpTempFan", "stpTemp", "stpFan"}) {
            if (ChartIn(form, name).isVisible()) {
                names += name;
            }
        }
        return names.join(' ');
    }

    /// The last values of all traces of a chart; a gap is "-".
    static QString Values(const QString &form, const QString &name) {
        QStringList values;
        for (int trace = 0; trace < ChartIn(form, name).TraceCount(); ++trace) {
            const double value = ChartIn(form, name).LastValue(trace);
            values += std::isnan(value) ? QStringLiteral("-") : QString::number(value);
        }
        return values.join(' ');
    }
};

TEST_F(MonitorChartsTest, EveryTickFeedsAllChartsOnAnyTab) {
    Open(ZTM7720);
    Measurements = {1, 2, 3, 4, 5, 6};
    ClickTab("Control");
    Tick();
    EXPECT_EQ(MeasurementHistory().SampleCount(), 1U);
    EXPECT_EQ(Values("frmMain", "stpTempFan"), "1 2 3 4 5 6");
    EXPECT_EQ(Values("frmMain", "stpTemp"), "1 2 3 6");
    EXPECT_EQ(Values("frmMain", "stpFan"), "4 5");
    GraphingEnabled = false;
    Tick();
    EXPECT_EQ(MeasurementHistory().SampleCount(), 1U);
}

TEST_F(MonitorChartsTest, OneFanAndOneRemoteChannelLeaveGaps) {
    Open(ZTM7710);
    Measurements = {1, 2, 3, 4, 5, 6};
    Tick();
    OpenBigGraph();
    for (const char *form : {"frmMain", "frmBigGraph"}) {
        EXPECT_EQ(Values(form, "stpTempFan"), "1 2 - 4 - 6");
    }
    EXPECT_DOUBLE_EQ(ChartIn("frmMain", "stpTempFan").LabelVerticalPosition(7), 0.18);
    EXPECT_DOUBLE_EQ(ChartIn("frmMain", "stpTemp").LabelVerticalPosition(4), 0.18);
    EXPECT_NEAR(ChartIn("frmBigGraph", "stpTempFan").LabelVerticalPosition(7), 0.12, 1e-9);
    EXPECT_NEAR(ChartIn("frmBigGraph", "stpTemp").LabelVerticalPosition(4), 0.15, 1e-9);
}

TEST_F(MonitorChartsTest, ReadOutsNameTheChannelsOfTheVariant) {
    const struct {
        std::string_view variant;
        const char *chart;
        int graphType;
        const char *readings;
    } cases[] = {
        {ZTM7720, "stpTempFan", 1,
         "Local 1.00°C, Remote1 2.00°C, Remote2 3.00°C, Fan1 4 RPM, Fan2 5 RPM, THERM% 6.00%"},
        {ZTM7710, "stpTempFan", 1, "Local 1.00°C, Remote 2.00°C, Fan 4 RPM, THERM% 6.00%"},
        {ZTM7710, "stpFan", 2, "Fan 4 RPM"},
        {ZTM7710, "stpTemp", 3, "Local 1.00°C, Remote 2.00°C, THERM% 6.00%"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.readings);
        ResetCore();
        Open(c.variant);
        GraphType = static_cast<int16_t>(c.graphType);
        Measurements = {1, 2, 3, 4, 5, 6};
        Tick();
        auto &chart = ChartIn("frmMain", c.chart);
        QFocusEvent focus(QEvent::FocusIn);
        QCoreApplication::sendEvent(&chart, &focus);
        EXPECT_EQ(chart.accessibleDescription().toStdString(), c.readings);
        clock.Advance(1);
        Tick();
        Settle();
        const QPointF point = chart.PointOf(MeasurementHistory().LastTime() - 0.5, 50);
        QMouseEvent move(QEvent::MouseMove, point, chart.mapToGlobal(point), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&chart, &move);
        EXPECT_EQ(chart.CursorText().mid(1).join(", ").toStdString(), c.readings);
        DeleteAllForms();
    }
}

TEST_F(MonitorChartsTest, OptionsChooseTheChartAtOnce) {
    Open(ZTM7720);
    EXPECT_EQ(Shown("frmMain"), "stpTempFan");
    OpenBigGraph();
    const struct {
        const char *option, *chart;
    } cases[] = {{"optGraphType(1)", "stpFan"},
                 {"optGraphType(0)", "stpTemp"},
                 {"optGraphType(2)", "stpTempFan"}};
    Click("cmdGraphOptions");
    for (const auto &c : cases) {
        Click(c.option);
        Click("cmdApply");
        EXPECT_EQ(Shown("frmMain"), c.chart);
        Tick();
        EXPECT_EQ(Shown("frmBigGraph"), c.chart) << "fed";
    }
    GraphType = 2;
    Find("frmBigGraph").resize(500, 400);
    Settle();
    EXPECT_EQ(Shown("frmBigGraph"), "stpFan") << "resized";
}

TEST_F(MonitorChartsTest, TheFullScreenGraphFillsItsWindowAndIsFedWhileOpen) {
    Open(ZTM7720);
    Measurements = {1, 2, 3, 4, 5, 6};
    OpenBigGraph();
    EXPECT_TRUE(BigGraphEnabled);
    for (const QSize size : {QSize(400, 300), QSize(1200, 700)}) {
        Find("frmBigGraph").resize(size);
        Settle();
        const auto &chart = ChartIn("frmBigGraph", "stpTempFan");
        const int allowance = Twips(200, chart);
        EXPECT_EQ(chart.size(), size - QSize(allowance, allowance));
    }
    Tick();
    EXPECT_EQ(Values("frmBigGraph", "stpTempFan"), "1 2 3 4 5 6");
    const auto shownTo = [](const char *form) {
        Settle();
        return ChartIn(form, "stpTempFan").VisibleTo();
    };
    const double before = shownTo("frmBigGraph");
    clock.Advance(30);
    Tick();
    EXPECT_NEAR(shownTo("frmBigGraph") - before, 30, 1);
    EXPECT_NEAR(shownTo("frmMain") - before, 30, 1);
    Click("cmdGraphOptions");
    EXPECT_TRUE(Find<QAbstractButton>("chkBigGraph").isChecked());
    Click("cmdCancel");
    CloseByCloseBox("frmBigGraph");
    EXPECT_FALSE(BigGraphEnabled);
    Tick();
    Click("cmdGraphOptions");
    EXPECT_FALSE(Find<QAbstractButton>("chkBigGraph").isChecked());
    OpenBigGraph();
    EXPECT_NE(LoadedForm<frmBigGraph>(), nullptr);
}

TEST_F(MonitorChartsTest, HistoryTimeGoesOnOverMidnight) {
    clock.Advance(86400 - 36000 - 1);
    Open(ZTM7720);
    const double first = SecondsSinceMidnight();
    Tick();
    clock.Advance(10);
    Tick();
    EXPECT_NEAR(MeasurementHistory().FirstTime(), first, 1e-6);
    EXPECT_NEAR(MeasurementHistory().LastTime(), first + 10, 1e-6);
}

} // namespace
} // namespace ztm::test
