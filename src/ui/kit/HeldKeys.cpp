#include "ui/kit/HeldKeys.h"

#include "ui/kit/Controls.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace ztm {

HeldKeys::HeldKeys() {
    qApp->installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<QKeyEvent &>(*event);
        // Not every repetition is marked as one; but under X11 the key then goes up and down in the
        // same millisecond.
        const bool again =
            key.isAutoRepeat() || (key.timestamp() != 0 && key.timestamp() == releasedAt);
        if (again && (IsEnter(key) || key.key() == Qt::Key_Escape || key.key() == Qt::Key_F1)) {
            return true;
        }
    } else if (event->type() == QEvent::KeyRelease) {
        releasedAt = static_cast<QKeyEvent &>(*event).timestamp();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ztm
