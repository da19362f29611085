#include "ui/kit/Fields.h"

#include "common/NumberText.h"
#include "ui/kit/Text.h"

#include <QLineEdit>

#include <cmath>

namespace ztm {
namespace {

constexpr QColor markedBase(255, 214, 204);
constexpr QColor markedText(96, 0, 0);

} // namespace

double NumberIn(const QLineEdit &box) {
    return NumericValue(box.text().toStdString());
}

void ShowNumber(QLineEdit &box, double number) {
    box.setText(ToQString(NumberText(number)));
}

void SetTextKeepingCaret(QLineEdit &box, const QString &text) {
    if (box.text() == text) {
        return;
    }
    const auto behindCaret = box.text().size() - box.cursorPosition();
    box.setText(text);
    box.setCursorPosition(static_cast<int>(text.size() - behindCaret));
}

void MarkField(QLineEdit &box, const QString &reason) {
    box.setToolTip(reason);
    box.setAccessibleDescription(reason);
    QPalette palette;
    if (!reason.isEmpty()) {
        palette.setColor(QPalette::Base, markedBase);
        palette.setColor(QPalette::Text, markedText);
    }
    box.setPalette(palette);
}

void WatchNumber(QLineEdit &box, std::function<bool(double)> isValid, const QString &reason) {
    QObject::connect(
        &box, &QLineEdit::textChanged, &box, [&box, isValid = std::move(isValid), reason] {
            MarkField(box, isValid(std::nearbyint(NumberIn(box))) ? QString() : reason);
        });
}

void WatchRange(QLineEdit &box, double minimum, double maximum, const QString &unit) {
    WatchNumber(
        box, [=](double number) { return number >= minimum && number <= maximum; },
        QObject::tr("%1 to %2 %3").arg(minimum).arg(maximum).arg(unit));
}

} // namespace ztm
