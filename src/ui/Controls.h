#pragma once

#include <QPushButton>

namespace ztm {

/// Gives a control the name by which tests and assistive technology find it.
template <class Control>
Control *Named(Control *control, const char *name) {
    control->setObjectName(QLatin1String(name));
    return control;
}

/// A push button that also takes the Enter key when it has the focus.
inline QPushButton *NewButton(const char *name, const QString &caption, QWidget *parent) {
    auto *button = Named(new QPushButton(caption, parent), name);
    button->setAutoDefault(true);
    return button;
}

} // namespace ztm
