#include "support/StripChartFixture.h"

#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QTemporaryDir>

#include <cmath>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(StripChartTest, ShowsLabelsAndLastValues) {
    EXPECT_EQ(chart.property("traceCount").toInt(), 2);
    EXPECT_EQ(chart.property("labels").toStringList(),
              QStringList({"Temperature", "Local", "Fan Speed", "Fan1"}));
    EXPECT_TRUE(std::isnan(chart.LastValue(0)));
    Append(25.5F, 1200);
    double value = 0;
    EXPECT_TRUE(
        QMetaObject::invokeMethod(&chart, "LastValue", Q_RETURN_ARG(double, value), Q_ARG(int, 1)));
    EXPECT_EQ(value, 1200);

    const auto labelPixels = [this] { return ColumnsWith(temperatureColour, 0, 100).size(); };
    Settle();
    const size_t before = labelPixels();
    chart.SetLabel(1, QString());
    Settle();
    EXPECT_LT(labelPixels(), before);
    EXPECT_EQ(chart.Labels().at(1), QString());
    chart.SetLabelVerticalPosition(3, 0.12);
    EXPECT_EQ(chart.LabelVerticalPosition(3), 0.12);
    Settle();
    const int top = qRound(0.12 * chart.height());
    const auto row = chart.grab(QRect(0, top, chart.width(), 20)).toImage();
    bool moved = false;
    for (int x = row.width() * 3 / 4; x < row.width() * 9 / 10; ++x) {
        for (int y = 0; y < row.height(); ++y) {
            moved = moved || row.pixelColor(x, y) == fanColour;
        }
    }
    EXPECT_TRUE(moved);
}

