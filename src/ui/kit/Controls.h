#pragma once

#include <QHBoxLayout>
#include <QPushButton>

#include <initializer_list>

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

/// The buttons that close a dialog, side by side at its right.
inline QHBoxLayout *NewButtonRow(std::initializer_list<QPushButton *> buttons) {
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton *button : buttons) {
        row->addWidget(button);
    }
    return row;
}

} // namespace ztm
