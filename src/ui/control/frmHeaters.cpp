#include "ui/control/frmHeaters.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "link/Heaters.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/SpinButton.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr SpinRange dutySpin{0, 100, 5};
constexpr SpinRange endSpin{0, 100};
constexpr std::array<SpinRange, 2> incrementSpins{{{1, 50}, {0, 50}}};
constexpr SpinRange intervalSpin{50, 10000, 50};
constexpr int largest16Bit = std::numeric_limits<int16_t>::max();

/// The whole number in a box, limited to 16 bits.
int16_t Limited16Bit(const QLineEdit &box) {
    return static_cast<int16_t>(std::clamp<int32_t>(
        ToInt32(NumberIn(box)), std::numeric_limits<int16_t>::min(), largest16Bit));
}

} // namespace

frmHeaters::frmHeaters() : Form(QStringLiteral("frmHeaters")) {
    setWindowTitle(tr("Heaters"));
    SetupUi();
    connect(cmdApply, &QPushButton::clicked, this, &frmHeaters::cmdApply_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmHeaters::cmdClose_Click);
    Form_Load();
}

void frmHeaters::SetupUi() {
    auto *frames = new QHBoxLayout;
    frames->addWidget(NewHeaterFrame(0));
    frames->addWidget(NewHeaterFrame(1));
    cmdApply = NewButton("cmdApply", tr("Apply"), this);
    cmdClose = NewButton("cmdClose", tr("Close"), this);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(frames);
    layout->addStretch();
    layout->addLayout(NewButtonRow({cmdApply, cmdClose}));
}

QGroupBox *frmHeaters::NewHeaterFrame(int heater) {
    auto *frame = new Frame(tr("Heater%1 Control").arg(heater + 1), this);
    frame->setObjectName(IndexedName("fraHeater", heater));
    HeaterControls &row = At(controls, heater);
    auto *layout = new QGridLayout(frame);
    const auto addRow = [&](int line, const QString &caption, const char *name, QLineEdit *&box,
                            SpinRange spin, double least, double most, const QString &unit) {
        box = AddNumberRow(*layout, line, caption, IndexedName(name, heater), spin).box;
        WatchRange(*box, least, most, unit);
    };
    const QString percent = QStringLiteral("%");
    const SpinRange increment = At(incrementSpins, heater);
    addRow(0, tr("PWM %"), "txtPWM", row.txtPWM, dutySpin, 0, FullDuty, percent);
    row.chkSWControl = new QCheckBox(tr("Software Control"), frame);
    row.chkSWControl->setObjectName(IndexedName("chkSWControl", heater));
    layout->addWidget(row.chkSWControl, 1, 0, 1, 2, Qt::AlignLeft);
    addRow(2, tr("Low %"), "txtFrom", row.txtFrom, endSpin, 0, FullDuty, percent);
    addRow(3, tr("High %"), "txtTo", row.txtTo, endSpin, 0, FullDuty, percent);
    addRow(4, tr("Increment %"), "txtIncrement", row.txtIncrement, increment, 0, FullDuty, percent);
    addRow(5, tr("Interval (ms)"), "txtInterval", row.txtInterval, intervalSpin, 0, largest16Bit,
           tr("ms"));
    layout->setColumnStretch(1, 1);
    return frame;
}

void frmHeaters::Form_Load() {
    HeatersDialogOpen = true;
    ReadHeaterDuty();
    for (size_t heater = 0; heater < controls.size(); ++heater) {
        const HeaterSettings &settings = Heaters[heater];
        const HeaterControls &row = controls[heater];
        ShowNumber(*row.txtPWM, settings.Pwm);
        row.chkSWControl->setChecked(settings.SoftwareControl);
        ShowNumber(*row.txtFrom, settings.LowPct);
        ShowNumber(*row.txtTo, settings.HighPct);
        ShowNumber(*row.txtIncrement, settings.IncrementPct);
        ShowNumber(*row.txtInterval, settings.IntervalMs);
    }
}

void frmHeaters::ShowHeaterDuty(int heater, int duty) {
    ShowNumber(*At(controls, heater).txtPWM, duty);
}

void frmHeaters::Store(size_t heater) {
    const HeaterControls &row = controls[heater];
    HeaterSettings &settings = Heaters[heater];
    settings.Pwm =
        static_cast<int32_t>(std::floor(std::clamp<double>(NumberIn(*row.txtPWM), 0, FullDuty)));
    settings.SoftwareControl = row.chkSWControl->isChecked();
    settings.StartPending = settings.SoftwareControl;
    settings.RampUp = settings.SoftwareControl;
    settings.LowPct = ToInt32(NumberIn(*row.txtFrom));
    settings.HighPct = ToInt32(NumberIn(*row.txtTo));
    settings.IncrementPct = Limited16Bit(*row.txtIncrement);
    settings.IntervalMs = Limited16Bit(*row.txtInterval);
}

void frmHeaters::cmdApply_Click() {
    for (size_t heater = 0; heater < controls.size(); ++heater) {
        Store(heater);
    }
    SetHeaterDuty(Heaters[0].Pwm, Heaters[1].Pwm);
}

void frmHeaters::cmdClose_Click() {
    Unload();
}

void frmHeaters::Form_Unload() {
    HeatersDialogOpen = false;
}

} // namespace ztm
