#include "ui/fan/frmAutoControl.h"

#include "fan/LookupGraphScale.h"
#include "support/UiTest.h"
#include "ui/fan/LookupGraph.h"
#include "ui/instruments/ValueSlider.h"
#include "ui/kit/Twips.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPicture>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace ztm::test {
namespace {

using testing::IsEmpty;

/// Temperature and speed of the points that the chip holds.
using Points = std::array<std::pair<int, int>, 8>;
constexpr Points rising{{{30, 1200},
                         {40, 2400},
                         {50, 3200},
                         {60, 4096},
                         {70, 4800},
                         {80, 5120},
                         {90, 6144},
                         {100, 6400}}};

class AutoControlTest : public UiTest {
protected:
    static void Open(std::string_view variant, bool eightPointMode, uint8_t behaviour = 0x09) {
        DeleteAllForms();
        ResetCore();
        auto &chip = Adapter().registers;
        for (size_t point = 0; point < rising.size(); ++point) {
            const int count = 4915200 / rising[point].second;
            chip[0x22 + point] = static_cast<uint8_t>(rising[point].first + 64);
            chip[0x2A + 2 * point] = static_cast<uint8_t>(count % 256);
            chip[0x2B + 2 * point] = static_cast<uint8_t>(count / 256);
        }
        chip[0x01] = 0x80;
        chip[0x02] = eightPointMode ? 0xE8 : 0xE0;
        chip[0x07] = behaviour;
        StartSessionOf(variant);
        ClickTab("Control");
        Click("cmdAuto");
        Settle();
    }

    static LookupGraph &Graph() { return Find<LookupGraph>("pctGraph"); }

    /// Twips of the graph as pixels of the widget.
    static QPoint At(double x, double y) {
        return QPointF(x * Graph().width() / GraphWidth, y * Graph().height() / GraphHeight)
            .toPoint();
    }
    static QPoint AtPoint(double celsius, double rpm) { return At(TempX(celsius), RPMY(rpm)); }

    /// Moves the mouse over the graph, which need not be the topmost window there.
    static void MoveTo(QPoint place) {
        QMouseEvent move(QEvent::MouseMove, QPointF(place), Graph().mapToGlobal(QPointF(place)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&Graph(), &move);
    }

    static void ClickAt(QPoint place) {
        MoveTo(place);
        QTest::mouseClick(&Graph(), Qt::LeftButton, {}, place);
    }

    static std::string Selected() {
        for (int point = 0; point < 8; ++point) {
            if (Find<QRadioButton>(QString("optControl(%1)").arg(point)).isChecked()) {
                return std::to_string(point + 1) + ": " + TextOf("txtTLookUp").toStdString() + ' ' +
                       TextOf("txtRPMLookup").toStdString();
            }
        }
        return "none";
    }

    static void ClickIn(const char *button) {
        Find("frmAutoControl").findChild<QPushButton *>(button)->click();
    }

    /// Whether a pixel of that colour is within a pixel of a place in twips.
    static bool IsDrawn(const QImage &picture, double x, double y, QColor colour) {
        const double ratio = picture.devicePixelRatio();
        const QPointF place(x * Graph().width() / GraphWidth * ratio,
                            y * Graph().height() / GraphHeight * ratio);
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                const QPoint pixel = place.toPoint() + QPoint(dx, dy);
                if (picture.valid(pixel) && picture.pixelColor(pixel) == colour) {
                    return true;
                }
            }
        }
        return false;
    }
};

TEST_F(AutoControlTest, ReadsThePointsOneByOne) {
    Open(ZTM7720, true);
    std::vector<Call> expected;
    for (int32_t point = 0; point < 8; ++point) {
        expected.insert(expected.end(),
                        {Read(0x22 + point), Read(0x2A + 2 * point), Read(0x2B + 2 * point)});
    }
    expected.insert(expected.end(), {Read(0x02), Read(0x07)});
    EXPECT_EQ(Adapter().calls, expected);
    EXPECT_EQ(Find("frmAutoControl").windowTitle(), "Auto-Control Response");
    EXPECT_EQ(Selected(), "1: 30 1200");
    EXPECT_TRUE(Find<QRadioButton>("optDiscrete").isChecked());
    EXPECT_EQ(Find<QComboBox>("cmbControl(0)").currentText(), "Remote1");
    EXPECT_EQ(Find<QComboBox>("cmbControl(1)").currentText(), "Remote2");
    EXPECT_EQ(TextOf("lblTemp(15)"), "150");
    EXPECT_EQ(TextOf("lblRPM(2)"), "8000");
    EXPECT_EQ(TextOf("lblRPM(11)"), "800");
    EXPECT_EQ(TextOf("lblRPM(12)"), "0");
}

