#include "ui/kit/Fields.h"

#include "common/NumberText.h"
#include "ui/kit/Text.h"

#include <QLineEdit>
#include <QSignalBlocker>

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

void EnterText(QLineEdit &box, const QString &text) {
    if (box.text() != text) {
        box.selectAll();
        box.insert(text); // setText would forget what Ctrl+Z takes back
    }
}

void EnterNumber(QLineEdit &box, double number) {
    EnterText(box, ToQString(NumberText(number)));
}

void CorrectText(QLineEdit &box, const QString &text) {
    if (box.text() == text) {
        return;
    }
    const auto behindCaret = box.text().size() - box.cursorPosition();
    {
        // Otherwise Ctrl+Z would lead to the typed text, which would be corrected again.
        const QSignalBlocker blocker(box);
        box.undo();
    }
    if (box.text() == text) {
        emit box.textChanged(text); // what was typed has been reported
    }
    EnterText(box, text);
    box.setCursorPosition(static_cast<int>(text.size() - behindCaret));
}

void MarkField(QWidget &control, const QString &reason) {
    control.setToolTip(reason);
    control.setAccessibleDescription(reason);
    QPalette palette;
    if (!reason.isEmpty()) {
        palette.setColor(control.backgroundRole(), markedBase);
        palette.setColor(QPalette::Text, markedText);
        palette.setColor(QPalette::WindowText, markedText); // the text of an option
    }
    control.setPalette(palette);
    // A box fills its frame itself.
    control.setAutoFillBackground(!reason.isEmpty() && control.backgroundRole() != QPalette::Base);
}

QString HowRead(const QLineEdit &box) {
    return IsNumber(box.text().toStdString()) ? QString()
                                              : QObject::tr("Not a number as a whole: taken as %1")
                                                    .arg(ToQString(NumberText(NumberIn(box))));
}

void WatchNumber(QLineEdit &box, std::function<bool(double)> isValid, const QString &reason) {
    QObject::connect(
        &box, &QLineEdit::textChanged, &box, [&box, isValid = std::move(isValid), reason] {
            MarkField(box, isValid(std::nearbyint(NumberIn(box))) ? HowRead(box) : reason);
        });
}

void WatchRange(QLineEdit &box, double minimum, double maximum, const QString &unit) {
    WatchNumber(
        box, [=](double number) { return number >= minimum && number <= maximum; },
        QObject::tr("%1 to %2 %3").arg(minimum).arg(maximum).arg(unit));
}

} // namespace ztm
