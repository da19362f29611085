#include "support/Driver.h"
#include "support/Instrument.h"
#include "ui/instruments/BitLabel.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/instruments/ValueSlider.h"

#include <gmock/gmock.h>

#include <QHBoxLayout>

namespace ztm::test {
namespace {

TEST(RepaintTest, PaintsOnlyWhatChangesAndAtOnce) {
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    const auto add = [layout](QWidget *widget) {
        layout->addWidget(widget);
        return widget;
    };
    auto *gauge = add(new Gauge);
    auto *indicator = add(new ToggleIndicator);
    auto *slider = add(new ValueSlider);
    auto *bit = add(new BitLabel);
    window.resize(600, 300);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    gauge->setFocus();
    Settle();
    const auto expectSeen = [&](const QImage &before, bool changes, const QVariant &what) {
        EXPECT_EQ(OnScreen(window) != before, changes) << what.toString().toStdString();
        EXPECT_EQ(OnScreen(window), PaintedAnew(window)) << what.toString().toStdString();
    };
    const std::tuple<QWidget *, const char *, QVariant> cases[] = {
        {gauge, "needle", 30},     {gauge, "lowPointer", 40},  {gauge, "highPointer", 60},
        {gauge, "band0End", 50},   {gauge, "band0Start", 10},  {gauge, "band1End", 60},
        {gauge, "band1Start", 20}, {gauge, "caption", "60%"},  {gauge, "minimum", -20},
        {gauge, "maximum", 90},    {indicator, "alarm", true}, {indicator, "alarm", 0},
        {slider, "value", 50},     {bit, "text", "1"},
    };
    for (const auto &[widget, property, value] : cases) {
        for (const bool changes : {true, false}) {
            const QImage before = OnScreen(window);
            PaintCounter counter(*widget);
            widget->setProperty(property, value);
            Settle();
            EXPECT_EQ(counter.paints, changes) << property;
            expectSeen(before, changes, property);
        }
    }
    window.setPalette(QPalette(QColor(49, 54, 59)));
    Settle();
    for (const auto key :
         {Qt::Key_H, Qt::Key_Space, Qt::Key_Up, Qt::Key_Tab, Qt::Key_Up, Qt::Key_Tab}) {
        const QImage before = OnScreen(window);
        QTest::keyClick(window.focusWidget(), key);
        Settle();
        expectSeen(before, true, key);
    }
}

} // namespace
} // namespace ztm::test
