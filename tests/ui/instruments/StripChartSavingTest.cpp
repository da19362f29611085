// What a strip chart writes into files.

#include "support/StripChartFixture.h"
#include "support/TemporaryFile.h"

#include <QRegularExpression>

namespace ztm::test {
namespace {

using testing::Gt;
using testing::IsEmpty;
using testing::IsSupersetOf;

class StripChartSavingTest : public StripChartTest {
protected:
    QString Path(const char *name) { return QString::fromStdString(folder.Path(name)); }

    QByteArray Saved(const char *name) {
        EXPECT_TRUE(chart.SavePicture(Path(name)));
        return QByteArray::fromStdString(BytesOf(folder.Path(name)));
    }

    QList<QByteArray> SavedLines() {
        EXPECT_TRUE(chart.SaveVisibleRange(Path("range.txt")));
        auto lines = QByteArray::fromStdString(BytesOf(folder.Path("range.txt"))).split('\n');
        EXPECT_EQ(lines.takeLast(), QByteArray()) << "ends with a line feed";
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
                IsSupersetOf({"Temperature", "Board", "Fan Speed", "100", "12 00 00"}));
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
        const auto seen = PixelsOf(Plot()->grab().toImage(), colour);
        EXPECT_THAT(seen.size(), Gt(500U));
        EXPECT_EQ(PixelsOf(QImage::fromData(Saved("live.png")), colour), seen);
    }
    Press("Left");
    const QColor notice = chart.palette().color(QPalette::Highlight);
    EXPECT_THAT(PixelsOf(QImage::fromData(Saved("away.png")), notice), IsEmpty());
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
    EXPECT_EQ(SavedLines().join('|'), "Seconds\tTime\tLocal\tFan1|"
                                      "43200.000\t12:00:00.000\t20.25\t5000|"
                                      "43200.030\t12:00:00.030\t20.25\t5000|"
                                      "43200.060\t12:00:00.060\t\t5000|"
                                      "43200.090\t12:00:00.090\t20.25\t5000");
    EXPECT_FALSE(chart.SaveVisibleRange(Path("none/range.txt")));
    AppendMany(8000, 20, 5000);
    Press("Left");
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
    chart.ShowWholeHistory();
    Settle();
    const auto lines = SavedLines();
    EXPECT_EQ(lines.first(), "Seconds\tTime\tLocal low\tLocal high");
    EXPECT_EQ(lines.at(1), "43200.000\t12:00:00.000\t20\t30");
    EXPECT_EQ(lines.last().split('\t').mid(2), QList<QByteArray>({"30", "30"}));
}

} // namespace
} // namespace ztm::test
