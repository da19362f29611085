#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "support/Instrument.h"
#include "support/UiTest.h"
#include "ui/instruments/Gauge.h"

#include <QAction>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int lowNumber = lowPointerNumber;
constexpr int highNumber = highPointerNumber;

class VisualDisplayPageTest : public UiTest {
protected:
    VisualDisplayPageTest() {
        StartSessionOf(ZTM7720);
        MonitorInterval = 45;
        ClickTab("Visual Display");
        Settle();
        callsOfFirstVisit = std::exchange(Adapter().calls, {});
    }

    /// The requests that selecting a channel leads to.
    static std::vector<Call> Select(int channel) {
        Adapter().calls.clear();
        Click(QString("optMeasure(%1)").arg(channel));
        return Adapter().calls;
    }

    static Gauge &Limits(int index) { return Find<Gauge>(QString("Limits(%1)").arg(index)); }

    static QPoint At(const Gauge &gauge, int pointer, double value) {
        return gauge.PointerPosition(pointer, value).toPoint();
    }

    /// The requests that a drag of a pointer by the mouse leads to.
    static std::vector<Call> Drag(int index, int pointer, double to) {
        Gauge &gauge = Limits(index);
        const double from = pointer == lowNumber ? gauge.LowPointer() : gauge.HighPointer();
        Adapter().calls.clear();
        QTest::mousePress(&gauge, Qt::LeftButton, {}, At(gauge, pointer, from));
        MoveAndRelease(gauge, {}, {At(gauge, pointer, (from + to) / 2), At(gauge, pointer, to)});
        return Adapter().calls;
    }

    /// Both bands reach from the low to the high pointer of the temperature gauge.
    static void ExpectBands() {
        const Gauge &gauge = Limits(0);
        const std::pair pointers(gauge.LowPointer(), gauge.HighPointer());
        EXPECT_EQ(std::pair(gauge.Band0Start(), gauge.Band0End()), pointers);
        EXPECT_EQ(std::pair(gauge.Band1Start(), gauge.Band1End()), pointers);
    }

    std::vector<Call> callsOfFirstVisit;
};

/// The whole number that is nearest.
int32_t Rounded(double value) {
    return static_cast<int32_t>(std::nearbyint(value));
}

TEST_F(VisualDisplayPageTest, TheFirstVisitSelectsLocalAndReadsItsLimitsTwice) {
    EXPECT_EQ(Find<QTimer>("tmrMain").interval(), 45);
    EXPECT_THAT(callsOfFirstVisit, ElementsAre(Read(0x0B), Read(0x0C), Read(0x0B), Read(0x0C)));
    EXPECT_EQ(TextOf("lblBargraph"), "Local");
    Select(5);
    ClickTab("About");
    Adapter().calls.clear();
    ClickTab("Visual Display");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x19)));
}

TEST_F(VisualDisplayPageTest, SelectingAChannelReadsItsLimitsAndShowsItsGauge) {
    BargraphEnabled = true;
    auto &registers = Adapter().registers;
    registers = {};
    registers[0x0E] = 0x55;
    registers[0x0F] = 0x40;
    registers[0x11] = 0xFF;
    registers[0x19] = registers[0x4E] = 115;
    registers[0x40] = 0x60;
    registers[0x41] = 0x59;
    registers[0x4B] = 0x10;
    const std::pair<double, double> ranges[] = {{-55, 127}, {0, 15000}, {0, 100}};
    const std::tuple<int, int, std::vector<Call>, const char *, double, double, const char *>
        cases[] = {{1, 0, {Read(0x0E), Read(0x0F)}, "Remote1", 0, 21, ""},
                   {2, 0, {Read(0x11), Read(0x12)}, "Remote2", -55, 127, ""},
                   {3, 1, {}, "Fan1", 0, 15000, "1200RPM"},
                   {4, 1, {}, "Fan2", 0, 15000, ""},
                   {5, 2, {Read(0x19)}, "THERM%", 0, 45.1, "45.1%"},
                   {0, 0, {Read(0x0B), Read(0x0C)}, "Local", -55, -55, "25.38°C"}};
    for (const auto &[channel, kind, calls, name, low, high, caption] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Select(channel), calls);
        EXPECT_EQ(TextOf("lblBargraph"), name);
        for (int index = 0; index < 3; ++index) {
            const Gauge &gauge = Limits(index);
            EXPECT_EQ(gauge.isVisible(), index == kind);
            EXPECT_EQ(std::pair(gauge.Minimum(), gauge.Maximum()), ranges[index]);
        }
        Tick();
        const Gauge &gauge = Limits(kind);
        EXPECT_EQ(std::pair(gauge.LowPointer(), gauge.HighPointer()), std::pair(low, high));
        EXPECT_TRUE(*caption == 0 || gauge.Caption() == QString(caption));
        ExpectBands();
    }
    MonitoringEnabled = true;
    Adapter().calls.clear();
    Tick();
    EXPECT_EQ(Adapter().calls.size(), 2U) << "the round robin alone reads";
}

