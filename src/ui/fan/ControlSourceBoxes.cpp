#include "ui/fan/ControlSourceBoxes.h"

#include "fan/FanCodes.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QComboBox>

namespace ztm {
namespace {

constexpr int32_t sourceBits = 0x03;
constexpr int sourceShift = 2; // of fan 2's bits

std::string TextOf(const QComboBox &box) {
    return box.currentText().toStdString();
}

} // namespace

QComboBox *NewControlSourceBox(const QString &name, QWidget *parent) {
    auto *box = new QComboBox(parent);
    box->setObjectName(name);
    for (const std::string_view source : ControlSources) {
        box->addItem(ToQString(source));
    }
    return box;
}

QComboBox *NewControlSource33Box(const QString &accessibleName, QWidget *parent) {
    auto *box = Named(new QComboBox(parent), "cmbSource33");
    box->setAccessibleName(accessibleName);
    box->hide();
    for (const ControlSource33 &source : ControlSources33) {
        box->addItem(ToQString(source.Text));
    }
    return box;
}

void ShowControlSources(int32_t behaviour, const std::array<QComboBox *, 2> &fans,
                        QComboBox &source33) {
    const int32_t first = behaviour & sourceBits;
    source33.setCurrentIndex(static_cast<int>(ControlSource33Item(first)));
    fans[0]->setCurrentIndex(first);
    fans[1]->setCurrentIndex(behaviour >> sourceShift & sourceBits);
}

int32_t ChosenBehaviour(const std::array<QComboBox *, 2> &fans, const QComboBox &source33) {
    if (DeviceName == ZTM7710) {
        return ControlSource33Code(TextOf(source33));
    }
    return ControlSourceCode(TextOf(*fans[1])) << sourceShift | ControlSourceCode(TextOf(*fans[0]));
}

} // namespace ztm
