#include "ui/kit/Fields.h"

#include <gmock/gmock.h>

#include <QLineEdit>

namespace ztm::test {
namespace {

TEST(Fields, ABoxIsMarkedWhileItsRoundedNumberIsOutsideItsRangeOrItsTextIsNoNumber) {
    QLineEdit box;
    WatchRange(box, -64, 191, "°C");
    const QString range = "-64 to 191 °C";
    const QString no = "Not a number as a whole: taken as ";
    const QColor usual = box.palette().color(QPalette::Base);
    const struct {
        const char *text;
        QString reason;
    } cases[] = {
        {"-64", ""},      {"-65", range},   {"-64.5", ""}, // a half goes to even
        {"191.5", range}, {"1e300", range}, {"", ""},        {" 1 2. ", ""},   {"060a", no + "60"},
        {"e5", no + "0"}, {"+", no + "0"},  {".", no + "0"}, {"1e", no + "1"},
    };
    for (const auto &[text, reason] : cases) {
        box.setText(text);
        EXPECT_EQ(box.toolTip(), reason) << text;
        EXPECT_EQ(box.accessibleDescription(), reason) << text;
        EXPECT_EQ(box.palette().color(QPalette::Base) != usual, !reason.isEmpty()) << text;
    }
}

} // namespace
} // namespace ztm::test
