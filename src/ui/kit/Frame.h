#pragma once

#include <QGroupBox>

namespace ztm {

/// A group box with its caption in the upper border, so that its contents can start right below the
/// caption in every style.
class Frame : public QGroupBox {
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

    /// Makes the caption small enough for that height in pixels, where contents start at a given
    /// place.
    void SetCaptionRoom(int height) { captionRoom = height; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont CaptionFont() const;

    int captionRoom = QWIDGETSIZE_MAX;
};

} // namespace ztm
