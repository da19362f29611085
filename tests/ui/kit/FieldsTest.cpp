#include "ui/kit/Fields.h"

#include <gmock/gmock.h>

#include <QLineEdit>

namespace ztm::test {
namespace {

TEST(Fields, ABoxIsMarkedWhileItsRoundedNumberIsOutsideItsRange) {
    QLineEdit box;
    WatchRange(box, -64, 191, "°C");
    const QColor usual = box.palette().color(QPalette::Base);
    const struct {
        const char *text;
        bool marked;
    } cases[] = {
        {"-64", false},     {"-65", true},   {"-64.5", false}, // a half goes to even
        {"191.4 C", false}, {"191.5", true}, {"none", false},  {"1e300", true}, {"", false},
    };
    for (const auto &[text, marked] : cases) {
        box.setText(text);
        const QString reason = marked ? "-64 to 191 °C" : "";
        EXPECT_EQ(box.toolTip(), reason) << text;
        EXPECT_EQ(box.accessibleDescription(), reason) << text;
        EXPECT_EQ(box.palette().color(QPalette::Base) != usual, marked) << text;
    }
}

} // namespace
} // namespace ztm::test
