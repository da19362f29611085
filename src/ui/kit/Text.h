#pragma once

#include "link/LinkState.h"

#include <QString>

#include <string_view>

namespace ztm {

/// A text of the core as the windows show it.
inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The family's name, from which the windows build their texts.
inline QString FamilyText() {
    return ToQString(FamilyName);
}

/// The object name of an element of a control array: "name(index)".
inline QString IndexedName(const char *name, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

} // namespace ztm
