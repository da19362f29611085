#include "support/DialogTest.h"

#include "link/Heaters.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "ui/control/frmManual.h"
#include "ui/instruments/ValueSlider.h"

#include <QTest>

namespace ztm::test {
namespace {

const std::string load = "2A? 2B? 2C? 2D?";

class ManualTest : public DialogTest {
protected:
    ManualTest() : DialogTest("cmdManual", load + ' ' + load) {}

    /// The dialog on speeds of about 4000 and 2000 RPM.
    void OpenOn(std::string_view variant) const { Open(variant, "2A=CD 2B=04 2C=9A 2D=09"); }

    static ValueSlider &Slider(int fan) {
        return Find<ValueSlider>(QString("sldFan(%1)").arg(fan));
    }

    static QPoint Handle(int fan, double rpm) { return Slider(fan).HandlePosition(rpm).toPoint(); }

    static void Grip(int fan) {
        QTest::mousePress(&Slider(fan), Qt::LeftButton, {}, Handle(fan, Slider(fan).Value()));
    }

    static void Drag(int fan, double rpm) { QTest::mouseMove(&Slider(fan), Handle(fan, rpm)); }

    /// The calls that set a fan to its slider's present value.
    static std::string SetTo(int fan) {
        const int count = static_cast<int>(std::lround(4915200 / Slider(fan).Value()));
        return QString::asprintf(fan == 0 ? "2B=%02X 2A=%02X" : "2D=%02X 2C=%02X", count / 256,
                                 count % 256)
            .toStdString();
    }
};

TEST_F(ManualTest, TheButtonReadsTheSpeedsAgainAndWritesNothing) {
    Check("sldFan(0) sldFan(1)",
          {{"2A=CD 2B=04 2C=9A 2D=09",
            "?; chip 2A=FF 2B=FF 2C=33 2D=13; cmdManual; ?; chip 2A=01 2B=00; cmdManual; ?; "
            "chip 2A=00; cmdManual; ?; chip 2A=48 2B=01; cmdManual; ?; tick",
            load + ' ' + load + ' ' + load + ' ' + load,
            "3999|2000 / 75|1000 / 15000|1000 / 75|1000 / 14985|1000", ZTM7720}});
}

TEST_F(ManualTest, AMoveWritesThePairOfItsFanAlone) {
    // A half goes to even; 75 RPM has no count. Only a measurement changes the speed shown.
    Check("sldFan(0) sldFan(1) lblFanSpeed(0)",
          {{"",
            "sldFan(0)=1000; sldFan(1)=76; sldFan(0)=75; sldFan(1)=15000; sldFan(0)=999.5; "
            "sldFan(1)+PgDown; ?; sldFan(0)+Home; ?",
            "2B=13 2A=33 2D=FC 2C=A2 2D=01 2C=48 2B=13 2A=33 2D=01 2C=53",
            "999.5|14500|0 / 75|14500|0", ZTM7720}});
}

TEST_F(ManualTest, ADragWritesAtMostOncePerTickAndAlwaysItsLastValue) {
    OpenOn(ZTM7720);
    Slider(1).MoveTo(3000); // the sliders wait for themselves alone
    Asked();
    Grip(0);
    Drag(0, 5000);
    EXPECT_EQ(Asked(), SetTo(0)) << "the first move at once";
    Drag(0, 6000);
    Drag(0, 7000);
    EXPECT_EQ(Asked(), "");
    Tick();
    EXPECT_EQ(Asked(), SetTo(0)) << "the last of them with the tick";
    Drag(0, 8000);
    EXPECT_EQ(Asked(), "") << "that was this period's write";
    Tick();
    EXPECT_EQ(Asked(), SetTo(0));
    Tick();
    EXPECT_EQ(Asked(), "");
    Drag(0, 9000);
    EXPECT_EQ(Asked(), SetTo(0)) << "a period without a write leaves the next move free";
    Drag(0, 9500);
    QTest::mouseRelease(&Slider(0), Qt::LeftButton, {}, Handle(0, Slider(0).Value()));
    EXPECT_EQ(Asked(), SetTo(0)) << "letting go does not wait, however long the period";
    Tick();
    EXPECT_EQ(Asked(), "");
    const double before = Slider(0).Value();
    Grip(0);
    Drag(0, 3000);
    Asked();
    Press("sldFan(0)", Qt::Key_Escape);
    EXPECT_EQ(Slider(0).Value(), before) << "Escape first ends the drag";
    Drag(0, 3000);
    Press("sldFan(0)", Qt::Key_Enter);
    EXPECT_EQ(Asked(), SetTo(0));
    Press("sldFan(0)", Qt::Key_Escape);
    EXPECT_EQ(LoadedForm<frmManual>(), nullptr);
}

TEST_F(ManualTest, AValueThatWaitsIsWrittenWhenTheDialogIsClosedOrReadAgain) {
    const std::pair<const char *, std::string> ends[] = {
        {"close", ""}, {"cmdClose", ""}, {"cmdManual", ' ' + load}};
    for (const auto &[end, reads] : ends) {
        OpenOn(ZTM7720);
        Grip(1);
        Drag(1, 5000);
        Drag(1, 6000);
        Asked();
        const std::string expected = SetTo(1) + reads;
        Do(end);
        EXPECT_EQ(Asked(), expected) << end;
    }
    // After a failed request it is not: the user is told once, every window goes, and the program.
    OpenOn(ZTM7720);
    Grip(0);
    Drag(0, 5000);
    Drag(0, 6000);
    MonitoringEnabled = true;
    EXPECT_EXIT(FailIn(Tick), testing::ExitedWithCode(EXIT_FAILURE), endOfAFailure);
}

TEST_F(ManualTest, BothDialogsRunSideBySideAndGoOneByOne) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        OpenOn(variant);
        Do("cmdHeaters; chkSWControl(0); cmdApply");
        Measurements = {0, 0, 0, 1234, 567, 0};
        EXPECT_EQ(Do("?; tick; ?", "lblFanSpeed(0) lblFanSpeed(1) txtPWM(0)"),
                  variant == ZTM7720 ? "0|0|0 / 1234 RPM|567 RPM|20"
                                     : "0|hidden|0 / 1234 RPM|hidden|20");
        EXPECT_TRUE(ManualDialogOpen && HeatersDialogOpen);
        // The older one goes first, by its button or by its box.
        variant == ZTM7720 ? CloseByCloseBox("frmManual") : Click("cmdClose");
        EXPECT_TRUE(!ManualDialogOpen && HeatersDialogOpen);
        EXPECT_EQ(Do("tick; ?", "txtPWM(0)"), "22") << "the ramp goes on";
        Do("cmdClose; tick");
        EXPECT_FALSE(HeatersDialogOpen);
        EXPECT_EQ(LoadedForms().size(), 1U);
    }
}

} // namespace
} // namespace ztm::test
