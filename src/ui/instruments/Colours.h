#pragma once

#include <QColor>

namespace ztm {

/// A mix of two colours; `share` is 0 for the first to 1 for the second.
QColor Mix(const QColor &first, const QColor &second, double share);

/// The colour, made lighter or darker until it stands out from the background.
QColor Readable(const QColor &colour, const QColor &ground);

} // namespace ztm