TEST_F(AutoControlTest, ApplyWritesTheTableInUse) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        Open(variant, true, 0x0E);
        Adapter().calls.clear();
        Click("optLinear");
        EXPECT_THAT(Adapter().calls, IsEmpty());
        ClickIn("cmdApply");
        std::vector<Call> expected{Read(0x02), Write(0x02, 0xEC), Read(0x02)};
        for (int32_t point = 0; point < 8; ++point) {
            expected.push_back(Write(0x22 + point, rising[static_cast<size_t>(point)].first + 64));
        }
        for (int32_t point = 0; point < 8; ++point) {
            const int count = 4915200 / rising[static_cast<size_t>(point)].second;
            expected.push_back(Write(0x2B + 2 * point, count / 256));
            expected.push_back(Write(0x2A + 2 * point, count % 256));
        }
        expected.push_back(Write(0x07, variant == ZTM7720 ? 0x0E : 0x01));
        EXPECT_EQ(Adapter().calls, expected);
        EXPECT_TRUE(Find("frmAutoControl").isVisible());
    }
    ClickIn("cmdCancel");
    EXPECT_EQ(LoadedForm<frmAutoControl>(), nullptr);
}

TEST_F(AutoControlTest, TypingChangesTheSelectedPointAndNothingElse) {
    Open(ZTM7720, false);
    EightPointTable[2] = {1, 2};
    Click("optControl(2)");
    EXPECT_EQ(Selected(), "3: 50 3200");
    Type("txtTLookUp", "52.5");
    Type("txtRPMLookup", "40000");
    EXPECT_FALSE(Find("txtRPMLookup").toolTip().isEmpty());
    EXPECT_EQ(FourPointTable[2].Temperature, 52);
    EXPECT_EQ(FourPointTable[2].RPM, 32767);
    Type("txtTLookUp", "-70");
    EXPECT_FALSE(Find("txtTLookUp").toolTip().isEmpty());
    Type("txtRPMLookup", "3000");
    EXPECT_TRUE(Find("txtRPMLookup").toolTip().isEmpty());
    Click("txtRPMLookupSpinUp");
    EXPECT_EQ(EightPointTable[2].Temperature, 1) << "the other table";
    Click("optControl(1)");
    EXPECT_EQ(Selected(), "2: 40 2400");
    Click("optControl(2)");
    EXPECT_EQ(Selected(), "3: -70 3050");
    Adapter().calls.clear();
    ClickIn("cmdOK");
    EXPECT_EQ(Adapter().registers[0x24], 0) << "the lowest that there is";
    EXPECT_EQ(Adapter().registers[0x23], 104);
    Click("cmdAuto");
    EXPECT_EQ(Selected(), "1: 30 1200");
}

TEST_F(AutoControlTest, ThePointUnderTheMouseIsSelected) {
    Open(ZTM7720, true);
    MoveTo(AtPoint(60, 500));
    EXPECT_EQ(Selected(), "4: 60 4096");
    MoveTo(AtPoint(65, 500));
    EXPECT_EQ(Selected(), "4: 60 4096") << "between two points nothing changes";
    Click("optControl(6)");
    Type("txtTLookUp", "60");
    MoveTo(AtPoint(20, 500));
    MoveTo(AtPoint(60, 500));
    EXPECT_EQ(Selected(), "7: 60 6144") << "of two points the later one";
}

