#pragma once

#include "ui/kit/SpinButton.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <initializer_list>
#include <string>

class QComboBox;
class QGridLayout;
class QLabel;

namespace ztm {

/// Gives a control the name by which tests and assistive technology find it.
template <class Control>
Control *Named(Control *control, const char *name) {
    control->setObjectName(QLatin1String(name));
    return control;
}

/// A push button that also takes the Enter key when it has the focus.
QPushButton *NewButton(const char *name, const QString &caption, QWidget *parent);

/// The line `lblFileResult`, which says what became of a file.
QLabel *NewResultLabel(QWidget *parent);

/// The buttons that close a dialog, in a row at its right.
QHBoxLayout *NewButtonRow(std::initializer_list<QPushButton *> buttons);

/// Adds a row to a form: a label and the control that is its buddy. Returns the label.
QLabel *AddRow(QGridLayout &form, int row, const QString &caption, QWidget *control,
               Qt::Alignment alignment = {});

/// A form row with a box for a number and its spin button.
struct NumberRow {
    QLabel *label;
    QLineEdit *box;
    QWidget *spinBox; ///< the box with its button
};
NumberRow AddNumberRow(QGridLayout &form, int row, const QString &caption, const QString &name,
                       SpinRange spin);

/// The selected text of a list as a core string.
std::string TextOf(const QComboBox &list);

} // namespace ztm
