#include "common/At.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "ui/fan/ControlSourceBoxes.h"
#include "ui/fan/frmAutoControl.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>

#include <algorithm>
#include <cmath>

// What is edited in the window, as it is applied, pasted, taken back and compared.

namespace ztm {

SpeedPoints frmAutoControl::Points() const {
    return PointsInUse(SeenPoints());
}

FanPlan frmAutoControl::Plan() const {
    return {.Points = AsWritten(Points(), SeenPoints()),
            .IsOneTable = EightPointMode,
            .IsLinear = optLinear->isChecked(),
            .Behaviour = ChosenBehaviour(cmbControl, *cmbSource33)};
}

/// Both tables, because the fan configuration may select the other one at any time.
QVariantList frmAutoControl::State() const {
    QVariantList state{optLinear->isChecked(), ChosenBehaviour(cmbControl, *cmbSource33)};
    for (const LookupTable *table : {&EightPointTable, &FourPointTable}) {
        for (const LookupPoint &point : *table) {
            state << point.Temperature << static_cast<int>(point.RPM);
        }
    }
    return state;
}

/// Selects the first point that becomes another.
void frmAutoControl::Restore(const QVariantList &state) {
    auto value = state.begin();
    const auto next = [&value] { return (value++)->toInt(); };
    const LookupTable before = TableInUse();
    PutBack();
    (next() != 0 ? optLinear : optDiscrete)->setChecked(true);
    ShowControlSources(next(), cmbControl, *cmbSource33);
    for (LookupTable *table : {&EightPointTable, &FourPointTable}) {
        for (LookupPoint &point : *table) {
            point.Temperature = next();
            point.RPM = static_cast<int16_t>(next());
        }
    }
    const auto changed = std::mismatch(before.begin(), before.end(), TableInUse().begin()).first;
    if (changed != before.end()) {
        SelectedPoint = static_cast<int>(changed - before.begin());
    }
    ShowSelectedPoint();
    At(optControl, SelectedPoint)->setChecked(true);
}

QStringList frmAutoControl::EnterPoints(const std::vector<SpeedPoint> &points) {
    PutBack();
    int limited = 0;
    for (size_t point = 0; point < points.size(); ++point) {
        const SpeedPoint &entered = points[point];
        TableInUse()[point] = {ToInt32(entered.Celsius), PointRpm(entered.Rpm)};
        limited += std::abs(entered.Rpm - TableInUse()[point].RPM) > 1;
    }
    ShowSelectedPoint();
    return limited == 0 ? QStringList()
                        : QStringList(tr("%1 limited to %2 RPM").arg(limited).arg(LargestPointRpm));
}

void frmAutoControl::TellResult(const QString &text) {
    lblFileResult->setText(text);
    lblFileResult->show();
}

QStringList frmAutoControl::OtherChanges() const {
    QStringList changes;
    if (optLinear->isChecked() != IsLinearSeen()) {
        changes += tr("transition changed");
    }
    if (ChosenBehaviour(cmbControl, *cmbSource33) != SeenBehaviour()) {
        changes += tr("control source changed");
    }
    return changes;
}

} // namespace ztm
