#include "support/StripChartFixture.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"
#include "ui/instruments/ChartCursors.h"

#include <QMenu>
#include <QRegularExpression>

#include <cmath>

namespace ztm::test {
namespace {

using testing::Gt;
using testing::IsEmpty;
using testing::IsSupersetOf;
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
    const auto lostRelease = [this] {
        QTest::mousePress(&chart, Qt::LeftButton, {}, At(0.5, 0.5));
        Hover(At(0.7, 0.6));
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
        {"PgUp, PgDown", [] {}, {}},
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
        {"", lostRelease, {}},
        {"", drag(-0.02, 0.5, -0.02, 0.75), {.left = {-25, 75}}},
        {"", drag(-0.02, 0.97, -0.02, 0.5), {.left = {0, 194}}},
        {"", drag(-0.02, 0.03, -0.02, 0.5), {.left = {-94, 100}}},
        {"", drag(1.02, 0.5, 1.02, 0.75), {.right = {-2500, 7500}}},
        {"Up", drag(-0.02, 0.5, -0.02, 0.75), {.left = {-15, 85}, .right = {1000, 11000}}},
        {"", drag(0.5, -0.05, 0.7, -0.05), {.live = false, .back = 12}},
        {"", drag(0.5, 0.5, 0.3, 0.5), {}},
        {"PgUp", drag(0.1, 0.5, -0.95, 0.5), {}}, // back to the newest
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
    const TemporaryFolder folder;
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
                         "Copy Picture|Save Picture...|Save Visible Range...||Clear History...||"
                         "Open Log...");
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
        const auto shown = AnswerFileDialogOf([&] { choose(c.index); },
                                              QString::fromStdString(folder.Path(c.typed)));
        EXPECT_TRUE(QFile::exists(QString::fromStdString(folder.Path(c.saved)))) << c.saved;
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
        {15, "", "Local 20°C, Fan1 5000RPM"}, {45, "Board", "Board 30°C, Fan1 6000RPM"}};
    for (const auto &[second, name, readings] : cases) {
        chart.SetLabel(1, name);
        Hover(chart.PointOf(noon + second, 50));
        EXPECT_NEAR(chart.CursorText().value(0).section(':', -1).toDouble(), second, 0.3);
        EXPECT_EQ(chart.CursorText().mid(1).join(", "), readings);
    }
    Hover(chart.PointOf(noon + 50, 50));
    const QImage seen = OnScreen(chart);
    EXPECT_EQ(seen, SeenAnew());
    Press("Esc");
    EXPECT_EQ(chart.CursorText(), QStringList());
    EXPECT_NE(seen, OnScreen(chart));
    Press("Ctrl+Left");
    EXPECT_EQ(chart.CursorText().size(), 3);
}

