#pragma once

#include <QGroupBox>

namespace ztm {

/// A group box with its caption in the upper border, so that its contents can start right below the
/// caption in every style.
class Frame final : public QGroupBox {
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ztm
