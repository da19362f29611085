#include "ui/kit/SpinButton.h"
#include "support/Instrument.h"

#include <gmock/gmock.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

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

    void Click(const char *arrow) {
        auto *button = window.findChild<QToolButton *>(QString("txtInterval(1)Spin") + arrow);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    QWidget window;
    QLineEdit *box;
};

TEST_F(SpinButtonTest, StepsTheNumberInTheBoxWithinTheRange) {
    const std::tuple<const char *, const char *, const char *> cases[] = {
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
        Click("Up");
        EXPECT_EQ(box->text(), up) << "from " << text;
        box->setText(text);
        Click("Down");
        EXPECT_EQ(box->text(), down) << "from " << text;
    }
}

TEST_F(SpinButtonTest, KeysAndTheWheelStepTooWhileTheBoxIsInUse) {
    const auto key = [this](Qt::Key key) { return [=, this] { QTest::keyClick(box, key); }; };
    const auto wheel = [this](int angle) { return [=, this] { TurnWheel(*box, {2, 2}, angle); }; };
    const struct {
        std::function<void()> action;
        const char *text;
    } cases[] = {
        {key(Qt::Key_Up), "150"},
        {key(Qt::Key_Down), "100"},
        {wheel(240), "200"},
        {wheel(-60), "200"}, // half a notch
        {wheel(-60), "150"},
        {[this] { box->clearFocus(); }, "150"},
        {wheel(120), "150"},
        {[this] { QTest::keyClicks(box, "x"); }, "150x"},
        {[this] { box->setEnabled(false); }, "150x"},
        {[this] { Click("Up"); }, "150x"},
        {[this] { box->setEnabled(true); }, "150x"},
        {[this] { Click("Up"); }, "200"},
    };
    box->setText("100");
    for (const auto &c : cases) {
        c.action();
        EXPECT_EQ(box->text(), c.text) << "action " << &c - cases;
    }
}

} // namespace
} // namespace ztm::test