TEST_F(AutoControlTest, TwoClicksMoveAPoint) {
    Open(ZTM7720, true);
    ClickAt(AtPoint(60, 4500));
    EXPECT_FALSE(Graph().carriedAt) << "beside the point";
    ClickAt(AtPoint(60, 4096));
    EXPECT_TRUE(Graph().carriedAt);
    EXPECT_EQ(Graph().cursor().shape(), Qt::CrossCursor);
    MoveTo(AtPoint(100, 1000));
    EXPECT_EQ(Selected(), "4: 60 4096") << "other points are passed by";
    const QPoint place = At(2000, 3735 - 900);
    ClickAt(place);
    const double celsius = std::floor(X2Temp(place.x() * GraphWidth / Graph().width()));
    const double rpm = std::floor(Y2RPM(place.y() * GraphHeight / Graph().height()));
    EXPECT_NEAR(celsius, 60, 1);
    EXPECT_NEAR(rpm, 2000, 40);
    EXPECT_EQ(Selected(), "4: " + std::to_string(static_cast<int>(celsius)) + " " +
                              std::to_string(static_cast<int>(rpm)));
    EXPECT_NE(Graph().cursor().shape(), Qt::CrossCursor);
    ClickAt(AtPoint(100, 6400));
    MoveTo(AtPoint(20, 300));
    Press("txtTLookUp", Qt::Key_Escape);
    EXPECT_FALSE(Graph().carriedAt) << "wherever the focus is";
    EXPECT_EQ(Selected(), "8: 100 6400");
    ClickAt(AtPoint(100, 6400));
    EXPECT_TRUE(Graph().carriedAt) << "it is still there";
    Press("pctGraph", Qt::Key_Escape);
    EXPECT_FALSE(Graph().carriedAt);
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

TEST_F(AutoControlTest, ThePickUpAreaIsAnOpenSquare) {
    Open(ZTM7720, true);
    const QPointF point(TempX(30), RPMY(1200));
    EXPECT_TRUE(Graph().IsOnSelectedPoint(point + QPointF(79, -79)));
    EXPECT_FALSE(Graph().IsOnSelectedPoint(point + QPointF(80, 0)));
    EXPECT_FALSE(Graph().IsOnSelectedPoint(point + QPointF(0, -80)));
}

TEST_F(AutoControlTest, ArrowKeysMoveTheSelectedPoint) {
    Open(ZTM7720, true);
    const struct {
        Qt::Key key;
        Qt::KeyboardModifier modifier;
        const char *point;
    } cases[] = {{Qt::Key_Right, Qt::NoModifier, "1: 31 1200"},
                 {Qt::Key_Up, Qt::NoModifier, "1: 31 1250"},
                 {Qt::Key_Left, Qt::ShiftModifier, "1: 21 1250"},
                 {Qt::Key_Down, Qt::ShiftModifier, "1: 21 750"},
                 {Qt::Key_Down, Qt::ShiftModifier, "1: 21 250"},
                 {Qt::Key_Down, Qt::ShiftModifier, "1: 21 0"}};
    for (const auto &c : cases) {
        QTest::keyClick(&Graph(), c.key, c.modifier);
        EXPECT_EQ(Selected(), c.point);
    }
    EXPECT_THAT(Graph().accessibleDescription().toStdString(),
                testing::HasSubstr("Selected: point 1. Point 1: 21 °C, 0 RPM. Point 2: 40 °C"));
}

TEST_F(AutoControlTest, TheRangeRelabelsTheGraphAndLeavesTheChipAlone) {
    Open(ZTM7720, true);
    Adapter().calls.clear();
    auto &range = Find<ValueSlider>("sldRange");
    EXPECT_EQ(range.Value(), 8000);
    QTest::keyClick(&range, Qt::Key_End);
    EXPECT_EQ(GraphRpmRange, 20000);
    EXPECT_EQ(TextOf("lblRPM(2)"), "20000");
    EXPECT_EQ(TextOf("lblRPM(11)"), "2000");
    QTest::keyClick(&range, Qt::Key_Home);
    QTest::keyClick(&range, Qt::Key_Up);
    EXPECT_EQ(TextOf("lblRPM(9)"), "330");
    const QPoint from = range.HandlePosition(1100).toPoint();
    const QPoint to = range.HandlePosition(12345).toPoint();
    QTest::mousePress(&range, Qt::LeftButton, {}, from);
    QTest::mouseMove(&range, to);
    QTest::mouseRelease(&range, Qt::LeftButton, {}, to);
    EXPECT_NEAR(static_cast<double>(GraphRpmRange), 12345, 150);
    EXPECT_EQ(std::fmod(GraphRpmRange, 100), 0) << "round numbers at the grid lines";
    EXPECT_EQ(range.Value(), static_cast<double>(GraphRpmRange));
    range.MoveTo(1100);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    ClickIn("cmdCancel");
    Click("cmdAuto");
    EXPECT_EQ(Find<ValueSlider>("sldRange").Value(), 1100) << "kept for the next opening";
}

TEST_F(AutoControlTest, OneFanHasOneSourceAndNoLegend) {
    Open(ZTM7710, false, 0x02);
    for (const char *hidden :
         {"cmbControl(0)", "cmbControl(1)", "Label4", "Line1", "Line2", "Label5", "Label6"}) {
        EXPECT_FALSE(Find("frmAutoControl").findChild<QWidget *>(hidden)->isVisible()) << hidden;
    }
    auto *source = Find("frmAutoControl").findChild<QComboBox *>("cmbSource33");
    EXPECT_TRUE(source->isVisible());
    EXPECT_EQ(source->currentText(), "Remote");
    source->setCurrentText("Full Speed");
    ClickIn("cmdApply");
    EXPECT_EQ(Adapter().registers[0x07], 0x03);
}

TEST_F(AutoControlTest, LaidOutWithEveryLineWhereItBelongs) {
    const QColor blue(0, 0, 255);
    const QColor green(0, 192, 0);
    const QColor red(255, 0, 0);
    const QColor gray(192, 192, 192);
    const QColor grid(216, 216, 216);
    Open(ZTM7720, true);
    const auto picture = [] {
        Settle();
        return Graph().grab().toImage();
    };
    QImage steps = picture();
    EXPECT_TRUE(IsDrawn(steps, TempX(15), GraphHeight - 60, blue)) << "baseline";
    EXPECT_TRUE(IsDrawn(steps, TempX(30), RPMY(600), blue)) << "rise";
    EXPECT_TRUE(IsDrawn(steps, TempX(45), RPMY(2400), blue)) << "level up to the next point";
    EXPECT_TRUE(IsDrawn(steps, TempX(50), RPMY(2800), blue)) << "then upright";
    EXPECT_TRUE(IsDrawn(steps, TempX(140), RPMY(6400), blue)) << "tail";
    EXPECT_TRUE(IsDrawn(steps, TempX(30) + 40, RPMY(1200), red)) << "highlight";
    EXPECT_TRUE(IsDrawn(steps, TempX(130), RPMY(3000), grid));
    EXPECT_TRUE(IsDrawn(steps, TempX(115), RPMY(7200), grid));
    EXPECT_FALSE(IsDrawn(steps, TempX(115), RPMY(7600), grid));
    EXPECT_FALSE(IsDrawn(steps, TempX(45), RPMY(2800), blue));

    Click("optLinear");
    const QImage lines = picture();
    EXPECT_TRUE(IsDrawn(lines, TempX(45), RPMY(2800), blue)) << "straight";
    EXPECT_FALSE(IsDrawn(lines, TempX(48), RPMY(2400), blue));

    MoveTo(AtPoint(60, 4096));
    ClickAt(AtPoint(60, 4096));
    MoveTo(At(2400, 400));
    const QImage carried = picture();
    EXPECT_TRUE(IsDrawn(carried, (TempX(50) + 2400) / 2, (RPMY(3200) + 400) / 2, gray));
    EXPECT_TRUE(IsDrawn(carried, (TempX(70) + 2400) / 2, (RPMY(4800) + 400) / 2, gray));
    EXPECT_TRUE(IsDrawn(carried, 2400 - 40, 400, red));

    Open(ZTM7720, false);
    const QImage twoCurves = picture();
    EXPECT_TRUE(IsDrawn(twoCurves, TempX(140), RPMY(4096), blue));
    EXPECT_TRUE(IsDrawn(twoCurves, TempX(140), RPMY(6400), green));
    EXPECT_TRUE(IsDrawn(twoCurves, TempX(70), RPMY(1000), green)) << "its own rise";
    const auto previewOf = [&](int point, double x, double y) {
        Click(QString("optControl(%1)").arg(point));
        Graph().carriedAt = QPointF(2600, 1500);
        Graph().update();
        return IsDrawn(picture(), x, y, gray);
    };
    EXPECT_TRUE(previewOf(4, 2600, 2500)) << "the first of a curve comes from below";
    EXPECT_TRUE(previewOf(3, 4000, 1500)) << "the last goes to the right edge";
    EXPECT_FALSE(previewOf(5, 4000, 1500));
}

TEST_F(AutoControlTest, OnlySpeedsThatApplyWouldDropAreMarked) {
    Open(ZTM7720, true);
    Adapter().registers[0x2A] = 0xFF; // the slowest count
    Adapter().registers[0x2B] = 0xFF;
    ClickIn("cmdCancel");
    Click("cmdAuto");
    const auto marked = [] { return !Find("txtRPMLookup").toolTip().isEmpty(); };
    EXPECT_EQ(Selected(), "1: 30 75");
    EXPECT_FALSE(marked()) << "the chip holds it already";
    const struct {
        const char *text;
        bool marked;
    } cases[] = {{"0", false},     {"74", true},    {"76", false}, {"-1", true},
                 {"32767", false}, {"32768", true}, {"75", false}};
    for (const auto &c : cases) {
        Type("txtRPMLookup", c.text);
        EXPECT_EQ(marked(), c.marked) << c.text;
    }
    EightPointTable[1].RPM = 75;
    Click("optControl(1)");
    EXPECT_TRUE(marked()) << "the same text, but the chip holds another speed there";
    Click("optControl(0)");
    EXPECT_FALSE(marked());
}

TEST_F(AutoControlTest, TheBoxesFollowTheTableThatTheGraphShows) {
    Open(ZTM7720, true);
    Click("optControl(2)");
    EightPointMode = false;
    FourPointTable[2] = {55, 5500};
    ShowForm<frmAutoControl>();
    QEvent activation(QEvent::ActivationChange);
    QCoreApplication::sendEvent(&Find("frmAutoControl"), &activation);
    EXPECT_EQ(Selected(), "3: 55 5500");
    EXPECT_EQ(EightPointTable[2].Temperature, 50);
    EXPECT_EQ(EightPointTable[2].RPM, 3200);
}

TEST_F(AutoControlTest, TheCursorShowsWhatAPressWouldDo) {
    Open(ZTM7720, true);
    MoveTo(AtPoint(30, 1200));
    EXPECT_EQ(Graph().cursor().shape(), Qt::OpenHandCursor);
    MoveTo(AtPoint(30, 3000));
    EXPECT_EQ(Graph().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(AutoControlTest, LaidOutInTheMiddleWithNumbersAtTheGridLines) {
    Open(ZTM7720, true);
    auto &window = Find("frmAutoControl");
    EXPECT_EQ(Graph().size(), QSize(Twips(4935, window), Twips(3735, window)));
    for (const QSize size : {QSize(1200, 800), QSize(1500, 500), QSize(800, 1000), window.size()}) {
        window.resize(size);
        Settle();
        EXPECT_NEAR(1.0 * Graph().width() / Graph().height(), GraphWidth / GraphHeight, 0.005);
        const QRect panel = Graph().parentWidget()->rect();
        EXPECT_NEAR(Graph().geometry().center().x(), panel.center().x(), 0.1 * panel.width());
        EXPECT_NEAR(Graph().geometry().center().y(), panel.center().y(), 40);
        int right = 0;
        for (int label = 0; label < 16; ++label) {
            const QRect place = Find(QString("lblTemp(%1)").arg(label)).geometry();
            EXPECT_GT(place.left(), right) << "apart from " << label - 1;
            right = place.right();
            const double line = Graph().x() + TempX(10 * label) * Graph().width() / GraphWidth;
            EXPECT_NEAR(place.center().x(), line, 8) << label;
        }
        for (int label = 2; label <= 12; ++label) {
            const QRect place = Find(QString("lblRPM(%1)").arg(label)).geometry();
            const double line =
                Graph().y() + RPMY(800 * (12 - label)) * Graph().height() / GraphHeight;
            EXPECT_NEAR(place.center().y(), line, 3) << label;
        }
    }
}

TEST_F(AutoControlTest, LaidOutWithPointsFarOff) {
    Open(ZTM7720, true);
    Click("optLinear");
    Click("optControl(3)");
    Type("txtTLookUp", "419");
    Type("txtRPMLookup", "32767");
    Settle();
    const double rpmPerDegree = (32767.0 - 3200) / (419 - 50);
    const double rpm = 3200 + 30 * rpmPerDegree;
    EXPECT_TRUE(IsDrawn(Graph().grab().toImage(), TempX(80), RPMY(rpm), QColor(0, 0, 255)))
        << "in the right direction";
    for (const char *transition : {"optLinear", "optDiscrete"}) {
        Click(transition);
        for (const char *text : {"419", "32767", "2147483647", "-2147483648"}) {
            Type("txtTLookUp", text);
            QPicture picture;
            Graph().render(&picture);
            const QRect drawn = picture.boundingRect();
            EXPECT_TRUE(Graph().rect().adjusted(-400, -400, 400, 400).contains(drawn))
                << text << ": a painter is slow with what is " << drawn.width() << " wide";
        }
    }
}

} // namespace
} // namespace ztm::test
