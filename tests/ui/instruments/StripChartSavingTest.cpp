// What a strip chart writes into files.

#include "support/StripChartFixture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace ztm::test {
namespace {

using testing::DoubleNear;
using testing::Each;
using testing::Gt;
using testing::IsEmpty;
using testing::Not;

class StripChartSavingTest : public StripChartTest {
protected:
    QString Path(const QString &name) { return folder.filePath(name); }

    QByteArray Saved(const QString &name) {
        EXPECT_TRUE(chart.SavePicture(Path(name)));
        return Read(name);
    }

    /// No two columns alike.
    void AppendRamp() {
        for (int sample = 0; sample < 1000; ++sample) {
            Append(static_cast<float>(sample % 97), 5000);
        }
        Settle();
    }

    QByteArray Read(const QString &name) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QList<QByteArray> SavedLines() {
        EXPECT_TRUE(chart.SaveVisibleRange(Path("range.txt")));
        QList<QByteArray> lines = Read("range.txt").split('\n');
        EXPECT_EQ(lines.takeLast(), QByteArray()) << "ends with a line feed";
        return lines;
    }

    QTemporaryDir folder;
};

/// What a drawing consists of.
struct Drawing {
    QStringList texts;
    std::vector<QRectF> traceRects; ///< of the temperature, from the top left of the plot
    std::vector<double> fontSizes;
    int images = 0;
};

Drawing ReadDrawing(const QByteArray &svg) {
    Drawing drawing;
    QXmlStreamReader xml(svg);
    QString fill;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const auto number = [&](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toDouble();
        };
        if (xml.name() == QLatin1String("g")) {
            fill = xml.attributes().value(QLatin1String("fill")).toString();
        } else if (xml.name() == QLatin1String("rect") && fill == temperatureColour.name()) {
            drawing.traceRects.emplace_back(number("x"), number("y"), number("width"),
                                            number("height"));
        } else if (xml.name() == QLatin1String("text")) {
            drawing.fontSizes.push_back(number("font-size"));
            drawing.texts += xml.readElementText().trimmed();
        } else if (xml.name() == QLatin1String("image")) {
            ++drawing.images;
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return drawing;
}

std::vector<std::pair<int, int>> PixelsOf(const QImage &picture, const QColor &colour) {
    std::vector<std::pair<int, int>> found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) == colour) {
                found.emplace_back(x, y);
            }
        }
    }
    return found;
}

TEST_F(StripChartSavingTest, ADrawingHoldsTracesAndTextsAsSuch) {
    AppendRamp();
    const Drawing drawing = ReadDrawing(Saved("chart.svg"));
    EXPECT_THAT(drawing.traceRects.size(), Gt(250U));
    EXPECT_EQ(drawing.images, 0);
    for (const char *text : {"Temperature", "Local", "Fan1", "Fan Speed", "100", "12 00 00"}) {
        EXPECT_TRUE(drawing.texts.contains(QLatin1String(text))) << text;
    }
    EXPECT_THAT(drawing.fontSizes, Each(DoubleNear(QFontInfo(chart.font()).pixelSize(), 1)))
        << "as on the screen";
}

/// Not every format can clip.
TEST_F(StripChartSavingTest, ADrawingKeepsTracesWithinThePlot) {
    AppendMany(300, 150);
    AppendMany(300, -50);
    AppendMany(300, 100);
    const double height = Plot()->axisRect()->height() * chart.devicePixelRatioF();
    const Drawing drawing = ReadDrawing(Saved("chart.svg"));
    ASSERT_THAT(drawing.traceRects, Not(IsEmpty()));
    for (const QRectF &rect : drawing.traceRects) {
        ASSERT_GE(rect.top(), 0);
        ASSERT_LE(rect.bottom(), std::ceil(height));
        ASSERT_GT(rect.height(), 0);
    }
}

TEST_F(StripChartSavingTest, APictureIsWhatIsSeenButForTheNotice) {
    AppendMany(2000, 25, 5000);
    AppendMany(500, 75, 0);
    chart.SetLabel(1, QString());
    chart.SetLabel(3, QString());
    Settle();
    for (const QColor &colour : {temperatureColour, fanColour}) {
        const auto seen = PixelsOf(Plot()->grab().toImage(), colour);
        EXPECT_THAT(seen.size(), Gt(500U));
        EXPECT_EQ(PixelsOf(QImage::fromData(Saved("live.png")), colour), seen);
    }
    Key(Qt::Key_Left);
    const QColor notice = chart.palette().color(QPalette::Highlight);
    EXPECT_THAT(PixelsOf(Plot()->grab().toImage(), notice), Not(IsEmpty()));
    EXPECT_THAT(PixelsOf(QImage::fromData(Saved("away.png")), notice), IsEmpty());
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
    AppendMany(8000, 20, 5000);
    Key(Qt::Key_Left);
    chart.SetLabel(1, QString());
    chart.SetTraceName(0, "Board");
    const auto lines = SavedLines();
    EXPECT_EQ(lines.first(), "Seconds\tTime\tBoard\tFan1");
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
    chart.HistoryChanged();
    chart.ShowWholeHistory();
    Settle();
    const auto lines = SavedLines();
    EXPECT_EQ(lines.first(), "Seconds\tTime\tLocal low\tLocal high");
    EXPECT_EQ(lines.at(1), "43200.000\t12:00:00.000\t20\t30");
    EXPECT_EQ(lines.last().split('\t').mid(2), QList<QByteArray>({"30", "30"}));
}

} // namespace
} // namespace ztm::test