TEST_F(VisualDisplayPageTest, ADraggedPointerWritesOnceLowBeforeHigh) {
    for (const auto &[channel, low, high] :
         {std::array{0, 0x0C, 0x0B}, {1, 0x0F, 0x0E}, {2, 0x12, 0x11}}) {
        Adapter().registers[static_cast<size_t>(low)] = 64;
        Adapter().registers[static_cast<size_t>(high)] = 164;
        Select(channel);
        for (const auto &[pointer, to] : {std::pair{lowNumber, 40}, {highNumber, 70}}) {
            const auto calls = Drag(0, pointer, to);
            const Gauge &gauge = Limits(0);
            EXPECT_NEAR(gauge.LowPointer(), 40, 2);
            EXPECT_NEAR(gauge.HighPointer(), pointer == lowNumber ? 100 : 70, 2);
            EXPECT_THAT(calls, ElementsAre(Write(low, Rounded(gauge.LowPointer() + 64)),
                                           Write(high, Rounded(gauge.HighPointer() + 64))));
            ExpectBands();
        }
    }
}

TEST_F(VisualDisplayPageTest, ATypedLimitDoesWhatReleasingItsPointerThereDoes) {
    struct Case {
        int channel;
        const char *box, *typed;
        std::vector<int> keys; ///< pressed then; 0 stands for another window that gets active
        std::vector<Call> calls;
        double pointer;
        const char *text;
    };
    const auto both = [](int32_t low, int32_t high) {
        return std::vector{Write(0x0F, low), Write(0x0E, high)};
    };
    const std::vector<Case> cases = {
        {1, "txtHigh", "28.5", {Qt::Key_Return}, both(0x54, 92), 28.5, "28.5"},
        {1, "txtHigh", "75", {Qt::Key_Return}, both(0x54, 0x8B), 75, "75"},
        {1, "txtLow", "-10", {Qt::Key_Tab}, both(54, 0x8B), -10, "-10"},
        {1, "txtLow", "80", {Qt::Key_Enter, Qt::Key_Tab}, both(0x90, 0x8B), 80, "80"},
        {1, "txtLow", "20", {Qt::Key_Tab}, both(0x54, 0x8B), 20, "20"},
        {1, "txtLow", "20", {Qt::Key_Tab}, {}, 20, "20"},
        {1, "txtLow", "30", {Qt::Key_Escape, Qt::Key_Return}, {}, 20, "20"},
        {1, "txtLow", "30", {0}, {}, 20, "30"},
        {1, "txtLow", "128", {Qt::Key_Return}, {}, 20, "128"},
        {1, "txtLow", "5x", {Qt::Key_Tab}, {}, 20, "5x"},
        {1, "txtLow", "", {Qt::Key_Return}, {}, 20, ""},
        {5, "txtHigh", "50", {Qt::Key_Return}, {Write(0x19, 128)}, 50, "50"},
        {3, "txtLow", "1200", {Qt::Key_Return}, {}, 1200, "1200"},
    };
    Adapter().registers[0x0F] = 0x54;
    Adapter().registers[0x0E] = 0x8B;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.typed + std::string(" in ") + c.box);
        if (!Find<QRadioButton>(QString("optMeasure(%1)").arg(c.channel)).isChecked()) {
            Select(c.channel);
        }
        auto &box = Find<QLineEdit>(c.box);
        box.setFocus();
        Adapter().calls.clear();
        Type(c.box, c.typed);
        for (const int key : c.keys) {
            QFocusEvent left(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
            key == 0 ? void(QCoreApplication::sendEvent(&box, &left))
                     : QTest::keyClick(&box, static_cast<Qt::Key>(key));
        }
        EXPECT_EQ(Adapter().calls, c.calls);
        const Gauge &gauge = Limits(c.channel == 1 ? 0 : c.channel == 5 ? 2 : 1);
        EXPECT_EQ(box.objectName() == "txtLow" ? gauge.LowPointer() : gauge.HighPointer(),
                  c.pointer);
        EXPECT_EQ(box.text(), c.text);
        const bool isWrong =
            c.calls.empty() && box.text() != QString::number(c.pointer) && c.keys.front() != 0;
        EXPECT_EQ(!box.toolTip().isEmpty(), isWrong || gauge.LowPointer() > gauge.HighPointer());
    }
}

TEST_F(VisualDisplayPageTest, TheAlertListShowsWhatIsMeasuredAndItsExtremes) {
    MonitoringEnabled = true;
    const auto tooltip = [](QWidget &value) {
        QHelpEvent asked(QEvent::ToolTip, {}, {});
        QCoreApplication::sendEvent(&value, &asked);
        return value.toolTip();
    };
    auto &value = Find<QLabel>("lblValue(0)");
    for (const int celsius : {25, 40, 30}) {
        Adapter().registers[0x41] = static_cast<uint8_t>(64 + celsius);
        for (int channel = 0; channel < ChannelCount; ++channel) {
            Tick();
        }
    }
    EXPECT_EQ(value.text(), "30°C");
    EXPECT_EQ(tooltip(value), "Least 25°C, greatest 40°C");
    Find("fraAlerts").actions().at(0)->trigger();
    EXPECT_EQ(tooltip(value), "Not measured yet");
    EXPECT_EQ(value.foregroundRole(), QPalette::WindowText);
    MonitoringEnabled = false;
    Tick();
    EXPECT_EQ(value.foregroundRole(), QPalette::PlaceholderText);
}

