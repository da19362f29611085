#include "monitor/Channels.h"
#include "monitor/Events.h"
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
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTableWidget>
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

    /// A row of a table with the name of its trace.
    static std::string RowOf(const QTableWidget &table, int row) {
        QStringList cells{table.verticalHeaderItem(row)->text()};
        for (int column = 0; column < table.columnCount(); ++column) {
            cells += table.item(row, column)->text();
        }
        return cells.join('|').toStdString();
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

TEST_F(MonitorChartsTest, TwoCursorsMeasureBetweenThemInEveryWindow) {
    Open(ZTM7720);
    for (int second = 0; second <= 10; ++second) {
        const auto value = static_cast<float>(second);
        SetMeasurements({20 + value, 30, 40, 2000, 2000 - 10 * value, 0});
        Tick();
        clock.Advance(1);
    }
    Settle();
    auto &chart = ChartIn("frmMain");
    const double start = MeasurementHistory().FirstTime();
    const auto put = [&](double time, Qt::Key key) {
        SendMouse(chart, QEvent::MouseMove, chart.PointOf(time, 50), Qt::NoButton);
        QTest::keyClick(&chart, key);
        Settle();
    };
    put(start + 2.2, Qt::Key_1); // they catch the samples at 2 and 8
    EXPECT_FALSE(Find("frmMain").findChild<QTableWidget *>()->isVisible());
    put(start + 7.8, Qt::Key_2);
    const auto &table = *Find("frmMain").findChild<QTableWidget *>();
    EXPECT_EQ(RowOf(table, 0), "Local [°C]|22|28|6|1|22|25|28");
    EXPECT_EQ(RowOf(table, 4), "Fan2 [RPM]|1980|1920|-60|-10|1920|1950|1980");
    EXPECT_EQ(TextOf("lblSpan"), "Δt 6.000 s; Local: 63 % of the change after 4.000 s");
    EXPECT_TRUE(Find("frmBigGraph").findChild<QTableWidget *>()->isVisible());
    Click("cmdCopyMeasurement");
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
                testing::HasSubstr("\nRemote1 [°C]\t30\t30\t0\t"));
    QTest::mousePress(&chart, Qt::LeftButton, {}, chart.PointOf(start + 8, 50).toPoint());
    MoveAndRelease(chart, {}, {chart.PointOf(start + 1.1, 50).toPoint()});
    EXPECT_EQ(RowOf(table, 0), "Local [°C]|22|21|-1|1|21|21.5|22") << "B before A";
    EXPECT_EQ(TextOf("lblSpan"), "Δt -1.000 s");
    QTest::keyClick(&chart, Qt::Key_Escape); // the read-out
    QTest::keyClick(&chart, Qt::Key_Escape);
    EXPECT_FALSE(table.isVisible());
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

TEST_F(MonitorChartsTest, EventsAreReadOutListedSavedAndGoneTo) {
    Open(ZTM7720);
    const TemporaryFolder folder;
    const auto saved = [&](const char *name, const std::function<void()> &action) {
        AnswerFileDialogOf(action, QString::fromStdString(folder.Path(name)));
        return BytesOf(folder.Path(name));
    };
    auto &chart = ChartIn("frmBigGraph");
    const auto choose = [&](const char *entry) {
        QTest::keyClick(&chart, Qt::Key_Menu);
        QPointer menu = chart.findChild<QMenu *>();
        for (QAction *action : menu->actions()) {
            if (action->text().remove('&') == entry) {
                action->trigger();
            }
        }
        delete menu;
    };
    ChartIn("frmMain");
    Tick();
    for (int second = 1; second <= 200; ++second) {
        clock.Advance(1);
        if (second == 20) {
            AddEvent("Alarm on", 1);
        }
        Tick();
    }
    const double alarm = MeasurementHistory().LastTime() - 180;
    chart.setFocus();
    for (const Qt::Key end : {Qt::Key_Escape, Qt::Key_Return}) {
        QTest::keyClick(&chart, Qt::Key_M);
        clock.Advance(0.25); // the moment of the key counts
        Type("txtMark", " fan  blocked ");
        QTest::keyClick(&Find("txtMark"), end);
        Settle();
        EXPECT_TRUE(chart.isVisible() && chart.hasFocus());
        Tick();
    }
    EXPECT_EQ(Events().Size(), 2U) << "Escape gives up";
    EXPECT_FALSE(Find("frmBigGraph").findChild<QLineEdit *>("txtMark")) << "gone";

    choose("Events...");
    auto &table = Find<QTableView>("tblEvents");
    const auto rows = [&] {
        QStringList texts;
        for (int row = 0; row < table.model()->rowCount(); ++row) {
            for (int column = 0; column < 3; ++column) {
                texts += table.model()->index(row, column).data().toString();
            }
        }
        return texts.filter(QRegularExpression("^[^0-9]")).join('|').toStdString();
    };
    EXPECT_EQ(rows(), "Alarm on|Remote1|fan blocked");
    EXPECT_EQ(saved("list.txt", [] { Click("cmdSave"); }).substr(0, 32),
              "Seconds\tTime\tWhat\tChannel\n36020.");

    EXPECT_TRUE(chart.IsLive());
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, 0));
    QTest::keyClick(&table, Qt::Key_Return);
    Settle();
    EXPECT_NEAR((chart.VisibleFrom() + chart.VisibleTo()) / 2, alarm, 1);
    EXPECT_EQ(chart.CursorText().last(), "Remote1: Alarm on");
    EXPECT_TRUE(ChartIn("frmMain").IsLive()) << "which did not open the list";
    EXPECT_THAT(saved("range.txt", [&] { choose("Save Visible Range..."); }),
                testing::AllOf(testing::HasSubstr("THERM% [%]\tEvent\n"),
                               testing::HasSubstr("\t6\tRemote1: Alarm on\n"),
                               testing::Not(testing::HasSubstr("blocked"))));

    const auto put = [&](double time, Qt::Key key) {
        SendMouse(chart, QEvent::MouseMove, chart.PointOf(time, 50), Qt::NoButton);
        QTest::keyClick(&chart, key);
    };
    put(alarm - 2, Qt::Key_1);
    put(alarm + 1, Qt::Key_2);
    const QString span =
        QString::fromStdString(saved("span.txt", [&] { choose("Save Span between Cursors..."); }));
    EXPECT_EQ(span.count('\n'), 6) << "two lines above those of four samples";
    EXPECT_TRUE(span.split('\n').at(4).endsWith("\t6\tRemote1: Alarm on"));

    AddEvent("late", NoChannel);
    AddEvent("early", NoChannel, alarm - 1);
    Tick();
    EXPECT_EQ(rows(), "early|Alarm on|Remote1|fan blocked|late");
    EXPECT_EQ(table.currentIndex().row(), 1) << "still the alarm";
    for (size_t more = 0; more < EventHistory::capacity; ++more) {
        AddEvent("x");
    }
    Tick();
    EXPECT_EQ(table.model()->rowCount(), static_cast<int>(EventHistory::capacity));

    for (const bool sure : {false, true}) {
        EXPECT_EQ(AnswerMessageOf([&] { choose("Clear History..."); }, sure).title,
                  "Clear History");
        Tick(); // measuring goes on
        EXPECT_EQ(MeasurementHistory().FirstTime() == RunningSeconds(), sure);
        EXPECT_EQ(Find("frmBigGraph").findChild<QTableWidget *>()->isVisible(), !sure);
    }
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

    const auto press = [&](std::initializer_list<QKeyCombination> keys) {
        for (const QKeyCombination key : keys) {
            QTest::keyClick(&chart(), key.key(), key.keyboardModifiers());
            Settle();
        }
    };
    const auto forward = Qt::ShiftModifier | Qt::Key_Right;
    const auto back = Qt::ShiftModifier | Qt::Key_Left;
    press({back, back, back, Qt::Key_1, forward});
    EXPECT_EQ(chart().CursorText().join('|'), "10.5 s|Local 40°C|Fan1 2000RPM|"
                                              "Local dashed 5°C|Fan1 dashed 1RPM");
    press({forward, forward, Qt::Key_2});
    const auto &table = *Find("frmLogView").findChild<QTableWidget *>();
    EXPECT_EQ(RowOf(table, 0), "Local [°C]|20|–|–|–|20|30|40") << "it has ended before B";
    EXPECT_EQ(RowOf(table, 2), "Local dashed [°C]|5|6|1|.05|5|5.5|6");
    const QString saved = QString::fromStdString(folder.Path("saved"));
    for (const bool isSpan : {false, true}) {
        EXPECT_TRUE(isSpan ? chart().SaveMeasuredSpan(saved) : chart().SaveVisibleRange(saved));
        EXPECT_THAT(BytesOf(folder.Path("saved")),
                    testing::EndsWith("\nSeconds\tLocal [°C]\tFan1 [RPM]"
                                      "\tLocal dashed [°C]\tFan1 dashed [RPM]\n"
                                      "0.500\t20\t1000\t5\t1\n10.500\t40\t2000\t\t\n"
                                      "20.500\t\t\t6\t2\n"));
    }
    Click("cmdAlignCursors");
    EXPECT_EQ(TextOf("txtShift"), "-20");
    press({back, Qt::Key_Escape});
    EXPECT_FALSE(table.isVisible());
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

TEST_F(MonitorChartsTest, OpeningALogForLongerThanASecondShowsItsProgressAndCanBeCancelled) {
    std::string rows;
    for (int row = 0; row < 300'000; ++row) {
        rows += " 1\t20\xB0\x43\t\r\n";
    }
    const TemporaryFolder folder;
    StartSessionOf(ZTM7720);
    auto &view = ShowForm<frmLogView>();
    view.OpenLog(
        QString::fromStdString(folder.Put("long", "Started At: now\r\n\tLocal\t\r\n" + rows)));
    const auto &progress = Find("prgbarOpen");
    const auto readAPiece = [&] {
        const bool wasShown = progress.isVisible();
        for (int turn = 0; turn < 3 && progress.isVisible() == wasShown; ++turn) {
            QCoreApplication::processEvents();
        }
    };
    readAPiece();
    EXPECT_FALSE(progress.isVisible());
    clock.Advance(1);
    readAPiece();
    EXPECT_TRUE(progress.isVisible());
    EXPECT_TRUE(Find<QTimer>("reading").isActive());
    Click("cmdCancelOpen");
    EXPECT_EQ(LoadedForm<frmLogView>(), nullptr) << "there is nothing else to show";
}

} // namespace
} // namespace ztm::test
