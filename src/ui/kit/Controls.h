#pragma once

#include "ui/kit/SpinButton.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>

#include <initializer_list>
#include <string>

class QComboBox;
class QGridLayout;
class QKeyEvent;
class QLabel;

namespace ztm {

/// Gives a control the name by which tests and assistive technology find it.
template <class Control>
Control *Named(Control *control, const char *name) {
    control->setObjectName(QLatin1String(name));
    return control;
}

/// Whether an event is about one of the two Enter keys.
bool IsEnter(const QKeyEvent &event);

/// A push button that also takes the Enter key when it has the focus.
QPushButton *NewButton(const char *name, const QString &caption, QWidget *parent);

/// An option button. The Tab key stops at the one that is checked among those of the same parent.
QRadioButton *NewOption(const QString &name, const QString &caption, QWidget *parent);

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

/// Enables a control, or disables it and gives the reason as its tooltip.
void Enable(QWidget &control, bool enabled, const QString &whyNot);

/// From now on the wheel changes the control only while it has the focus. Otherwise it is left to
/// what is behind.
void KeepWheelForFocus(QWidget &control);

/// A drop-down list.
QComboBox *NewList(const QString &name, QWidget *parent = nullptr);

/// The selected text of a list as a core string.
std::string TextOf(const QComboBox &list);

} // namespace ztm
