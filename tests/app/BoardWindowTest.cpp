// The window of the simulated board, on the simulator that ships with the program.

#include "app/BoardWindow.h"
#include "link/USBFunctions.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string_view>

namespace ztm::test {
namespace {

using sim::BoardSettings;

BoardSettings Settings() {
    BoardSettings settings;
    sim::BoardState state{};
    ReadSimulatedBoard(&settings, &state);
    return settings;
}

/// Each test begins with a new board and the window on it.
class BoardWindowTest : public testing::Test {
protected:
    BoardWindowTest() {
        Arrange({.isPluggedIn = false, .bench = {}});
        Arrange({.bench = {}});
        window = std::make_unique<BoardWindow>();
        window->show();
    }

    static void Arrange(const BoardSettings &settings) { ArrangeSimulatedBoard(&settings); }

    static void LoadFirmware() {
        const QString path = QCoreApplication::applicationDirPath() + "\\ZTM7720FW_v3.Hex";
        ASSERT_EQ(LoadFirmWare(path.toStdString().c_str()), 0);
    }

    template <class Control>
    Control &Find(const char *name) const {
        auto *control = window->findChild<Control *>(QLatin1String(name));
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }

    std::unique_ptr<BoardWindow> window;
};

TEST_F(BoardWindowTest, TheTabKeyReachesEveryControlAndEachChangesItsSettingAndNothingElse) {
    const struct {
        const char *control;
        Qt::Key key; ///< that the user presses on it
        std::function<void(BoardSettings &)> change;
    } cases[] = {
        {"cmbVariant", Qt::Key_Up, [](auto &s) { s.variant = sim::Variant::ZTM7710; }},
        // The second diode and fan are there on the larger variant alone.
        {"cmbVariant", Qt::Key_Down, [](auto &s) { s.variant = sim::Variant::ZTM7720; }},
        {"cmbAddress", Qt::Key_Down, [](auto &s) { s.chipAddress = 0x51; }},
        {"chkPluggedIn", Qt::Key_Space, [](auto &s) { s.isPluggedIn = false; }},
        {"chkRefuseFirmware", Qt::Key_Space, [](auto &s) { s.refusesFirmware = true; }},
        {"chkSlowBus", Qt::Key_Space, [](auto &s) { s.isSlow = true; }},
        {"spnAmbient", Qt::Key_Up, [](auto &s) { s.bench.ambientCelsius += 1; }},
        {"cmbDiode(0)", Qt::Key_Down, [](auto &s) { s.bench.diodes[0] = sim::DiodeFault::Open; }},
        {"cmbDiode(1)", Qt::Key_End, [](auto &s) { s.bench.diodes[1] = sim::DiodeFault::Shorted; }},
        {"cmbFan(0)", Qt::Key_Down, [](auto &s) { s.bench.fans[0] = sim::FanFault::Drags; }},
        {"cmbFan(1)", Qt::Key_End, [](auto &s) { s.bench.fans[1] = sim::FanFault::Stalled; }},
        {"chkNoise", Qt::Key_Space, [](auto &s) { s.bench.isNoisy = false; }},
    };
    BoardSettings expected = Settings();
    window->activateWindow();
    Find<QWidget>("cmbVariant").setFocus();
    for (const auto &[control, key, change] : cases) {
        if (window->focusWidget()->objectName() != control) {
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        }
        ASSERT_EQ(window->focusWidget()->objectName(), control);
        QTest::keyClick(window->focusWidget(), key);
        change(expected);
        EXPECT_EQ(Settings(), expected) << control;
    }
    const BoardWindow second;
    EXPECT_EQ(Settings(), expected) << "a window shows what is set and changes nothing";
    EXPECT_EQ(second.findChild<QSpinBox *>("spnAmbient")->value(), 25);
    EXPECT_EQ(second.findChild<QComboBox *>("cmbFan(1)")->currentText(), "Stalled");
}

TEST_F(BoardWindowTest, OffersOnlyWhatTheBoardLeavesOpen) {
    const auto isEnabled = [this](const char *name) { return Find<QWidget>(name).isEnabled(); };
    EXPECT_TRUE(isEnabled("cmbVariant"));
    LoadFirmware();
    window->hide();
    window->show();
    EXPECT_FALSE(isEnabled("cmbVariant")) << "the session has begun";
    EXPECT_FALSE(isEnabled("cmbAddress"));
    Find<QCheckBox>("chkPluggedIn").click();
    EXPECT_TRUE(isEnabled("cmbVariant")) << "pulled out";
    EXPECT_TRUE(isEnabled("cmbFan(1)"));
    Find<QComboBox>("cmbVariant").setCurrentText("ZTM7710");
    EXPECT_FALSE(isEnabled("cmbFan(1)"));
    EXPECT_FALSE(isEnabled("cmbDiode(1)"));
}

TEST_F(BoardWindowTest, ShowsTheTruthAndKeepsUpWithItWhileShown) {
    const auto text = [this](const char *name) { return Find<QLabel>(name).text(); };
    const auto number = [&](const char *name) { return text(name).split(' ').first().toDouble(); };
    EXPECT_EQ(text("lblFirmware"), "not loaded");
    LoadFirmware();
    EXPECT_EQ(VendorIORequest(0xDB, 50, 100, 0, 0, nullptr), 0);
    auto &timer = *window->findChild<QTimer *>("tmrRefresh");
    EXPECT_TRUE(timer.isActive());
    QMetaObject::invokeMethod(&timer, "timeout");
    EXPECT_EQ(text("lblFirmware"), "loaded");
    EXPECT_EQ(text("lblHeater(0)"), "2.25 W");
    EXPECT_EQ(text("lblHeater(1)"), "4.50 W");
    EXPECT_NEAR(number("lblBoard"), 28, 3);
    EXPECT_NEAR(number("lblRemote(0)"), 35, 5);
    EXPECT_NEAR(number("lblFan(0)"), 2400, 100);
    window->hide();
    EXPECT_FALSE(timer.isActive());
}

} // namespace
} // namespace ztm::test
