#include "support/DialogTest.h"

#include "fan/LookupGraphScale.h"
#include "monitor/Events.h"
#include "monitor/MonitorSettings.h"
#include "ui/fan/LookupGraph.h"
#include "ui/instruments/ValueSlider.h"
#include "ui/kit/Twips.h"

#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPicture>
#include <QRadioButton>
#include <QTest>

namespace ztm::test {
namespace {

// Points of 30 °C, 1200 RPM; 40, 2400; 50, 3200; 60, 4096; 70, 4800; 80, 5120; 90, 6144 and
// 100, 6400, as the chip holds them and as Apply writes them.
const std::string temperatures = "22=5E 23=68 24=72 25=7C 26=86 27=90 28=9A 29=A4 ";
const std::string points = temperatures + "2A=00 2B=10 2C=00 2D=08 2E=00 2F=06 30=B0 31=04 32=00 "
                                          "33=04 34=C0 35=03 36=20 37=03 38=00 39=03 ";
const std::string written = temperatures + "2B=10 2A=00 2D=08 2C=00 2F=06 2E=00 31=04 30=B0 33=04 "
                                           "32=00 35=03 34=C0 37=03 36=20 39=03 38=00 ";
const std::string eightPoints = points + "01=80 02=E8";

class AutoControlTest : public DialogTest {
protected:
    AutoControlTest()
        : DialogTest("cmdAuto", "22? 2A? 2B? 23? 2C? 2D? 24? 2E? 2F? 25? 30? 31? 26? 32? 33? 27? "
                                "34? 35? 28? 36? 37? 29? 38? 39? 02? 07?") {}

    static LookupGraph &Graph() { return Find<LookupGraph>("pctGraph"); }
    static ValueSlider &Range() { return Find<ValueSlider>("sldRange"); }

    /// Twips of the graph as pixels of the widget.
    static QPointF PixelAt(double x, double y) {
        return {x * (Graph().width() - 1) / GraphWidth, y * (Graph().height() - 1) / GraphHeight};
    }
    static QPoint At(double celsius, double rpm) {
        return PixelAt(TempX(celsius), RPMY(rpm)).toPoint();
    }

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
                return std::to_string(point + 1) + ": " + Shown("txtTLookUp txtRPMLookup");
            }
        }
        return "none";
    }

    /// Whether a pixel of a colour is within a pixel of a place.
    struct Place {
        double celsius, rpm;
        QColor colour;
        const char *what;
        bool drawn = true;
    };
    static void ExpectDrawn(const std::vector<Place> &places) {
        Settle();
        const QImage picture = Graph().grab().toImage();
        for (const Place &place : places) {
            const QPointF middle = PixelAt(TempX(place.celsius), RPMY(place.rpm));
            const QPoint pixel = (middle * picture.devicePixelRatio()).toPoint();
            int found = 0;
            for (int at = 0; at < 9; ++at) {
                const QPoint near = pixel + QPoint(at % 3 - 1, at / 3 - 1);
                found += picture.valid(near) && picture.pixelColor(near) == place.colour;
            }
            EXPECT_EQ(found > 0, place.drawn) << place.what;
        }
    }
};

TEST_F(AutoControlTest, ShowsThePointsAndApplyWritesTheTableInUse) {
    Check(
        "txtTLookUp txtRPMLookup optDiscrete optLinear cmbControl(0) cmbControl(1) cmbSource33",
        {{eightPoints + " 07=0E", "?; optLinear; ?; cmdApply", "02? 02=EC 02? " + written + "07=0E",
          "30|1200|1|0|Remote2|Full Speed|hidden / 30|1200|0|1|Remote2|Full Speed|hidden", ZTM7720},
         {eightPoints + " 07=0E", "?; cmdApply", "02? 02=E8 02? " + written + "07=01",
          "30|1200|1|0|hidden|hidden|Remote", ZTM7710},
         {points + "02=FF", "?; optDiscrete; cmbControl(0)=Local; cmbControl(1)=Remote1; cmdOK",
          "02? 02=FB 02? " + written + "07=04", "30|1200|0|1|Local|Local|hidden", ZTM7720},
         {eightPoints + " 30=64 31=00 07=0E", "optControl(3); ?; cmdOK", // too fast for the table
          "02? 02=E8 02? " +
              std::string(written).replace(written.find("31=04"), 11, "31=00 30=64") + "07=0E",
          "60|49152|1|0|Remote2|Full Speed|hidden", ZTM7720},
         {points, "cmbSource33=Full Speed; optControl(2); txtTLookUp=-70; cmdOK",
          "02? 02=00 02? " + std::string(written).replace(written.find("24=72"), 5, "24=00") +
              "07=03",
          "", ZTM7710}});
    EXPECT_EQ(Events()[0].text, "Lookup table applied");
}

