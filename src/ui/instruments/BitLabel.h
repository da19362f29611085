#pragma once

#include <QLabel>

namespace ztm {

/// A label with a single digit that can be clicked, or pressed with the space bar when it has
/// the focus. To assistive technology it is a check box.
class BitLabel : public QLabel {
    Q_OBJECT

public:
    explicit BitLabel(QWidget *parent = nullptr);

    /// Shows a digit, or nothing, and tells assistive technology.
    void ShowDigit(const QString &digit);

signals:
    void Click();

    /// The pointer moves over the label.
    void MouseMove();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool pressed = false;
};

} // namespace ztm
