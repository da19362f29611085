#pragma once

#include <QWidget>

namespace ztm {

/// A small round indicator with two states: red with a cross while `alarm` is set, green with
/// a tick otherwise, so that it reads without its colour as well.
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
