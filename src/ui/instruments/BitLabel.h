#pragma once

#include "ui/instruments/PressLabel.h"

namespace ztm {

/// A bit: a label with a single digit that can be pressed. To assistive technology it is a check
/// box.
class BitLabel : public PressLabel {
    Q_OBJECT

public:
    explicit BitLabel(QWidget *parent = nullptr);

    /// Shows a digit, or nothing, and tells assistive technology.
    void ShowDigit(const QString &digit);

signals:
    /// The pointer moves over the label.
    void MouseMove();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ztm
