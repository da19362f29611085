#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/ToggleIndicator.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VisualDisplayPageTest : public UiTest {
protected:
    static void Open(std::string_view variant) {
        StartSessionOf(variant);
        ClickTab("Visual Display");
        Settle();
        Adapter().calls.clear();
    }

    static Gauge &Limits(int index) { return Find<Gauge>(QString("Limits(%1)").arg(index)); }

    /// Drags a pointer by the mouse.
    static void Drag(Gauge &gauge, int pointer, double from, double to) {
        QTest::mousePress(&gauge, Qt::LeftButton, {}, At(gauge, pointer, from));
        QTest::mouseMove(&gauge, At(gauge, pointer, (from + to) / 2));
        QTest::mouseMove(&gauge, At(gauge, pointer, to));
        QTest::mouseRelease(&gauge, Qt::LeftButton, {}, At(gauge, pointer, to));
    }

    static QPoint At(const Gauge &gauge, int pointer, double value) {
        QPointF point;
        QMetaObject::invokeMethod(const_cast<Gauge *>(&gauge), "PointerPosition",
                                  Q_RETURN_ARG(QPointF, point), Q_ARG(int, pointer),
                                  Q_ARG(double, value));
        return point.toPoint();
    }
};

TEST_F(VisualDisplayPageTest, TheFirstVisitSelectsLocalAndReadsItsLimitsTwice) {
    StartSessionOf(ZTM7720);
    MonitorInterval = 45;
    ClickTab("Visual Display");
    EXPECT_EQ(Find<QTimer>("tmrMain").interval(), 45);
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x0B), Read(0x0C), Read(0x0B), Read(0x0C)));
    EXPECT_EQ(TextOf("lblBargraph"), "Local");
    Click("optMeasure(5)");
    ClickTab("About");
    Adapter().calls.clear();
    ClickTab("Visual Display");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x19)));
}

TEST_F(VisualDisplayPageTest, SelectingAChannelReadsItsLimitsAndShowsItsGauge) {
    Open(ZTM7720);
    const struct {
        int channel, gauge;
        std::vector<Call> calls;
        const char *name;
    } cases[] = {{1, 0, {Read(0x0E), Read(0x0F)}, "Remote1"},
                 {2, 0, {Read(0x11), Read(0x12)}, "Remote2"},
                 {3, 1, {}, "Fan1"},
                 {4, 1, {}, "Fan2"},
                 {5, 2, {Read(0x19)}, "THERM%"},
                 {0, 0, {Read(0x0B), Read(0x0C)}, "Local"}};
    for (const auto &c : cases) {
        Adapter().calls.clear();
        Click(QString("optMeasure(%1)").arg(c.channel));
        EXPECT_EQ(Adapter().calls, c.calls) << c.name;
        EXPECT_EQ(TextOf("lblBargraph"), c.name);
        for (int gauge = 0; gauge < 3; ++gauge) {
            EXPECT_EQ(Limits(gauge).isVisible(), gauge == c.gauge) << c.name;
        }
    }
}

TEST_F(VisualDisplayPageTest, LimitsAreShownOnPointersAndBands) {
    Open(ZTM7720);
    Adapter().registers[0x0E] = 0x55;
    Adapter().registers[0x0F] = 0x40;
    Click("optMeasure(1)");
    EXPECT_EQ(Limits(0).LowPointer(), 0);
    EXPECT_EQ(Limits(0).HighPointer(), 21);
    EXPECT_EQ(Limits(0).Band0Start(), 0);
    EXPECT_EQ(Limits(0).Band1End(), 21);
    Adapter().registers[0x0F] = 0x00; // -64 °C is below the scale
    Click("optMeasure(1)");
    EXPECT_EQ(Limits(0).LowPointer(), -55);
    EXPECT_EQ(Limits(0).Band0Start(), -55);
    Adapter().registers[0x19] = 115;
    Click("optMeasure(5)");
    EXPECT_EQ(Limits(2).HighPointer(), 45.1);
}

TEST_F(VisualDisplayPageTest, ADraggedPointerWritesOnceLowBeforeHigh) {
    Open(ZTM7720);
    for (const auto &[channel, low, high] :
         {std::array{0, 0x0C, 0x0B}, {1, 0x0F, 0x0E}, {2, 0x12, 0x11}}) {
        Adapter().registers[static_cast<size_t>(low)] = 64;
        Adapter().registers[static_cast<size_t>(high)] = 164;
        Click(QString("optMeasure(%1)").arg(channel));
        Adapter().calls.clear();
        Drag(Limits(0), 2, 0, 40);
        const auto lowValue = static_cast<int32_t>(std::lround(Limits(0).LowPointer())) + 64;
        EXPECT_NEAR(lowValue, 104, 2);
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(low, lowValue), Write(high, 164)));
        EXPECT_EQ(Limits(0).Band0Start(), Limits(0).LowPointer());

        Adapter().calls.clear();
        Drag(Limits(0), 3, 100, 70);
        const auto highValue = static_cast<int32_t>(std::lround(Limits(0).HighPointer())) + 64;
        EXPECT_NEAR(highValue, 134, 2);
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(low, lowValue), Write(high, highValue)));
        EXPECT_EQ(Limits(0).Band1End(), Limits(0).HighPointer());
    }
}

