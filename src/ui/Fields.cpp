#include "ui/Fields.h"

#include "common/NumberText.h"

#include <QLineEdit>

namespace ztm {
namespace {

constexpr QColor markedBase(255, 214, 204);
constexpr QColor markedText(96, 0, 0);

} // namespace

double NumberIn(const QLineEdit &box) {
    return NumericValue(box.text().toStdString());
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

} // namespace ztm