TEST_F(StripChartTest, LimitsAreLinesAndAClickOnAnArrowFitsTheAxis) {
    chart.SetLimits({.channel = 0, .low = 20, .high = {}});
    AppendMany(1000, 50, 12000);
    EXPECT_THAT(ColumnsWith(temperatureColour, 19, 21).size(), Gt(300U)) << "dashed";
    EXPECT_THAT(ColumnsWith(temperatureColour, 79, 81), IsEmpty());
    chart.SetLimits({});
    Settle();
    EXPECT_THAT(ColumnsWith(temperatureColour, 19, 21), IsEmpty());
    const auto arrow = [this] { return PixelsOf(OnScreen(chart), fanColour).boundingRect(); };
    ASSERT_FALSE(arrow().isEmpty());
    QTest::mouseClick(&chart, Qt::LeftButton, {}, arrow().center() / chart.devicePixelRatioF());
    Settle();
    EXPECT_EQ(chart.ValueRange(true), QCPRange(11999, 12001));
    EXPECT_EQ(chart.ValueRange(false), QCPRange(0, 100));
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

class StripChartSavingTest : public StripChartTest {
protected:
    StripChartSavingTest() { chart.SetDevice("ZTM7720"); }

    QString Path(const char *name) { return QString::fromStdString(folder.Path(name)); }

    QByteArray Saved(const char *name) {
        EXPECT_TRUE(chart.SavePicture(Path(name)));
        return QByteArray::fromStdString(BytesOf(folder.Path(name)));
    }

    QList<QByteArray> SavedLines() {
        EXPECT_TRUE(chart.SaveVisibleRange(Path("range.txt")));
        auto lines = QByteArray::fromStdString(BytesOf(folder.Path("range.txt"))).split('\n');
        EXPECT_EQ(lines.takeLast(), QByteArray()) << "ends with a line feed";
        source = lines.takeFirst();
        return lines;
    }

    /// No two columns alike, and some beyond the ends of the axis.
    void AppendRamp() {
        for (int sample = 0; sample < 1000; ++sample) {
            Append(static_cast<float>(sample % 197 - 50), 5000);
        }
        Settle();
    }

    TemporaryFolder folder;
    const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toLatin1();
    QByteArray source; // the line above the header
};

/// What a pattern captures wherever it matches.
std::vector<std::string> AllOf(const QString &pattern, const QString &text) {
    std::vector<std::string> found;
    for (const auto &match : QRegularExpression(pattern).globalMatch(text)) {
        found.push_back(match.captured(1).toStdString());
    }
    return found;
}

TEST_F(StripChartSavingTest, ADrawingHoldsTracesWithinThePlotAndTextsAsSuch) {
    chart.SetLabel(1, "Board");
    AppendRamp();
    const QString drawing = Saved("chart.svg");
    EXPECT_THAT(AllOf(">([^<]+?)\\s*</text>", drawing),
                IsSupersetOf(std::vector<std::string>{
                    "Temperature [°C]", "Board", "Fan Speed [RPM]", "100", "12 00 00",
                    "ZTM7720, " + today.toStdString() + " 11:59:30 to 12:00:30"}));
    for (const auto &size : AllOf("<text[^>]*font-size=\"([^\"]*)\"", drawing)) {
        EXPECT_NEAR(std::stod(size), QFontInfo(chart.font()).pixelSize(), 1) << "as on the screen";
    }
    EXPECT_FALSE(drawing.contains("<image"));
    // Not every format can clip.
    const auto trace = AllOf("<g fill=\"#c80000\"[^>]*>([^#]*)</g>", drawing).at(0);
    const auto tops = AllOf("<rect[^>]* y=\"(.*?)\"", trace.c_str());
    const auto heights = AllOf("<rect[^>]* height=\"(.*?)\"", trace.c_str());
    EXPECT_GT(tops.size(), 100U);
    for (size_t index = 0; index < tops.size(); ++index) {
        const double top = std::stod(tops[index]);
        const double height = std::stod(heights.at(index));
        ASSERT_TRUE(top >= 0 && height > 0) << top << " " << height;
        ASSERT_LE(top + height, InPixels(PlotRect()).height());
    }
}

TEST_F(StripChartSavingTest, APictureIsWhatIsSeenButForTheNotice) {
    AppendMany(2000, 25, 5000);
    AppendMany(500, 75, 0);
    for (const QColor &colour : {temperatureColour, fanColour}) {
        const QImage screen = Plot()->grab().toImage();
        const QImage picture = QImage::fromData(Saved("live.png"));
        const int titleHeight = picture.height() - screen.height();
        const auto seen = PixelsOf(screen, colour).translated(0, titleHeight);
        EXPECT_THAT(seen.size(), Gt(500U));
        EXPECT_EQ(PixelsOf(picture, colour), seen);
        EXPECT_EQ(PixelsOf(Plot()->grab().toImage(), colour).size(), seen.size());
    }
    Press("Left");
    const QColor notice = chart.palette().color(QPalette::Highlight);
    EXPECT_THAT(PixelsOf(QImage::fromData(Saved("away.png")), notice), IsEmpty());
    const auto inPicture = [&](QColor colour) {
        return PixelsOf(QImage::fromData(Saved("more.png")), colour).size();
    };
    const QColor ink = chart.palette().color(QPalette::Text);
    const auto before = inPicture(ink);
    ChartCursors cursors;
    chart.ShareCursors(cursors);
    cursors.Set(0, chart.VisibleFrom() + 10);
    cursors.Set(1, chart.VisibleFrom() + 20);
    EXPECT_THAT(inPicture(notice), Gt(2 * 200)) << "two cursors";
    cursors.Remove();
    EventHistory happened;
    happened.Add(chart.VisibleFrom() + 30, -1, "");
    chart.SetEvents({&happened, {}});
    Settle();
    EXPECT_THAT(inPicture(ink), Gt(before + 10)) << "the tick of an event";
    for (const char *name : {"chart.xyz", "none/chart.png"}) {
        EXPECT_FALSE(chart.SavePicture(Path(name)));
    }
}

TEST_F(StripChartSavingTest, ADocumentHoldsTheTraces) {
    const QByteArray empty = Saved("empty.pdf");
    EXPECT_TRUE(empty.startsWith("%PDF-"));
    AppendRamp();
    const QByteArray full = Saved("chart.pdf");
    EXPECT_TRUE(full.trimmed().endsWith("%%EOF"));
    EXPECT_GT(full.size(), empty.size() + 500);
    EXPECT_EQ(full.count("/Subtype /Image"), empty.count("/Subtype /Image")) << "drawn, not pasted";
}

TEST_F(StripChartSavingTest, TheVisibleRangeIsWhatIsInSight) {
    for (const float value : {20.25F, 20.25F, Extent::gap, 20.25F}) {
        AppendMany(1, value, 5000);
    }
    EXPECT_EQ(SavedLines().join('|').replace(today, "today").toStdString(),
              "Seconds\tTime\tLocal [°C]\tFan1 [RPM]|"
              "43200.000\ttoday 12:00:00.000\t20.25\t5000|"
              "43200.030\ttoday 12:00:00.030\t20.25\t5000|"
              "43200.060\ttoday 12:00:00.060\t\t5000|"
              "43200.090\ttoday 12:00:00.090\t20.25\t5000");
    EXPECT_EQ(source, "ZTM7720, " + today + " 11:59:00 to 12:00:00");
    EXPECT_FALSE(chart.SaveVisibleRange(Path("none/range.txt")));
    AppendMany(8000, 20, 5000);
    Press("Left");
    chart.SetTraceName(0, "Board");
    const auto lines = SavedLines();
    EXPECT_EQ(lines.first(), "Seconds\tTime\tBoard [°C]\tFan1 [RPM]");
    EXPECT_NEAR(static_cast<double>(lines.size() - 1), 60 / interval, 5);
    EXPECT_GE(lines.at(1).split('\t').first().toDouble(), chart.VisibleFrom() - 0.001);
    EXPECT_LE(lines.last().split('\t').first().toDouble(), chart.VisibleTo());
}

TEST_F(StripChartSavingTest, WhereSamplesHaveGoneTheVisibleRangeHasTheirExtremes) {
    for (int sample = 0; sample < 150'000; ++sample) {
        constexpr float none = Extent::gap;
        history.Append(time, {sample % 2 == 0 ? 20.0F : 30.0F, none, none, none, none, none});
        time += interval;
    }
    chart.ShowWholeHistory();
    Settle();
    const auto lines = SavedLines();
    EXPECT_EQ(lines.first(), "Seconds\tTime\tLocal low [°C]\tLocal high [°C]");
    EXPECT_EQ(lines.at(1), "43200.000\t" + today + " 12:00:00.000\t20\t30");
    EXPECT_EQ(lines.last().split('\t').mid(2), QList<QByteArray>({"30", "30"}));
}

} // namespace
} // namespace ztm::test
