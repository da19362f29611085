#pragma once

#include <QObject>

namespace ztm {

/// While it exists, Enter, Escape and F1 count once each time they are pressed, in every window: a
/// held key must not go through one window after the other. Needs the application object.
class HeldKeys final : public QObject {
    Q_OBJECT

public:
    HeldKeys();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    quint64 releasedAt = 0;
};

} // namespace ztm
