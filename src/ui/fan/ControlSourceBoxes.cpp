#include "ui/fan/ControlSourceBoxes.h"

#include "fan/ControlSources.h"
#include "link/LinkState.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QComboBox>

namespace ztm {
namespace {

void AddSources(QComboBox &box, std::span<const ControlSource> sources) {
    for (const ControlSource &source : sources) {
        box.addItem(ToQString(source.Text));
    }
}

void ShowSource(QComboBox &box, std::span<const ControlSource> sources, int32_t code) {
    box.setCurrentIndex(static_cast<int>(PositionOf(sources, code)));
}

} // namespace

QComboBox *NewControlSourceBox(const QString &name, QWidget *parent) {
    auto *box = NewList(name, parent);
    AddSources(*box, ControlSources);
    return box;
}

QComboBox *NewControlSource33Box(const QString &accessibleName, QWidget *parent) {
    auto *box = NewList(QStringLiteral("cmbSource33"), parent);
    box->setAccessibleName(accessibleName);
    box->hide();
    AddSources(*box, OneRemoteControlSources);
    return box;
}

void ShowControlSources(int32_t behaviour, const std::array<QComboBox *, 2> &fans,
                        QComboBox &source33) {
    ShowSource(source33, OneRemoteControlSources, ControlSourceFields[0].In(behaviour));
    for (size_t fan = 0; fan < fans.size(); ++fan) {
        ShowSource(*fans[fan], ControlSources, ControlSourceFields[fan].In(behaviour));
    }
}

int32_t ChosenBehaviour(const std::array<QComboBox *, 2> &fans, const QComboBox &source33) {
    const auto &[first, second] = ControlSourceFields;
    if (HasOneFan()) {
        return first.With(0, CodeOf(OneRemoteControlSources, TextOf(source33)));
    }
    return second.With(first.With(0, ControlSourceCode(TextOf(*fans[0]))),
                       ControlSourceCode(TextOf(*fans[1])));
}

} // namespace ztm
