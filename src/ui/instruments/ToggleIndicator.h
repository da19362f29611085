#pragma once

#include <QWidget>

namespace ztm {

/// A small round indicator with two states: red with a cross while `alarm` is set, otherwise green
/// with a tick, so that it is readable without colour too. While its state is not known it is gray
/// and empty, whatever `alarm` says.
class ToggleIndicator : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool alarm READ IsAlarm WRITE SetAlarm)
    Q_PROPERTY(bool known READ IsKnown WRITE SetKnown)

public:
    explicit ToggleIndicator(QWidget *parent = nullptr);

    bool IsAlarm() const { return alarm; }
    void SetAlarm(bool on);

    /// Known at first.
    bool IsKnown() const { return known; }
    void SetKnown(bool isKnown);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void TellState();

    bool alarm = false;
    bool known = true;
};

} // namespace ztm