TEST_F(StripChartTest, ASpikeOfOneSampleIsSeenAtEveryZoom) {
    chart.SetLabel(1, QString());
    AppendMany(60'000, 20);
    Append(80);
    const double spikeTime = time - interval;
    AppendMany(10, 20);
    for (int zoom = 0; zoom < 60; ++zoom) {
        const auto columns = ColumnsWith(temperatureColour, 70, 90);
        ASSERT_THAT(columns, Not(IsEmpty())) << Span();
        if (Span() > 50) {
            // One column for the spike, and one for the way back from it.
            ASSERT_LE(columns.size(), 2U) << Span();
        }
        ASSERT_LT(chart.VisibleFrom(), spikeTime);
        Key(zoom < 20 ? Qt::Key_Plus : Qt::Key_Minus);
    }
    EXPECT_GT(Span(), 1800);
}

TEST_F(StripChartTest, AGapStaysOpenAndASlowTraceIsJoined) {
    chart.SetLabel(1, QString());
    AppendMany(500, 50);
    time += 10;
    Append(50); // 10 s without a sample: joined
    AppendMany(300, 50);
    Append(Extent::gap);
    time += 10;
    AppendMany(300, 50); // the same around a gap: open
    const auto columns = ColumnsWith(temperatureColour, 48, 52);
    ASSERT_THAT(columns, Not(IsEmpty()));
    const double perSecond = static_cast<double>(ColumnsWith(Qt::white, 0, 100).size()) / Span();
    std::vector<int> holes;
    for (size_t index = 1; index < columns.size(); ++index) {
        if (columns[index] != columns[index - 1] + 1) {
            holes.push_back(columns[index] - columns[index - 1]);
        }
    }
    ASSERT_EQ(holes.size(), 1U);
    EXPECT_NEAR(holes[0], 10 * perSecond, 3);
}

TEST_F(StripChartTest, AStepIsAClosedLine) {
    chart.SetLabel(1, QString());
    AppendMany(1000, 20);
    AppendMany(1000, 80);
    const QImage picture = chart.grab().toImage();
    const double ratio = chart.devicePixelRatioF();
    const int x = qRound(chart.PointOf(noon + 1000 * interval, 0).x() * ratio);
    for (double value = 22; value < 79; value += 1) {
        const int y = qRound(chart.PointOf(0, value).y() * ratio);
        bool found = false;
        for (int near = x - 2; near <= x + 2; ++near) {
            found = found || picture.pixelColor(near, y) == temperatureColour;
        }
        EXPECT_TRUE(found) << value;
    }
}

TEST_F(StripChartTest, ColumnsDoNotShimmerWhileScrolling) {
    chart.SetLabel(1, QString());
    for (int sample = 0; sample < 4000; ++sample) {
        Append(sample % 7 == 0 ? 70.0F : 30.0F);
    }
    Settle();
    const auto above = [this] { return ColumnsWith(temperatureColour, 60, 75); };
    const auto edge = [this](double at) { return chart.PointOf(at, 0).x(); };
    const auto before = above();
    const double start = chart.VisibleFrom();
    for (int sample = 0; sample < 40; ++sample) {
        Append(30);
        Settle();
    }
    const double moved = (edge(chart.VisibleFrom()) - edge(start)) * chart.devicePixelRatioF();
    const auto shift = static_cast<int>(std::lround(moved));
    EXPECT_NEAR(moved, shift, 1e-3) << "moves in whole columns";
    ASSERT_GT(shift, 3);
    std::vector<int> expected;
    for (const int column : before) {
        if (column >= shift) {
            expected.push_back(column - shift);
        }
    }
    EXPECT_EQ(above(), expected);
}

TEST_F(StripChartTest, DragStopsFollowingAndADoubleClickResumesIt) {
    AppendMany(4000, 20);
    EXPECT_TRUE(chart.IsLive());
    const double before = chart.VisibleTo();
    AppendMany(100, 20);
    EXPECT_NEAR(chart.VisibleTo(), before + 3, 0.2);

    DragBy(Middle(), {100, 0});
    EXPECT_FALSE(chart.IsLive());
    const double away = chart.VisibleTo();
    EXPECT_LT(away, history.LastTime() - 5);
    AppendMany(100, 20);
    EXPECT_EQ(chart.VisibleTo(), away);

    QTest::mouseDClick(&chart, Qt::LeftButton, {}, Middle());
    Settle();
    EXPECT_TRUE(chart.IsLive());
    EXPECT_NEAR(chart.VisibleTo(), history.LastTime(), 0.2);
    EXPECT_NEAR(Span(), 60, 1e-6);
}

TEST_F(StripChartTest, SaysThatItIsNotLive) {
    AppendMany(4000, 20);
    const auto pixels = [this] {
        const QColor sign = chart.palette().color(QPalette::Highlight);
        return ColumnsWith(sign, 50, 100).size();
    };
    EXPECT_EQ(pixels(), 0U);
    Key(Qt::Key_Left);
    EXPECT_GT(pixels(), 20U);
    Key(Qt::Key_End);
    EXPECT_EQ(pixels(), 0U);
}

TEST_F(StripChartTest, WheelZoomsTimeAtThePointerAndAnAxisByItself) {
    AppendMany(8000, 20);
    const QPointF point = chart.PointOf(chart.VisibleFrom() + 15, 50);
    Wheel(point, 2);
    EXPECT_NEAR(Span(), 60 / 1.5625, 0.01);
    EXPECT_NEAR(
        (point.x() - chart.PointOf(chart.VisibleFrom(), 0).x()) /
            (chart.PointOf(chart.VisibleTo(), 0).x() - chart.PointOf(chart.VisibleFrom(), 0).x()),
        0.25, 0.01);
    EXPECT_NEAR(chart.PointOf(history.LastTime() - 45, 50).x(), point.x(), 2);

    Key(Qt::Key_End);
    Wheel({350, chart.height() - 8.0}, -1); // the time axis, live: stays live
    EXPECT_TRUE(chart.IsLive());
    EXPECT_NEAR(Span(), 60 / 1.25, 0.01);

    const auto right = chart.ValueRange(true);
    const QPointF onLeftAxis(chart.PointOf(chart.VisibleFrom(), 25).x() - 10,
                             chart.PointOf(0, 25).y());
    Wheel(onLeftAxis, 1);
    EXPECT_NEAR(chart.ValueRange().size(), 80, 0.01);
    EXPECT_NEAR(chart.ValueRange().lower, 5, 0.2);
    EXPECT_EQ(chart.ValueRange(true), right);
}

TEST_F(StripChartTest, DraggingTheArrowsOfAnAxisMovesThatEnd) {
    AppendMany(8000, 20);
    const double edge = chart.PointOf(chart.VisibleFrom(), 0).x();
    const QPoint top(qRound(edge) - 6, qRound(chart.PointOf(0, 97).y()));
    const int height = qRound(chart.PointOf(0, 0).y() - chart.PointOf(0, 100).y());
    DragBy(top, {0, height * 47 / 100}); // 97 comes to where 50 was
    EXPECT_EQ(chart.ValueRange().lower, 0);
    EXPECT_NEAR(chart.ValueRange().upper, 194, 4);
    EXPECT_EQ(chart.ValueRange(true).upper, 10000);

    const QPoint left(qRound(edge) + 6, chart.height() - 8);
    DragBy(left, {200, 0});
    EXPECT_TRUE(chart.IsLive());
    EXPECT_GT(Span(), 80);
    DragBy({qRound(chart.PointOf(chart.VisibleTo(), 0).x()) - 6, chart.height() - 8}, {-100, 0});
    EXPECT_TRUE(chart.IsLive());
    EXPECT_GT(Span(), 95);
}

TEST_F(StripChartTest, EverythingIsReachedByKeys) {
    AppendMany(8000, 20, 5000);
    Key(Qt::Key_Plus);
    EXPECT_NEAR(Span(), 48, 1e-6);
    EXPECT_TRUE(chart.IsLive());
    Key(Qt::Key_Minus);
    EXPECT_NEAR(Span(), 60, 1e-6);
    Key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_NEAR(chart.ValueRange().size(), 80, 1e-6);
    Key(Qt::Key_Up);
    EXPECT_NEAR(chart.ValueRange().lower, 18, 1e-6);
    Key(Qt::Key_Home);
    EXPECT_EQ(chart.ValueRange(), QCPRange(19, 21));
    EXPECT_EQ(chart.ValueRange(true), QCPRange(4999, 5001));
    const double end = chart.VisibleTo();
    Key(Qt::Key_Right);
    EXPECT_TRUE(chart.IsLive());
    Key(Qt::Key_Left);
    EXPECT_FALSE(chart.IsLive());
    EXPECT_NEAR(chart.VisibleTo(), end - 6, 0.2);
    for (int page = 0; page < 20; ++page) {
        Key(Qt::Key_PageUp);
    }
    EXPECT_NEAR(chart.VisibleTo(), history.FirstTime(), 0.2);
    Key(Qt::Key_End);
    EXPECT_TRUE(chart.IsLive());

    Key(Qt::Key_Menu);
    auto *menu = chart.findChild<QMenu *>();
    ASSERT_NE(menu, nullptr);
    std::vector<std::string> texts;
    for (const QAction *action : menu->actions()) {
        if (!action->isSeparator()) {
            texts.push_back(action->text().remove('&').toStdString());
        }
    }
    EXPECT_THAT(texts,
                ElementsAre("Fit Values", "Show Whole History", "Original Scales", "Back to Live",
                            "Copy Picture", "Save Picture...", "Save Visible Range..."));
    menu->actions().at(2)->trigger();
    menu->close();
    EXPECT_EQ(chart.ValueRange(), QCPRange(0, 100));
}

TEST_F(StripChartTest, CursorReadsOutTimeAndTraces) {
    AppendMany(1000, 20.04F, 5000);
    AppendMany(1000, 30, 6000);
    EXPECT_EQ(chart.CursorText(), QStringList());
    Hover(chart.PointOf(noon + 15, 50));
    EXPECT_NEAR(CursorSecond(), 15, 0.3);
    EXPECT_EQ(chart.CursorText().mid(1), QStringList({"Local 20.0°C", "Fan1 5000RPM"}));
    chart.SetLabel(1, "Board");
    Hover(chart.PointOf(noon + 45, 50));
    EXPECT_NEAR(CursorSecond(), 45, 0.3);
    EXPECT_EQ(chart.CursorText().mid(1), QStringList({"Board 30.0°C", "Fan1 6000RPM"}));
    Key(Qt::Key_Escape);
    EXPECT_EQ(chart.CursorText(), QStringList());
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(chart.CursorText().size(), 3);
}

TEST_F(StripChartTest, PaintsNothingWhileHiddenAndOnceForManySamples) {
    AppendMany(10, 20);
    replots = 0;
    AppendMany(10, 20);
    EXPECT_LE(replots, 2);
    EXPECT_GE(replots, 1);
    chart.hide();
    Settle();
    replots = 0;
    AppendMany(100, 20);
    EXPECT_EQ(replots, 0);
    chart.show();
    Settle();
    EXPECT_GT(replots, 0);
    EXPECT_NEAR(chart.VisibleTo(), history.LastTime(), 0.2);
}

TEST_F(StripChartTest, ForgetsWithItsHistory) {
    AppendMany(2000, 50);
    EXPECT_THAT(ColumnsWith(temperatureColour, 40, 60), Not(IsEmpty()));
    history.Clear();
    chart.HistoryChanged();
    Settle();
    EXPECT_THAT(ColumnsWith(temperatureColour, 40, 60), IsEmpty());
}

TEST_F(StripChartTest, SavesWhatIsSeen) {
    for (int sample = 0; sample < 4; ++sample) {
        Append(sample == 2 ? Extent::gap : 20.25F, 5000);
    }
    Settle();
    QTemporaryDir folder;
    ASSERT_TRUE(chart.SaveVisibleRange(folder.filePath("range.txt")));
    QFile file(folder.filePath("range.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "Seconds\tTime\tLocal\tFan1\n"
                              "43200.000\t12:00:00.000\t20.25\t5000\n"
                              "43200.030\t12:00:00.030\t20.25\t5000\n"
                              "43200.060\t12:00:00.060\t\t5000\n"
                              "43200.090\t12:00:00.090\t20.25\t5000\n");
    EXPECT_TRUE(chart.SavePicture(folder.filePath("chart.png")));
    EXPECT_EQ(QImage(folder.filePath("chart.png")).size(),
              Plot()->size() * chart.devicePixelRatioF());
    EXPECT_TRUE(chart.SavePicture(folder.filePath("chart.pdf")));
    EXPECT_FALSE(chart.SavePicture(folder.filePath("chart.xyz")));
    EXPECT_FALSE(chart.SavePicture(folder.filePath("none/chart.png")));
    EXPECT_FALSE(chart.SaveVisibleRange(folder.filePath("none/range.txt")));
    chart.CopyPicture();
    EXPECT_FALSE(QGuiApplication::clipboard()->pixmap().isNull());
}

TEST_F(StripChartTest, TheWholeHistoryBeginsWithItsFirstSample) {
    chart.SetLabel(1, QString());
    Append(80);
    AppendMany(5000, 20);
    chart.ShowWholeHistory();
    Settle();
    EXPECT_LE(chart.VisibleFrom(), noon);
    EXPECT_THAT(ColumnsWith(temperatureColour, 70, 90), Not(IsEmpty()));
}

TEST_F(StripChartTest, RestsAndStaysUsableWithoutRoomForAPlot) {
    AppendMany(1000, 20);
    chart.resize(60, 50);
    Settle();
    replots = 0;
    Settle();
    EXPECT_EQ(replots, 0);
    for (const QPointF point : {QPointF(5, 5), QPointF(30, 25), QPointF(55, 45)}) {
        Wheel(point, 1);
        DragBy(point.toPoint(), {-7, 9});
        Hover(point);
    }
    AppendMany(100, 20);
    chart.resize(700, 400);
    Settle();
    EXPECT_TRUE(std::isfinite(chart.VisibleTo()));
    chart.BackToLive();
    chart.RestoreScales();
    Settle();
    EXPECT_NEAR(chart.VisibleTo(), history.LastTime(), 0.2);
    EXPECT_THAT(ColumnsWith(temperatureColour, 15, 25), Not(IsEmpty()));
}

TEST_F(StripChartTest, DraggingKeepsAnAxisWithinReason) {
    const auto dragUpperEnd = [this](int pixels) {
        for (int time = 0; time < 20; ++time) {
            const QPointF end = chart.PointOf(chart.VisibleFrom(), chart.ValueRange().upper);
            DragBy({qRound(end.x()) - 6, qRound(end.y()) + 4}, {0, pixels});
        }
    };
    dragUpperEnd(-4000);
    EXPECT_NEAR(chart.ValueRange().size(), 1e-3, 1e-9);
    dragUpperEnd(4000);
    EXPECT_NEAR(chart.ValueRange().size(), 1e9, 1);
}

/// As on a screen of another resolution.
TEST_F(StripChartTest, TakesToAnotherDevicePixelRatio) {
    AppendMany(10, 20);
    Plot()->setBufferDevicePixelRatio(chart.devicePixelRatioF() + 1);
    chart.grab();
    Settle();
    EXPECT_EQ(Plot()->bufferDevicePixelRatio(), chart.devicePixelRatioF());
}

TEST_F(StripChartTest, FollowsThePalette) {
    AppendMany(500, 50);
    QPalette dark = chart.palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, Qt::white);
    chart.setPalette(dark);
    Settle();
    EXPECT_THAT(ColumnsWith(QColor(20, 20, 20), 0, 100), Not(IsEmpty()));
    EXPECT_THAT(ColumnsWith(temperatureColour, 0, 100), IsEmpty()) << "too dark to be read";
}

} // namespace
} // namespace ztm::test
