// That painting little paints the same as painting all.

#include "support/StripChartFixture.h"

#include <cmath>
#include <random>

namespace ztm::test {
namespace {

using testing::IsEmpty;
using testing::Not;

/// Counts what a widget is asked to paint.
class PaintCounter : public QObject {
public:
    int paints = 0;
    int pixels = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            ++paints;
            const QRect rect = static_cast<QPaintEvent *>(event)->rect();
            pixels += rect.width() * rect.height();
        }
        return QObject::eventFilter(watched, event);
    }
};

class StripChartPaintingTest : public StripChartTest {
protected:
    QImage Seen() { return chart.grab().toImage(); }

    /// The same once everything has been painted anew.
    QImage SeenAnew() {
        QEvent change(QEvent::PaletteChange);
        QCoreApplication::sendEvent(&chart, &change);
        Settle();
        return Seen();
    }

    /// Samples of noise with steps, spikes, gaps and pauses.
    void AppendAnything(int samples) {
        std::uniform_int_distribution<int> any(0, 99);
        std::normal_distribution<float> noise(0, 1);
        for (int sample = 0; sample < samples; ++sample) {
            const int event = any(random);
            level = event < 2 ? static_cast<float>(any(random)) : level;
            const float fan = event == 7 ? Extent::gap : 80 * level + 100 * noise(random);
            Append(event == 5 ? Extent::gap : event == 6 ? 95 : level + noise(random), fan);
            time += event == 8 ? 1.3 : 0;
        }
        Settle();
    }

    int ColumnCount() {
        return qRound(Plot()->axisRect()->width() * Plot()->bufferDevicePixelRatio());
    }

    std::mt19937 random{11};
    float level = 40;
};

TEST_F(StripChartPaintingTest, WhatIsPaintedInStepsLooksAsIfPaintedAtOnce) {
    const struct {
        const char *name;
        std::function<void()> change;
    } cases[] = {
        {"from the start", [] {}},
        {"once round", [this] { AppendAnything(3000); }},
        {"values zoomed", [this] { Key(Qt::Key_Plus, Qt::ControlModifier); }},
        {"time zoomed out", [this] { Key(Qt::Key_Minus); }},
        {"moved away", [this] { Key(Qt::Key_Left); }},
        {"and on", [this] { Key(Qt::Key_Right); }},
        {"live again", [this] { Key(Qt::Key_End); }},
        {"resized", [this] { chart.resize(611, 377); }},
        {"hidden and shown",
         [this] {
             chart.hide();
             AppendAnything(50);
             chart.show();
         }},
        {"cleared",
         [this] {
             history.Clear();
             chart.HistoryChanged();
         }},
        {"moved away from nothing",
         [this] {
             history.Clear();
             chart.HistoryChanged();
             Key(Qt::Key_Left);
             time = 20;
             AppendMany(1, level);
             time += 5;
         }},
    };
    for (const auto &c : cases) {
        level = 40;
        c.change();
        Settle();
        for (int round = 0; round < 4; ++round) {
            for (int step = 0; step < 12; ++step) {
                AppendAnything(step % 3);
            }
            const QImage steps = Seen();
            ASSERT_EQ(steps, SeenAnew()) << c.name;
        }
        ASSERT_THAT(ColumnsWith(temperatureColour, 25, 75), Not(IsEmpty())) << c.name;
    }
}

TEST_F(StripChartPaintingTest, PaintsNothingWhileNoColumnChanges) {
    while (Span() < 3000) {
        Key(Qt::Key_Minus);
    }
    AppendMany(400, 50); // over a column of five seconds
    PaintCounter counter;
    Plot()->installEventFilter(&counter);
    replots = 0;
    AppendMany(10, 50);
    EXPECT_EQ(counter.paints, 0);
    Append(60);
    Settle();
    EXPECT_EQ(counter.paints, 1);
    EXPECT_LT(counter.pixels, 10 * Plot()->height()) << "the newest column";
    EXPECT_EQ(replots, 0);
}

TEST_F(StripChartPaintingTest, TracesKeepToThePlotWhereverTheRingBegins) {
    chart.SetLabel(3, QString());
    const double width = Span() / ColumnCount();
    for (int column = -2; column < ColumnCount() + 2; ++column) {
        time = noon + (column + 0.5) * width; // noon begins a column whose number is a multiple
        Append(Extent::gap, 5000);
        if (column >= ColumnCount() - 3) {
            Settle();
            const QImage picture = Seen();
            const int edge =
                qCeil(chart.PointOf(chart.VisibleTo(), 0).x() * chart.devicePixelRatioF());
            for (int x = edge; x < picture.width(); ++x) {
                for (int y = 0; y < picture.height(); ++y) {
                    ASSERT_NE(picture.pixelColor(x, y), fanColour) << x - edge << " at " << column;
                }
            }
        }
    }
}

TEST_F(StripChartPaintingTest, LabelsKeepToThePlot) {
    for (const QSize size : {QSize(200, 140), QSize(300, 200), QSize(1200, 700)}) {
        chart.resize(size);
        Settle();
        const QRect plot = Plot()->axisRect()->rect();
        for (int item = 0; item < Plot()->itemCount(); ++item) {
            auto *text = qobject_cast<QCPItemText *>(Plot()->item(item));
            const QRectF box(text->topLeft->pixelPosition(), text->bottomRight->pixelPosition());
            EXPECT_TRUE(QRectF(plot).contains(box))
                << size.width() << " " << text->text().toStdString();
        }
    }
    const auto *label = qobject_cast<QCPItemText *>(Plot()->item(0));
    EXPECT_NEAR(label->topLeft->pixelPosition().x(), 0.8 * Plot()->width(), 1)
        << "where it was put, given room";
}

TEST_F(StripChartPaintingTest, ValuesAtTheEndsOfAnAxisAreSeen) {
    chart.SetLabel(1, QString());
    for (const float value : {0.0F, 100.0F}) {
        history.Clear();
        AppendMany(300, value);
        EXPECT_THAT(ColumnsWith(temperatureColour, 0, 100), Not(IsEmpty())) << value;
    }
}

/// A picture that is not copied pixel for pixel would drop columns, or double some.
TEST_F(StripChartPaintingTest, EveryColumnOfPixelsIsSeenOnce) {
    chart.SetLabel(1, QString());
    Settle();
    const double width = Span() / ColumnCount();
    constexpr int columns = 400;
    for (int column = 0; column < columns; ++column) {
        time = noon + (column + 0.5) * width;
        Append(column % 2 == 0 ? 80.0F : Extent::gap);
    }
    Settle();
    const auto seen = ColumnsWith(temperatureColour, 70, 90);
    ASSERT_EQ(seen.size(), columns / 2U);
    for (size_t index = 1; index < seen.size(); ++index) {
        ASSERT_EQ(seen[index], seen[index - 1] + 2);
    }
}

} // namespace
} // namespace ztm::test
