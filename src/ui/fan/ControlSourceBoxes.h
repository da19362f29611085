#pragma once

#include <QString>

#include <array>
#include <cstdint>

class QComboBox;
class QWidget;

namespace ztm {

/// The boxes, shared by two windows, that select what drives the fans (the register Fan Behaviour):
/// one for each fan, or `cmbSource33` instead on the variant with one fan.

QComboBox *NewControlSourceBox(const QString &name, QWidget *parent);

/// The box "cmbSource33", hidden and with that accessible name.
QComboBox *NewControlSource33Box(const QString &accessibleName, QWidget *parent);

/// Shows the sources in a value of Fan Behaviour.
void ShowControlSources(int32_t behaviour, const std::array<QComboBox *, 2> &fans,
                        QComboBox &source33);

/// The value to write to Fan Behaviour on the current variant.
int32_t ChosenBehaviour(const std::array<QComboBox *, 2> &fans, const QComboBox &source33);

} // namespace ztm
