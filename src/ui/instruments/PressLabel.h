#pragma once

#include <QLabel>

namespace ztm {

/// A label that is pressed by a click that also ends on it, or by the space bar when it has the
/// focus. A click by itself does not give it the focus.
class PressLabel : public QLabel {
    Q_OBJECT

public:
    explicit PressLabel(QWidget *parent);

signals:
    void Click();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    /// Draws the frame that shows the focus, if it has that.
    void PaintFocus(const QRect &frame);

private:
    bool pressed = false;
};

} // namespace ztm