TEST_F(AutoControlTest, TypingChangesTheSelectedPointAndNothingElse) {
    Open(ZTM7720, points);
    EightPointTable[2] = {1, 2};
    EXPECT_EQ(
        Do("optControl(2); ?; txtTLookUp=52.5; txtRPMLookup=40000; ?", "txtTLookUp txtRPMLookup"),
        "50|3200 / 52.5|40000 !");
    EXPECT_EQ(FourPointTable[2].Temperature, 52);
    EXPECT_EQ(FourPointTable[2].RPM, 32767);
    EXPECT_EQ(Do("txtTLookUp=-70; txtRPMLookup=3000; txtRPMLookup+Up; ?; optControl(1); ?; "
                 "optControl(2); ?",
                 "txtTLookUp txtRPMLookup"),
              "-70 !|3050 / 40|2400 / -70 !|3050");
    EXPECT_EQ(EightPointTable[2].Temperature, 1) << "the other table";
    EXPECT_EQ(Asked(), "");
}

TEST_F(AutoControlTest, ThePointUnderTheMouseIsSelected) {
    Open(ZTM7720, eightPoints);
    MoveTo(At(60, 500));
    EXPECT_EQ(Selected(), "4: 60|4096");
    MoveTo(At(65, 500));
    EXPECT_EQ(Selected(), "4: 60|4096") << "between two points nothing changes";
    Do("optControl(6); txtTLookUp=60");
    MoveTo(At(20, 500));
    MoveTo(At(60, 500));
    EXPECT_EQ(Selected(), "7: 60|6144") << "of two points the later one";
}

TEST_F(AutoControlTest, TwoClicksMoveAPoint) {
    Open(ZTM7720, eightPoints);
    ClickAt(At(60, 4500));
    EXPECT_FALSE(Graph().carriedAt) << "beside the point";
    EXPECT_EQ(Graph().cursor().shape(), Qt::ArrowCursor);
    MoveTo(At(60, 4096));
    EXPECT_EQ(Graph().cursor().shape(), Qt::OpenHandCursor);
    ClickAt(At(60, 4096));
    EXPECT_TRUE(Graph().carriedAt);
    EXPECT_EQ(Graph().cursor().shape(), Qt::CrossCursor);
    MoveTo(At(100, 1000));
    EXPECT_EQ(Selected(), "4: 60|4096") << "other points are passed by";
    const QPoint place = PixelAt(2000, 3735 - 900).toPoint();
    ClickAt(place);
    const double celsius = std::floor(X2Temp(place.x() * GraphWidth / (Graph().width() - 1)));
    const double rpm = std::floor(Y2RPM(place.y() * GraphHeight / (Graph().height() - 1)));
    EXPECT_NEAR(celsius, 60, 1);
    EXPECT_NEAR(rpm, 2000, 40);
    EXPECT_EQ(Selected(), QString("4: %1|%2").arg(celsius).arg(rpm).toStdString());
    EXPECT_NE(Graph().cursor().shape(), Qt::CrossCursor);
    for (const char *focused : {"txtTLookUp", "pctGraph"}) {
        ClickAt(At(100, 6400));
        EXPECT_TRUE(Graph().carriedAt) << "it is still there";
        MoveTo(At(20, 300));
        Press(focused, Qt::Key_Escape);
        EXPECT_FALSE(Graph().carriedAt) << "wherever the focus is";
        EXPECT_EQ(Selected(), "8: 100|6400");
    }
    ClickAt(At(100, 6400));
    Do("pctGraph+Ctrl+Z");
    EXPECT_FALSE(Graph().carriedAt) << "taking back an edit puts it back";
    EXPECT_EQ(Selected(), "4: 60|4096") << "both numbers in one step";
    const QPoint corner = Graph().rect().bottomRight();
    for (const QPoint end : {At(120, 3000), corner + QPoint(200, 200)}) {
        MoveTo(At(100, 6400));
        QTest::mousePress(&Graph(), Qt::LeftButton, {}, At(100, 6400));
        MoveTo(end);
        EXPECT_TRUE(Graph().carriedAt);
        QTest::mouseRelease(&Graph(), Qt::LeftButton, {}, end);
        EXPECT_FALSE(Graph().carriedAt) << "a drag ends with the release";
        if (end.x() < corner.x()) {
            Do("txtTLookUp+Ctrl+Z");
            EXPECT_EQ(Selected(), "8: 100|6400") << "one step";
        }
    }
    EXPECT_EQ(Selected(), "8: 150|0") << "the corner is within reach, and what is beyond is not";
    EXPECT_EQ(Asked(), "");
}

