#pragma once

#include <QString>

#include <string_view>

namespace ztm {

/// A core text as a QString.
inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Seconds since a midnight as time of day, "HH MM SS" or with another separator, with 0 to 3
/// decimals of a second.
QString TimeOfDayText(double seconds, QChar separator, int decimals = 0);

/// The local date of a time in seconds since the midnight before the clock started, as in
/// "2026-11-23".
QString DateText(double seconds);

/// A tooltip that shows a text, a path for example, as it is, also if it looks like rich text.
QString PlainToolTip(const QString &text);

/// The object name of an element of a control array: "name(index)".
template <class Index>
QString IndexedName(const char *name, Index index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(static_cast<int>(index));
}

} // namespace ztm
