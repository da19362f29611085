#include "ui/fan/frmThermTemp.h"

#include "common/Numbers.h"
#include "fan/ThermFields.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/SpinButton.h"
#include "ui/kit/Twips.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace ztm {
namespace {

constexpr SpinRange limitSpin{-55, 150};
constexpr SpinRange hysteresisSpin{0, 15};
constexpr int oneRemoteShift = 300; // twips

/// Puts the unit behind a box, hidden with it.
void AddUnit(const NumberRow &row) {
    auto *unit = new QLabel(QObject::tr("°C"), row.spinBox);
    unit->setObjectName(row.box->objectName() + QStringLiteral("Unit"));
    unit->setIndent(unit->fontMetrics().averageCharWidth());
    row.spinBox->layout()->addWidget(unit);
}

constexpr char requester[] = "THERM Temperature"; // of its requests

} // namespace

frmThermTemp::frmThermTemp() : Dialog(QStringLiteral("frmThermTemp"), tr("THERM Temperature")) {
    SetupUi();
    Form_Load();
}

void frmThermTemp::SetupUi() {
    auto *limits = NewLimitsFrame();
    auto *control = NewControlFrame();
    auto *layout = new QGridLayout(this);
    layout->addWidget(limits, 0, 0);
    layout->addWidget(control, 0, 1);
    layout->addLayout(NewOkCancelRow(), 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(0, 1);
}

QGroupBox *frmThermTemp::NewLimitsFrame() {
    auto *frame = Named(new Frame(tr("THERM Limits"), this), "Frame1");
    auto *layout = new QGridLayout(frame);
    const auto addRow = [&](int row, const QString &caption, const char *labelName,
                            const char *name) {
        const NumberRow made = AddNumberRow(*layout, row, caption, QLatin1String(name), limitSpin);
        WatchRange(*made.box, lowestCelsius, highestCelsius, tr("°C"));
        Named(made.label, labelName);
        AddUnit(made);
        return made;
    };
    txtLocal = addRow(0, tr("Local"), "Label1", "txtLocal").box;
    const NumberRow remote1 = addRow(1, tr("Remote1"), "Label2", "txtR1");
    const NumberRow remote2 = addRow(2, tr("Remote2"), "Label3", "txtR2");
    txtR1 = remote1.box;
    txtR2 = remote2.box;
    Label2 = remote1.label;
    Label3 = remote2.label;
    spinR2 = remote2.spinBox;
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(3, 1);
    return frame;
}

QGroupBox *frmThermTemp::NewControlFrame() {
    auto *frame = Named(new Frame(tr("Control"), this), "Frame2");
    chkBoost = Named(new QCheckBox(tr("Boost Disable"), frame), "chkBoost");
    auto *layout = new QGridLayout(frame);
    layout->addWidget(chkBoost, 0, 0, 1, 2, Qt::AlignLeft);
    const NumberRow row =
        AddNumberRow(*layout, 1, tr("THERM Hysteresis"), QStringLiteral("txtHyst"), hysteresisSpin);
    Named(row.label, "Label4");
    AddUnit(row);
    txtHyst = row.box;
    WatchRange(*txtHyst, hysteresisSpin.minimum, hysteresisSpin.maximum, tr("°C"));
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    return frame;
}

std::array<QLineEdit *, 3> frmThermTemp::Limits() const {
    return {txtLocal, txtR1, txtR2};
}

void frmThermTemp::Form_Load() {
    const Requester load(requester);
    if (HasOneFan()) {
        Label3->hide();
        spinR2->hide();
        QLayout &rows = *spinR2->parentWidget()->layout();
        rows.setContentsMargins(rows.contentsMargins() +
                                QMargins(0, Twips(oneRemoteShift, *this), 0, 0));
        Label2->setText(tr("Remote"));
    }
    for (size_t channel = 0; channel < ThermLimits.size(); ++channel) {
        ShowNumber(*Limits()[channel], CelsiusOfByte(ReadRegister(ThermLimits[channel])));
    }
    ShowNumber(*txtHyst, ThermHysteresisField.In(ReadRegister(ThermHysteresis)));
    chkBoost->setChecked(BoostDisableField.In(ReadRegister(Configuration2)) != 0);
}

void frmThermTemp::ApplyTempChanges() {
    const Requester apply(requester);
    for (size_t channel = 0; channel < ThermLimits.size(); ++channel) {
        WriteRegister(ThermLimits[channel], TemperatureByte(NumberIn(*Limits()[channel])));
    }
    WriteRegister(ThermHysteresis, ThermHysteresisField.With(0, ToInt32(NumberIn(*txtHyst))));
    WriteField(BoostDisableField, chkBoost->isChecked());
}

bool frmThermTemp::Apply() {
    ApplyTempChanges();
    return true;
}

} // namespace ztm