TEST_F(AutoControlTest, ThePickUpAreaIsAnOpenSquare) {
    Open(ZTM7720, eightPoints);
    const QPointF point(TempX(30), RPMY(1200));
    EXPECT_TRUE(Graph().IsOnSelectedPoint(point + QPointF(79, -79)));
    EXPECT_FALSE(Graph().IsOnSelectedPoint(point + QPointF(80, 0)));
    EXPECT_FALSE(Graph().IsOnSelectedPoint(point + QPointF(0, -80)));
}

TEST_F(AutoControlTest, ArrowKeysMoveTheSelectedPoint) {
    Open(ZTM7720, eightPoints);
    EXPECT_EQ(Do("pctGraph+Right; ?; pctGraph+Up; ?; pctGraph+Shift+Left; ?; pctGraph+Shift+Down; "
                 "?; pctGraph+Shift+Down; pctGraph+Shift+Down; ?",
                 "txtTLookUp txtRPMLookup"),
              "31|1200 / 31|1250 / 21|1250 / 21|750 / 21|0");
    EXPECT_THAT(Graph().accessibleDescription().toStdString(),
                testing::HasSubstr("Selected: point 1. Point 1: 21 °C, 0 RPM. Point 2: 40 °C"));
}

TEST_F(AutoControlTest, TheRangeRelabelsTheGraphAndLeavesTheChipAlone) {
    Open(ZTM7720, eightPoints);
    EXPECT_EQ(Do("?; sldRange+End; ?; sldRange+Home; sldRange+Up; ?",
                 "sldRange lblRPM(2) lblRPM(9) lblRPM(11) lblRPM(12)"),
              "8000|8000|2400|800|0 / 20000|20000|6000|2000|0 / 1100|1100|330|110|0");
    const QPoint from = Range().HandlePosition(1100).toPoint();
    const QPoint to = Range().HandlePosition(12345).toPoint();
    QTest::mousePress(&Range(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&Range(), to);
    QTest::mouseRelease(&Range(), Qt::LeftButton, {}, to);
    EXPECT_NEAR(static_cast<double>(GraphRpmRange), 12345, 150);
    EXPECT_EQ(std::fmod(GraphRpmRange, 100), 0) << "round numbers at the grid lines";
    EXPECT_EQ(Range().Value(), static_cast<double>(GraphRpmRange));
    Range().MoveTo(1100);
    EXPECT_EQ(Asked(), "");
    EXPECT_EQ(Do("cmdCancel; cmdAuto; ?", "sldRange"), "1100") << "kept for the next opening";
}

TEST_F(AutoControlTest, LaidOutWithEveryLineWhereItBelongs) {
    const QColor blue(0, 0, 255);
    const QColor green(0, 192, 0);
    const QColor red(255, 0, 0);
    const QColor gray(192, 192, 192);
    const QColor grid(216, 216, 216);
    Open(ZTM7720, eightPoints);
    ExpectDrawn({{15, Y2RPM(GraphHeight - 60), blue, "baseline"},
                 {30, 600, blue, "rise"},
                 {45, 2400, blue, "level up to the next point"},
                 {50, 2800, blue, "then upright"},
                 {140, 6400, blue, "tail"},
                 {30 + X2Temp(40), 1200, red, "highlight"},
                 {130, 3000, grid, "line of a temperature"},
                 {115, 7200, grid, "line of a speed"},
                 {115, 7600, grid, "between the lines", false},
                 {45, 2800, blue, "above a step", false}});
    Click("optLinear");
    ExpectDrawn({{45, 2800, blue, "straight"}, {48, 2400, blue, "below the line", false}});
    ClickAt(At(60, 4096));
    const double celsius = X2Temp(2400);
    const double rpm = Y2RPM(400);
    MoveTo(At(celsius, rpm));
    ExpectDrawn({{(50 + celsius) / 2, (3200 + rpm) / 2, gray, "from the point before"},
                 {(70 + celsius) / 2, (4800 + rpm) / 2, gray, "to the point behind"},
                 {celsius - X2Temp(40), rpm, red, "carried highlight"}});

    Open(ZTM7720, points);
    ExpectDrawn({{140, 4096, blue, "tail of the first curve"},
                 {140, 6400, green, "tail of the second"},
                 {70, 1000, green, "its own rise"}});
    const auto expectPreview = [&](int point, const Place &place) {
        Click(QString("optControl(%1)").arg(point));
        Graph().carriedAt = QPointF(2600, 1500);
        Graph().update();
        ExpectDrawn({place});
    };
    const double tail = X2Temp(4000);
    expectPreview(4, {X2Temp(2600), Y2RPM(2500), gray, "the first of a curve comes from below"});
    expectPreview(3, {tail, Y2RPM(1500), gray, "the last goes to the right edge"});
    expectPreview(5, {tail, Y2RPM(1500), gray, "one in the middle does not", false});
}

TEST_F(AutoControlTest, OnlySpeedsThatApplyWouldDropAreMarked) {
    Open(ZTM7720, points + "2A=FF 2B=FF 02=08"); // the slowest count, which the chip may hold
    EXPECT_EQ(Do("?; txtRPMLookup=0; ?; txtRPMLookup=74; ?; txtRPMLookup=76; ?; txtRPMLookup=-1; "
                 "?; txtRPMLookup=32767; ?; txtRPMLookup=32768; ?; txtRPMLookup=75; ?",
                 "txtRPMLookup"),
              "75 / 0 / 74 ! / 76 / -1 ! / 32767 / 32768 ! / 75");
    EightPointTable[1].RPM = 75;
    EXPECT_EQ(Do("optControl(1); ?; optControl(0); ?", "txtRPMLookup"), "75 ! / 75")
        << "the same text, but the chip holds another speed there";
    EXPECT_NE(Find("optControl(1)").toolTip(), "") << "selected or not";
    EXPECT_EQ(Find("optControl(2)").toolTip(), "");
    EXPECT_EQ(Do("txtRPMLookup=1000; cmdApply; txtRPMLookup=75; ?; txtRPMLookup=0; cmdApply; "
                 "txtRPMLookup=75; ?",
                 "txtRPMLookup"),
              "75 ! / 75")
        << "0 RPM is the slowest count";
}

TEST_F(AutoControlTest, TheBoxesFollowTheTableThatTheGraphShows) {
    Open(ZTM7720, eightPoints);
    Click("optControl(2)");
    const auto shownIn = [](bool eightPointMode) {
        EightPointMode = eightPointMode;
        QEvent activation(QEvent::ActivationChange);
        QCoreApplication::sendEvent(&Find("frmAutoControl"), &activation);
        return Selected();
    };
    EXPECT_EQ(shownIn(false), "3: 50|3200") << "never loaded: from the same registers";
    Type("txtRPMLookup", "5500");
    EXPECT_EQ(shownIn(true), "3: 50|3200");
    EXPECT_EQ(shownIn(false), "3: 50|5500");
    Do("cmdCancel; chip 24=80; cmdAuto; optControl(2)");
    EXPECT_EQ(Selected(), "3: 64|3200");
    EXPECT_EQ(shownIn(true), "3: 50|3200") << "loaded before";
}

TEST_F(AutoControlTest, LaidOutInTheMiddleWithNumbersAtTheGridLines) {
    Open(ZTM7720, eightPoints);
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
    Open(ZTM7720, eightPoints);
    Do("optLinear; optControl(3); txtTLookUp=419; txtRPMLookup=32767");
    const double rpmPerDegree = (32767.0 - 3200) / (419 - 50);
    const double rpm = 3200 + 30 * rpmPerDegree;
    ExpectDrawn({{80, rpm, QColor(0, 0, 255), "in the right direction"}});
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

TEST_F(AutoControlTest, ShowsWhereTheFansAreWhileMeasuringAndAsksNothing) {
    // Remote1 drives fan 1: 45.5 °C and 2048 RPM. Fan 2 runs at full speed.
    Open(ZTM7720, eightPoints + " 07=0D 42=80 43=6D 4A=60 4B=09");
    const QString round = "tick; tick; tick; tick; tick; tick; ?";
    const QColor dot = QColor(0, 0, 255).darker().rgb();
    EXPECT_EQ(Do(round, "lblOperatingPoint"), "Not measuring: where the fans are now is not shown");
    ExpectDrawn({{45.5, 2048, dot, "not measuring", false}});
    EXPECT_EQ(Asked(), "");
    MonitoringEnabled = true;
    MonitorInterval = 600;
    EXPECT_EQ(Do("tick; ?", "lblOperatingPoint"),
              "Fan1: not shown, Remote1 is not measured; Fan2: at full speed, on no curve");
    EXPECT_EQ(Do(round, "lblOperatingPoint"),
              "Fan1: 2048 RPM at 45.5 °C, curve 2400 RPM; Fan2: at full speed, on no curve");
    ExpectDrawn({{45.5, 2048, dot, "where fan 1 is"}, {45.5, 2200, dot, "line to the curve"}});
    EXPECT_THAT(Graph().HintAt(PixelAt(TempX(45.5), RPMY(2048))).toStdString(),
                testing::HasSubstr("Fan1: 2048 RPM at 45.5 °C"));
    Do("chip 43=7B; " + round);
    const auto isWayDrawn = [] {
        Settle();
        const QImage picture =
            Graph().grab(QRect(At(54, 2048) - QPoint(1, 1), QSize(3, 3))).toImage();
        QImage white(picture);
        white.fill(Qt::white);
        return picture != white;
    };
    EXPECT_TRUE(isWayDrawn());
    for (int tick = 0; tick < 102; ++tick) {
        Do("tick");
    }
    EXPECT_FALSE(isWayDrawn()) << "only that of the last minute";
    Asked();
    EXPECT_EQ(Do("cmbControl(0)=Local; " + round, "lblOperatingPoint lblWhatWillHappen"),
              "Fan1: 2048 RPM at 59.5 °C, curve 3200 RPM; Fan2: at full speed, on no curve|"
              "Control source changed; fan 1 will stop at the present -64 °C; fan 2 will run at "
              "full speed");
    EXPECT_EQ(Asked(), "42? 43? 44? 45? 4A? 4B? 4C? 4D? 4E? 40? 41?") << "the monitor";
    MonitoringEnabled = false;
    Do("tick");
    ExpectDrawn({{59.5, 2048, dot, "no longer measuring", false}});
}

TEST_F(AutoControlTest, EveryPointHasAMarkThatSaysWhatIsOddAboutIt) {
    const QColor red(255, 0, 0);
    const QColor amber(255, 191, 0);
    const auto hintAt = [](double celsius, double rpm) {
        return Graph().HintAt(PixelAt(TempX(celsius), RPMY(rpm))).toStdString();
    };
    Open(ZTM7720, eightPoints);
    Do("optControl(3); txtRPMLookup=2000; optControl(4); txtTLookUp=55; optControl(6); "
       "txtTLookUp=50; txtRPMLookup=3200; optControl(7); txtTLookUp=200; txtRPMLookup=40");
    ExpectDrawn({{53, 3067, amber, "the speed falls behind point 3"},
                 {57, 1867, amber, "the temperature falls behind point 4"},
                 {45, 2267, amber, "nothing odd behind point 2", false},
                 {149, 40, red, "arrow"}});
    EXPECT_EQ(hintAt(40, 2400), "Point 2: 40 °C, 2400 RPM.");
    EXPECT_THAT(hintAt(50, 3200), testing::HasSubstr("Point 3: 50 °C, 3200 RPM.\nPoint 7: 50 °C"));
    EXPECT_THAT(hintAt(55, 3200), testing::HasSubstr("point 3 to point 4 the speed falls"));
    EXPECT_THAT(hintAt(57, 2000), testing::HasSubstr("point 4 to point 5 the temperature falls"));
    EXPECT_THAT(hintAt(149, 40), testing::HasSubstr("Point 8: 200 °C, 40 RPM. Apply writes 191 °C, "
                                                    "Apply does not write 40 RPM."));
    EXPECT_EQ(hintAt(100, 1000), "");
    Open(ZTM7720, "01=80 22=FF 23=FF 24=FF 25=FF 26=FF 27=FF 28=FF 29=FF"); // off, all at one place
    EXPECT_THAT(hintAt(149, 0), testing::ContainsRegex("Point 1: 191 °C, 0 RPM.(.|\n)*Point 8: "));
}

TEST_F(AutoControlTest, AScreenReaderTellsAndMovesEveryPoint) {
    Open(ZTM7720, eightPoints);
    Do("optControl(1); txtTLookUp=-70; txtRPMLookup=40; optControl(7); txtRPMLookup=9000");
    auto *graph = QAccessible::queryAccessibleInterface(&Graph());
    const char *told[] = {"Point 1, temperature: 30 °C",
                          "Point 1, speed: 1200 RPM",
                          "Point 2, temperature: -70 °C, off the graph, Apply writes -64 °C, Apply "
                          "does not write 40 RPM",
                          "Point 2, speed: 40 RPM, off the graph, Apply writes -64 °C, Apply does "
                          "not write 40 RPM",
                          "Point 3, temperature: 50 °C",
                          "Point 3, speed: 3200 RPM",
                          "Point 4, temperature: 60 °C",
                          "Point 4, speed: 4096 RPM",
                          "Point 5, temperature: 70 °C",
                          "Point 5, speed: 4800 RPM",
                          "Point 6, temperature: 80 °C",
                          "Point 6, speed: 5120 RPM",
                          "Point 7, temperature: 90 °C",
                          "Point 7, speed: 6144 RPM",
                          "Point 8, temperature: 100 °C, off the graph",
                          "Point 8, speed: 9000 RPM, off the graph"};
    ASSERT_EQ(graph->childCount(), static_cast<int>(std::size(told)));
    const QRect onScreen(Graph().mapToGlobal(QPoint()), Graph().size());
    for (int part = 0; part < graph->childCount(); ++part) {
        auto *child = graph->child(part);
        const QString text =
            child->text(QAccessible::Name) + ": " + child->text(QAccessible::Value);
        EXPECT_EQ(text.toStdString(), told[part]);
        EXPECT_TRUE(onScreen.contains(child->rect()) && !child->rect().isEmpty()) << part;
    }
    for (int part = 0; part < graph->childCount(); ++part) {
        auto *child = graph->child(part);
        child->valueInterface()->setCurrentValue(10 * part + 100);
        EXPECT_EQ(child->valueInterface()->currentValue(), 10 * part + 100);
    }
    EXPECT_EQ(Do("pctGraph+3; pctGraph+Up; pctGraph+Left; ?; pctGraph+Ctrl+Z; pctGraph+Ctrl+Z; ?",
                 "optControl(2) txtTLookUp txtRPMLookup"),
              "1|139|200 / 1|140|150");
    EXPECT_THAT(Graph().accessibleDescription().toStdString(),
                testing::HasSubstr("Point 8: 240 °C"));
    EXPECT_EQ(Asked(), "");
}

TEST_F(AutoControlTest, EveryEditCanBeTakenBackAndDoneAgain) {
    Open(ZTM7720, eightPoints + " 07=04");
    const char *names = "txtTLookUp txtRPMLookup optLinear cmbControl(0)";
    EXPECT_EQ(Do("optControl(2); txtTLookUp=5; txtTLookUp=52; txtRPMLookup=3000; optLinear; "
                 "cmbControl(0)=Full Speed; optControl(0); pctGraph+Right; ?; "
                 "pctGraph+Ctrl+Z; ?; txtTLookUp+Ctrl+Z; ?; optControl(5)+Ctrl+Z; ?; "
                 "txtRPMLookup+Ctrl+Z; ?; txtRPMLookup+Ctrl+Z; ?; txtTLookUp+Ctrl+Z; ?",
                 names),
              "31|1200|1|Full Speed / 30|1200|1|Full Speed / 30|1200|1|Local / 30|1200|0|Local / "
              "52|3200|0|Local / 50|3200|0|Local / 50|3200|0|Local");
    EXPECT_EQ(Do("txtTLookUp+Ctrl+Shift+Z; txtTLookUp+Ctrl+Y; ?; txtTLookUp=60; txtTLookUp+Ctrl+Y; "
                 "?; txtTLookUp+Ctrl+Z; ?",
                 names),
              "52|3000|0|Local / 60|3000|0|Local / 52|3000|0|Local");
    for (const bool isRepeated : {false, true, true}) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Up, Qt::ShiftModifier, {}, isRepeated);
        QCoreApplication::sendEvent(&Graph(), &held);
    }
    EXPECT_EQ(Do("?; pctGraph+Ctrl+Z; ?", names), "52|4500|0|Local / 52|3000|0|Local")
        << "one step";
    EXPECT_EQ(Asked(), "");
}

