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
    const struct {
        QWidget *widget;
        const char *property;
        QVariant value;
    } cases[] = {
        {gauge, "needle", 30},     {gauge, "lowPointer", 40},  {gauge, "highPointer", 60},
        {gauge, "band0Start", 10}, {gauge, "band0End", 50},    {gauge, "band1Start", 20},
        {gauge, "band1End", 60},   {gauge, "caption", "60%"},  {gauge, "minimum", -20},
        {gauge, "maximum", 90},    {indicator, "alarm", true}, {indicator, "alarm", 0},
        {slider, "value", 50},     {bit, "text", "1"},
    };
    for (const auto &c : cases) {
        for (const bool changes : {true, false}) {
            PaintCounter counter(*c.widget);
            c.widget->setProperty(c.property, c.value);
            Settle();
            EXPECT_EQ(counter.paints, changes) << c.property;
            EXPECT_EQ(OnScreen(window), PaintedAnew(window)) << c.property;
        }
    }
    for (const Qt::Key choosing : {Qt::Key_H, Qt::Key_Space, Qt::Key_Up}) {
        QTest::keyClick(gauge, choosing);
        Settle();
        EXPECT_EQ(OnScreen(window), PaintedAnew(window)) << choosing;
    }
    gauge->setProperty("lowPointerVisible", false);
    Settle();
    EXPECT_EQ(OnScreen(window), PaintedAnew(window));
}

} // namespace
} // namespace ztm::test
