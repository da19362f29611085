#pragma once

#include <QString>

#include <string_view>

namespace ztm {

/// A core text as a QString.
inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The object name of an element of a control array: "name(index)".
template <class Index>
QString IndexedName(const char *name, Index index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(static_cast<int>(index));
}

} // namespace ztm
