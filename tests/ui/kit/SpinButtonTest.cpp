#include "ui/kit/SpinButton.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

namespace ztm::test {
namespace {

class SpinButtonTest : public testing::Test {
protected:
    SpinButtonTest() {
        auto *layout = new QHBoxLayout(&window);
        layout->addWidget(NewSpinBox(box, "txtInterval(1)", {50, 10000, 50}, &window));
        window.show();
        QApplication::setActiveWindow(&window);
        box->setFocus();
    }

    QString After(const char *arrow) {
        QTest::mouseClick(window.findChild<QToolButton *>(arrow), Qt::LeftButton);
        return box->text();
    }

    void TurnWheel(int angle) {
        QWheelEvent event(QPointF(2, 2), box->mapToGlobal(QPointF(2, 2)), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(box, &event);
    }

    QWidget window;
    QLineEdit *box;
};

TEST_F(SpinButtonTest, StepsTheNumberInTheBoxWithinTheRange) {
    const struct {
        const char *text;
        const char *up;
        const char *down;
    } cases[] = {
        {"100", "150", "50"},
        {"50", "100", "50"},
        {"9980", "10000", "9930"},
        {"10000", "10000", "9950"},
        {"123", "173", "73"},
        {"2.5 s", "52", "50"},
        {"", "50", "50"},
        {"none", "50", "50"},
        {"-700", "50", "50"},
        {"70000", "10000", "10000"},
        {"1e300", "10000", "10000"},
    };
    for (const auto &[text, up, down] : cases) {
        box->setText(text);
        EXPECT_EQ(After("txtInterval(1)SpinUp"), up) << "from " << text;
        box->setText(text);
        EXPECT_EQ(After("txtInterval(1)SpinDown"), down) << "from " << text;
    }
}

TEST_F(SpinButtonTest, KeysAndTheWheelStepToo) {
    box->setText("100");
    QTest::keyClick(box, Qt::Key_Up);
    EXPECT_EQ(box->text(), "150");
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(box->text(), "100");
    TurnWheel(240);
    EXPECT_EQ(box->text(), "200");
    TurnWheel(-60);
    EXPECT_EQ(box->text(), "200") << "half a notch";
    TurnWheel(-60);
    EXPECT_EQ(box->text(), "150");
    box->clearFocus();
    TurnWheel(120);
    EXPECT_EQ(box->text(), "150") << "a box without the focus lets the wheel pass";
    QTest::keyClicks(box, "x");
    EXPECT_EQ(box->text(), "150x") << "any text can be typed";
}

TEST_F(SpinButtonTest, FollowsItsBoxInBeingDisabled) {
    box->setText("100");
    box->setEnabled(false);
    EXPECT_EQ(After("txtInterval(1)SpinUp"), "100");
    box->setEnabled(true);
    EXPECT_EQ(After("txtInterval(1)SpinUp"), "150");
}

} // namespace
} // namespace ztm::test
