#pragma once

#include <QGroupBox>

namespace ztm {

/// A group box whose caption stands in its upper border, so that the frame's contents can
/// start right below the caption in every style.
class Frame final : public QGroupBox {
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ztm
