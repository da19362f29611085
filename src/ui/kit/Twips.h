#pragma once

#include <QWidget>

namespace ztm {

/// A length in twips (1/1440 inch) in whole pixels of the window that contains `widget`.
inline int Twips(double twips, const QWidget &widget) {
    constexpr double twipsPerInch = 1440.0;
    return qRound(twips * widget.logicalDpiX() / twipsPerInch);
}

} // namespace ztm
