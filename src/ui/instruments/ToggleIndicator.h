#pragma once

#include <QWidget>

namespace ztm {

/// A small round indicator with two states: red with a cross while `alarm` is set, otherwise green
/// with a tick, so that it is readable without colour too.
class ToggleIndicator : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool alarm READ IsAlarm WRITE SetAlarm)

public:
    explicit ToggleIndicator(QWidget *parent = nullptr);

    bool IsAlarm() const { return alarm; }
    void SetAlarm(bool on);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void TellState();

    bool alarm = false;
};

} // namespace ztm