TEST_F(VisualDisplayPageTest, PercentIsWrittenAndFanSpeedIsNot) {
    Select(5);
    for (const int percent : {50, 100, 0}) {
        const auto calls = Drag(2, highNumber, percent);
        EXPECT_NEAR(Limits(2).HighPointer(), percent, 1);
        EXPECT_THAT(calls, ElementsAre(Write(0x19, Rounded(Limits(2).HighPointer() * 255 / 100))));
    }
    Select(3);
    EXPECT_THAT(Drag(1, highNumber, 9000), IsEmpty());
    EXPECT_NEAR(Limits(1).HighPointer(), 9000, 150);
    EXPECT_THAT(Drag(1, lowNumber, 3000), IsEmpty());
    EXPECT_NEAR(Limits(1).LowPointer(), 3000, 150);
}

TEST_F(VisualDisplayPageTest, ADragThatIsNotReleasedWritesNothing) {
    Adapter().registers[0x0B] = 164;
    Adapter().registers[0x0C] = 64;
    Select(0);
    Adapter().calls.clear();
    Gauge &gauge = Limits(0);
    for (const bool byEscape : {true, false}) {
        QTest::mousePress(&gauge, Qt::LeftButton, {}, At(gauge, highNumber, 100));
        QTest::mouseMove(&gauge, At(gauge, highNumber, 60));
        EXPECT_NEAR(gauge.Band0End(), 60, 2) << "tracked while it moves";
        byEscape ? QTest::keyClick(&gauge, Qt::Key_Escape) : gauge.clearFocus();
        QTest::mouseMove(&gauge, At(gauge, highNumber, 50));
        QTest::mouseRelease(&gauge, Qt::LeftButton, {}, At(gauge, highNumber, 60));
        EXPECT_EQ(gauge.HighPointer(), 100);
        ExpectBands();
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
    QTest::keyPress(&gauge, Qt::Key_Up);
    QTest::keyRelease(&gauge, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0C, 64), Write(0x0B, 165)));
}

TEST_F(VisualDisplayPageTest, AlertsFollowTheStatusRegisters) {
    LimitMonitorEnabled = true;
    Adapter().registers[0x4F] = 0x20;
    const std::tuple<uint8_t, const char *, std::vector<Call>> cases[] = {
        {0x41, "-R-R--", {Read(0x51), Read(0x4F), Read(0x50)}}, {0x40, "------", {Read(0x51)}}};
    for (const auto &[status, red, calls] : cases) {
        clock.Advance(1);
        Adapter().registers[0x51] = status;
        Adapter().calls.clear();
        Tick();
        EXPECT_EQ(Adapter().calls, calls);
        for (int channel = 0; channel < ChannelCount; ++channel) {
            const QImage seen = PaintedAnew(Find(QString("tglAlert(%1)").arg(channel)));
            // Above the mark in its middle.
            const QColor colour = seen.pixelColor(seen.width() / 2, seen.height() / 6);
            EXPECT_EQ(colour, red[channel] == 'R' ? Qt::red : Qt::green) << channel;
        }
    }
}

TEST_F(VisualDisplayPageTest, EasySetupStartsMonitoringOfTheLocalChannel) {
    Select(4);
    for (const auto before : {uint8_t{0x04}, uint8_t{0x05}}) {
        MonitoringEnabled = false;
        Adapter().registers[0x01] = before;
        Adapter().calls.clear();
        Click("cmdEasySetup");
        EXPECT_THAT(Adapter().calls,
                    ElementsAre(Read(0x01), Write(0x01, 0x05), Read(0x01), Read(0x0B), Read(0x0C)));
        EXPECT_TRUE(MonitoringEnabled && GraphingEnabled && LimitMonitorEnabled && BargraphEnabled);
        EXPECT_TRUE(Find<QRadioButton>("optMeasure(0)").isChecked());
    }
}

TEST_F(VisualDisplayPageTest, NoTickRunsInsideAnother) {
    MonitoringEnabled = true;
    Adapter().script = [](const Call &) {
        Tick(); // as if a request let events run
        return int16_t{0};
    };
    Tick();
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x40), Read(0x41)));
    Tick();
    EXPECT_EQ(Adapter().calls.size(), 4U);
}

TEST_F(VisualDisplayPageTest, TheMonitorGoesOnBehindAMessageAndNoLimitIsWritten) {
    BargraphEnabled = true;
    Click("cmdGraphOptions");
    Type("txtInterval", "0");
    QTest::keyPress(&Limits(0), Qt::Key_Up);
    Adapter().calls.clear();
    AnswerMessageOf([] {
        QTimer::singleShot(0, [] {
            Tick();
            QFocusEvent left(QEvent::FocusOut); // ends the change by keys
            QCoreApplication::sendEvent(&Limits(0), &left);
        });
        Click("cmdApply");
    });
    EXPECT_FALSE(Adapter().calls.empty());
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

} // namespace
} // namespace ztm::test
