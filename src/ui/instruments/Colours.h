#pragma once

#include <QColor>

namespace ztm {

/// A colour that lies that share of the way, 0 to 1, from the first to the second.
QColor Mix(const QColor &first, const QColor &second, double share);

/// The colour, as much lighter or darker as it takes to stand out from the ground.
QColor Readable(const QColor &colour, const QColor &ground);

} // namespace ztm
