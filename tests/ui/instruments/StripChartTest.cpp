#include "support/Driver.h"
#include "support/StripChartFixture.h"

#include <QMenu>
#include <QTemporaryDir>

#include <cmath>

namespace ztm::test {
namespace {

using testing::IsEmpty;
using testing::Not;

/// What is in sight.
struct View {
    bool live = true;
    double back = 0; ///< seconds from the right edge to the newest sample
    double span = 60;
    QCPRange left{0, 100};
    QCPRange right{0, 10000};
};

TEST_F(StripChartTest, KeysWheelAndMouseMoveWhatIsInSight) {
    using Action = std::function<void()>;
    const auto turn = [this](double x, double y, int notches) -> Action {
        return [=, this] { TurnWheel(chart, At(x, y), notches * 120); };
    };
    const auto drag = [this](double x, double y, double toX, double toY) -> Action {
        return [=, this] { DragBy(At(x, y), At(toX, toY) - At(x, y)); };
    };
    AppendMany(6600, 20, 5000);
    const struct {
        const char *keys;
        Action action;
        View view;
    } cases[] = {
        {"PgUp, PgUp, PgUp, PgUp", [] {}, {.live = false, .back = 6599 * interval}},
        {"Left, Left, Right", [] {}, {.live = false, .back = 6}},
        {"Right", [] {}, {}},
        {"PgUp, PgUp, PgDown", [] {}, {.live = false, .back = 60}},
        {"PgUp, PgDown", [] {}, {.live = false}},
        {"PgUp, End", [] {}, {}},
        {"PgUp", [this] { QTest::mouseDClick(&chart, Qt::LeftButton); }, {}},
        {"+", [] {}, {.span = 48}},
        {"-", [] {}, {.span = 75}},
        {"Up", [] {}, {.left = {10, 110}, .right = {1000, 11000}}},
        {"Down", [] {}, {.left = {-10, 90}, .right = {-1000, 9000}}},
        {"Ctrl++", [] {}, {.left = {10, 90}, .right = {1000, 9000}}},
        {"Ctrl+-", [] {}, {.left = {-12.5, 112.5}, .right = {-1250, 11250}}},
        {"Home", [] {}, {.left = {19, 21}, .right = {4999, 5001}}},
        {"", turn(0.25, 0.5, 2), {.live = false, .back = 16.2, .span = 38.4}},
        {"", turn(0.25, 0.5, -1), {.span = 75}},
        {"", turn(0.5, -0.05, -1), {.span = 75}},
        {"", turn(-0.02, 0.25, 1), {.left = {5, 85}}},
        {"", turn(1.02, 0.25, 1), {.right = {500, 8500}}},
        {"", drag(0.5, 0.5, 0.7, 0.6), {.live = false, .back = 12}},
        {"", drag(0.5, 0.5, 0.502, 0.5), {}}, // a click that trembles
        {"", drag(-0.02, 0.5, -0.02, 0.75), {.left = {-25, 75}}},
        {"", drag(-0.02, 0.97, -0.02, 0.5), {.left = {0, 194}}},
        {"", drag(-0.02, 0.03, -0.02, 0.5), {.left = {-94, 100}}},
        {"", drag(1.02, 0.5, 1.02, 0.75), {.right = {-2500, 7500}}},
        {"", drag(0.5, -0.05, 0.7, -0.05), {.live = false, .back = 12}},
        {"", drag(0.01, -0.05, 0.5, -0.05), {.span = 118.8}},
        {"", drag(0.99, -0.05, 0.5, -0.05), {.span = 118.8}},
        {"PgUp", drag(0.99, -0.05, 0.5, -0.05), {.live = false, .back = 1.2, .span = 118.8}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.keys << " " << &c - cases);
        chart.RestoreScales();
        chart.BackToLive();
        Settle();
        Press(c.keys);
        c.action();
        Settle();
        EXPECT_EQ(chart.IsLive(), c.view.live);
        EXPECT_NEAR(history.LastTime() - chart.VisibleTo(), c.view.back, 0.5);
        EXPECT_NEAR(Span(), c.view.span, 0.5);
        for (const bool right : {true, false}) {
            const QCPRange range = right ? c.view.right : c.view.left;
            EXPECT_NEAR(chart.ValueRange(right).lower, range.lower, range.size() / 100);
            EXPECT_NEAR(chart.ValueRange(right).upper, range.upper, range.size() / 100);
        }
        const size_t notice = ColumnsWith(chart.palette().color(QPalette::Highlight)).size();
        EXPECT_EQ(notice > 20, !c.view.live) << "says that it is not live";
        const QImage seen = OnScreen(chart);
        EXPECT_EQ(seen, SeenAnew());
        const double end = chart.VisibleTo();
        AppendMany(100, 20, 5000);
        EXPECT_NEAR(chart.VisibleTo() - end, c.view.live ? 3 : 0, 0.5);
    }
}

TEST_F(StripChartTest, DraggingKeepsAnAxisWithinReason) {
    for (const auto &[pixels, span] : {std::pair{-4000, 1e-3}, {4000, 1e9}}) {
        for (int time = 0; time < 20; ++time) {
            DragBy(At(0, 1) + QPoint(-6, 4), {0, pixels});
        }
        EXPECT_NEAR(chart.ValueRange().size(), span, span * 1e-6);
    }
}

TEST_F(StripChartTest, TheMenuDoesWhatItSays) {
    const QTemporaryDir folder;
    // Chooses an entry of the menu, and gives the text of all.
    const auto choose = [&](int index) {
        Press("Menu");
        QPointer menu = chart.findChild<QMenu *>();
        QStringList texts;
        for (const QAction *action : menu->actions()) {
            texts += action->text().remove('&');
        }
        menu->actions().at(index)->trigger();
        delete menu;
        Settle();
        return texts.join('|');
    };
    AppendMany(8000, 20);
    Press("Left");
    choose(0);
    EXPECT_EQ(chart.ValueRange(), QCPRange(19, 21));
    choose(1);
    EXPECT_TRUE(chart.VisibleFrom() <= noon && chart.VisibleFrom() > noon - 1);
    EXPECT_EQ(choose(2), "Fit Values|Show Whole History|Original Scales|Back to Live||"
                         "Copy Picture|Save Picture...|Save Visible Range...");
    EXPECT_EQ(chart.ValueRange(), QCPRange(0, 100));
    EXPECT_NEAR(Span(), 60, 1e-6);
    Press("Left");
    choose(3);
    EXPECT_TRUE(chart.IsLive());
    choose(5);
    EXPECT_FALSE(QGuiApplication::clipboard()->pixmap().isNull());
    const struct {
        int index;
        const char *typed, *saved;
        bool askedToReplace = false;
    } cases[] = {{6, "it", "it.png"},
                 {6, "it", "it.png", true},
                 {6, "it.pdf", "it.pdf"},
                 {7, "it", "it.txt"}};
    for (const auto &c : cases) {
        const auto shown = AnswerFileDialogOf([&] { choose(c.index); }, folder.filePath(c.typed));
        EXPECT_TRUE(QFile::exists(folder.filePath(c.saved))) << c.saved;
        EXPECT_EQ(shown.askedToReplace, c.askedToReplace) << c.saved;
    }
}

TEST_F(StripChartTest, CursorReadsOutTimeAndTraces) {
    EXPECT_TRUE(std::isnan(chart.LastValue(0)));
    AppendMany(1000, 20.04F, 5000);
    AppendMany(1000, 30, 6000);
    EXPECT_EQ(chart.LastValue(1), 6000);
    EXPECT_EQ(chart.CursorText(), QStringList());
    const std::tuple<double, const char *, const char *> cases[] = {
        {15, "", "Local 20.0°C, Fan1 5000RPM"}, {45, "Board", "Board 30.0°C, Fan1 6000RPM"}};
    for (const auto &[second, name, readings] : cases) {
        chart.SetLabel(1, name);
        Hover(chart.PointOf(noon + second, 50));
        EXPECT_NEAR(chart.CursorText().value(0).section(':', -1).toDouble(), second, 0.3);
        EXPECT_EQ(chart.CursorText().mid(1).join(", "), readings);
    }
    const QImage seen = OnScreen(chart);
    EXPECT_EQ(seen, SeenAnew());
    Press("Esc");
    EXPECT_EQ(chart.CursorText(), QStringList());
    EXPECT_NE(seen, OnScreen(chart));
    Press("Ctrl+Left");
    EXPECT_EQ(chart.CursorText().size(), 3);
}

TEST_F(StripChartTest, RestsAndStaysUsableWithoutRoomForAPlot) {
    AppendMany(1000, 20);
    chart.resize(60, 50);
    Settle();
    PaintCounter counter(*Plot());
    Settle();
    EXPECT_EQ(counter.paints, 0);
    for (const QPoint point : {QPoint(5, 5), QPoint(30, 25), QPoint(55, 45)}) {
        TurnWheel(chart, point, 120);
        DragBy(point, {-7, 9});
        Hover(point);
    }
    AppendMany(100, 20);
    chart.resize(700, 400);
    chart.BackToLive();
    chart.RestoreScales();
    Settle();
    EXPECT_NEAR(chart.VisibleTo(), history.LastTime(), 0.2);
    EXPECT_THAT(ColumnsWith(temperatureColour, 15, 25), Not(IsEmpty()));
}

/// As on a screen of another resolution.
TEST_F(StripChartTest, TakesToAnotherDevicePixelRatio) {
    AppendMany(10, 20);
    Plot()->setBufferDevicePixelRatio(chart.devicePixelRatioF() + 1);
    chart.grab();
    Settle();
    EXPECT_EQ(Plot()->bufferDevicePixelRatio(), chart.devicePixelRatioF());
}

} // namespace
} // namespace ztm::test