TEST_F(AutoControlTest, SaysWhatApplyWouldChange) {
    Open(ZTM7720, eightPoints + " 07=04");
    EXPECT_EQ(
        Do("?; optControl(0); txtTLookUp=40; txtRPMLookup=40; optLinear; ?; "
           "cmbControl(0)=Full Speed; ?; cmdApply; ?",
           "lblWhatWillHappen"),
        "Nothing changed; fan 1 will stop below 30 °C; fan 2 will stop below 30 °C / "
        "1 of 8 points changed, transition changed; fan 1 will stop below 40 °C; fan 2 will "
        "stop below 40 °C / "
        "1 of 8 points changed, transition changed, control source changed; fan 1 will run at "
        "full speed; fan 2 will stop below 40 °C / "
        "Nothing changed; fan 1 will run at full speed; fan 2 will stop below 40 °C");
    Open(ZTM7710, points);
    EXPECT_EQ(Shown("lblWhatWillHappen"),
              "Nothing changed; the chip is under manual control and does not use the table");
}

TEST_F(AutoControlTest, PointsGoToTheClipboardAndComeBack) {
    Open(ZTM7720, eightPoints);
    const char *names = "lblFileResult txtTLookUp txtRPMLookup";
    EXPECT_EQ(Do("cmdCopyPoints; ?", names), "8 points copied|30|1200");
    EXPECT_THAT(QApplication::clipboard()->text().toStdString(),
                testing::StartsWith("30\t1200\n40\t2400\n"));
    QApplication::clipboard()->setText("25\t900\n35\t40000\n");
    EXPECT_EQ(Do("pctGraph+Ctrl+V; ?; pctGraph+Ctrl+Z; ?", names),
              "2 points pasted; 1 limited to 32767 RPM|25|900 / "
              "2 points pasted; 1 limited to 32767 RPM|30|1200");
    QApplication::clipboard()->setText("25\t900\n35");
    EXPECT_EQ(Do("cmdPastePoints; ?", names),
              "Line 2 is no point (temperature, tab, RPM): nothing was pasted|30|1200");
    Find<QLineEdit>("txtRPMLookup").selectAll();
    EXPECT_EQ(Do("txtRPMLookup+Ctrl+C; txtTLookUp+Ctrl+V; ?", "txtTLookUp"), "301200 !")
        << "the box's own";
}

