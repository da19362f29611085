#include "ui/kit/SpinButton.h"
#include "support/Instrument.h"

#include <gmock/gmock.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

namespace ztm::test {
namespace {

TEST(SpinButton, ArrowsKeysAndTheWheelStepTheNumberInTheBoxWithinTheRange) {
    QWidget window;
    QLineEdit *box = nullptr;
    QHBoxLayout layout(&window);
    layout.addWidget(NewSpinBox(box, "txtInterval(1)", {50, 10000, 50}, &window));
    window.show();
    QApplication::setActiveWindow(&window);
    box->setFocus();
    const auto click = [&](const char *arrow) {
        QTest::mouseClick(window.findChild<QToolButton *>(arrow), Qt::LeftButton);
    };
    const std::function<void()> ups[] = {
        [&] { click("txtInterval(1)SpinUp"); },
        [&] { QTest::keyClick(box, Qt::Key_Up); },
        [&] {
            TurnWheel(*box, {2, 2}, 120);
        },
    };
    const std::function<void()> downs[] = {
        [&] { click("txtInterval(1)SpinDown"); },
        [&] { QTest::keyClick(box, Qt::Key_Down); },
        [&] {
            TurnWheel(*box, {2, 2}, -120);
        },
    };
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"100", "150", "50"},
        {"50", "100", "50"},
        {"9980", "10000", "9930"},
        {"10000", "10000", "9950"},
        {"123", "173", "73"},
        {"2.5 s", "52", "2.5 s"},
        {"", "50", ""},
        {"none", "50", "none"},
        {"-700", "50", "-700"},
        {"70000", "70000", "10000"},
        {"1e300", "1e300", "10000"},
    };
    for (const auto &[text, up, down] : cases) {
        for (const auto &step : ups) {
            box->setText(text);
            step();
            EXPECT_EQ(box->text(), up) << "from " << text;
        }
        for (const auto &step : downs) {
            box->setText(text);
            step();
            EXPECT_EQ(box->text(), down) << "from " << text;
        }
    }
    box->setText("none");
    for (const auto &step : ups) {
        step();
    }
    for (const char *text : {"100", "50", "none"}) {
        QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(box->text(), text) << "a step is taken back";
    }
    box->setText("100");
    for (const auto &[angle, text] :
         {std::pair{180, "150"}, {60, "200"}, {-60, "200"}, {-60, "150"}}) {
        TurnWheel(*box, {2, 2}, angle);
        EXPECT_EQ(box->text(), text) << "a notch is a step";
    }
    box->clearFocus();
    TurnWheel(*box, {2, 2}, 120);
    EXPECT_EQ(box->text(), "150") << "a box without the focus lets the wheel pass";
    QTest::keyClicks(box, "x");
    EXPECT_EQ(box->text(), "150x") << "any text can be typed";
    for (const bool enabled : {false, true}) {
        box->setEnabled(enabled);
        ups[0]();
        EXPECT_EQ(box->text(), enabled ? "200" : "150x");
    }
}

} // namespace
} // namespace ztm::test
