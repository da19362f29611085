#pragma once

#include <QIcon>
#include <QWidget>

namespace ztm {

/// The program's picture: a chip that holds a temperature curve and drives a fan. Drawn, not
/// stored, so it is sharp at any size.
class ProductPicture final : public QWidget {
    Q_OBJECT

public:
    explicit ProductPicture(QWidget *parent = nullptr);

    QSize sizeHint() const override;

    /// The picture as the icon of the program's windows.
    static QIcon Icon();

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ztm