TEST_F(VisualDisplayPageTest, PercentIsWrittenAndFanSpeedIsNot) {
    Open(ZTM7720);
    Adapter().registers[0x19] = 0;
    Click("optMeasure(5)");
    for (const auto &[percent, byte] : {std::pair{50, 128}, {100, 255}, {0, 0}}) {
        Adapter().calls.clear();
        const double from = Limits(2).HighPointer();
        Drag(Limits(2), 3, from, percent);
        const auto written = static_cast<int32_t>(std::nearbyint(Limits(2).HighPointer() * 2.55));
        EXPECT_NEAR(written, byte, 2);
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x19, written)));
    }
    Click("optMeasure(3)");
    Adapter().calls.clear();
    Drag(Limits(1), 3, Limits(1).HighPointer(), 9000);
    EXPECT_NEAR(Limits(1).HighPointer(), 9000, 150);
    Drag(Limits(1), 2, Limits(1).LowPointer(), 3000);
    EXPECT_NEAR(Limits(1).LowPointer(), 3000, 150);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(VisualDisplayPageTest, ADragThatIsNotReleasedWritesNothing) {
    Open(ZTM7720);
    Adapter().registers[0x0B] = 164;
    Adapter().registers[0x0C] = 64;
    Click("optMeasure(0)");
    Adapter().calls.clear();
    Gauge &gauge = Limits(0);
    for (const bool byEscape : {true, false}) {
        QTest::mousePress(&gauge, Qt::LeftButton, {}, At(gauge, 3, 100));
        QTest::mouseMove(&gauge, At(gauge, 3, 60));
        EXPECT_NEAR(gauge.Band0End(), 60, 2) << "tracked while it moves";
        byEscape ? QTest::keyClick(&gauge, Qt::Key_Escape) : gauge.clearFocus();
        QTest::mouseRelease(&gauge, Qt::LeftButton, {}, At(gauge, 3, 60));
        EXPECT_EQ(gauge.HighPointer(), 100);
        EXPECT_EQ(gauge.Band0End(), 100);
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
    QTest::keyPress(&gauge, Qt::Key_Up);
    QTest::keyRelease(&gauge, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(Adapter().Writes().size(), 2U) << "a change by keys ends with its key";
}

TEST_F(VisualDisplayPageTest, TheGaugeShowsTheChannelWithItsUnit) {
    Open(ZTM7720);
    BargraphEnabled = true;
    Adapter().registers[0x40] = 0x60;
    Adapter().registers[0x41] = 0x59;
    Adapter().registers[0x4A] = 0x00;
    Adapter().registers[0x4B] = 0x10;
    Adapter().registers[0x4E] = 115;
    const struct {
        int channel, gauge;
        const char *caption;
    } cases[] = {{0, 0, "25.38°C"}, {3, 1, "1200RPM"}, {5, 2, "45.1%"}};
    for (const auto &c : cases) {
        Click(QString("optMeasure(%1)").arg(c.channel));
        Tick();
        EXPECT_EQ(Limits(c.gauge).Caption(), QString::fromUtf8(c.caption));
    }
    MonitoringEnabled = true;
    Adapter().calls.clear();
    Tick();
    EXPECT_EQ(Adapter().calls.size(), 2U) << "the round robin alone reads";
    EXPECT_TRUE(Adapter().Writes().empty());
}

TEST_F(VisualDisplayPageTest, AlertsFollowTheStatusRegisters) {
    Open(ZTM7720);
    LimitMonitorEnabled = true;
    Adapter().registers[0x4F] = 0x20;
    Adapter().registers[0x51] = 0x41;
    Tick();
    std::string alarms;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        alarms += Find<ToggleIndicator>(QString("tglAlert(%1)").arg(channel)).IsAlarm() ? '1' : '0';
    }
    EXPECT_EQ(alarms, "010100");
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x51), Read(0x4F), Read(0x50)));
}

TEST_F(VisualDisplayPageTest, EasySetupStartsMonitoringOfTheLocalChannel) {
    Open(ZTM7720);
    Click("optMeasure(4)");
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
    Open(ZTM7720);
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

TEST_F(VisualDisplayPageTest, NoTickRunsWhileAMessageIsShown) {
    Open(ZTM7720);
    BargraphEnabled = true;
    Click("cmdGraphOptions");
    Type("txtInterval", "0");
    Adapter().calls.clear();
    AnswerMessageOf([] {
        QTimer::singleShot(0, [] { Tick(); });
        Click("cmdApply");
    });
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Tick();
    EXPECT_FALSE(Adapter().calls.empty());
}

} // namespace
} // namespace ztm::test