TEST_F(AutoControlTest, TwoWindowsWithDifferentPointsSaySo) {
    Open(ZTM7720, eightPoints);
    Click("cmdSetLookups");
    const auto hints = [] {
        std::string seen;
        for (const char *window : {"frmAutoControl", "frmLookup"}) {
            const auto *hint = Find(window).findChild<QLabel *>("lblOtherPoints");
            seen += hint->isHidden() ? "- " : hint->text().toStdString() + " ";
        }
        return seen;
    };
    const char *both = "The window \"Set Lookup Points\" holds other points: what is applied last "
                       "stays in the chip The window \"Auto-Control Response\" holds other points: "
                       "what is applied last stays in the chip ";
    EXPECT_EQ(hints(), "- - ");
    Do("txtTemp(3)=61");
    EXPECT_EQ(hints(), both);
    Do("txtTemp(3)=60.4");
    EXPECT_EQ(hints(), "- - ") << "the same to the chip";
    Do("optControl(3); txtTLookUp=62");
    EXPECT_EQ(hints(), both);
    auto &lookup = Find("frmLookup");
    lookup.findChild<QAbstractButton *>("cmdCancel")->click();
    EXPECT_TRUE(Find("frmAutoControl").findChild<QLabel *>("lblOtherPoints")->isHidden());
}

} // namespace
} // namespace ztm::test
