#pragma once

#include <QString>

#include <array>
#include <cstdint>

class QComboBox;
class QWidget;

namespace ztm {

/// The boxes in which two windows choose what drives the fans (the register Fan Behaviour): one
/// for each fan, and `cmbSource33` in their place on the variant with one fan.

QComboBox *NewControlSourceBox(const QString &name, QWidget *parent);

/// The box "cmbSource33", hidden and with that accessible name.
QComboBox *NewControlSource33Box(const QString &accessibleName, QWidget *parent);

/// Shows the sources that Fan Behaviour holds.
void ShowControlSources(int32_t behaviour, const std::array<QComboBox *, 2> &fans,
                        QComboBox &source33);

/// What Fan Behaviour is written with on the variant of the session.
int32_t ChosenBehaviour(const std::array<QComboBox *, 2> &fans, const QComboBox &source33);

} // namespace ztm
