#include "ui/control/frmHeaters.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "link/Heaters.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/SpinButton.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

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

constexpr char requester[] = "Heaters"; // of its requests

} // namespace

frmHeaters::frmHeaters() : Dialog(QStringLiteral("frmHeaters"), tr("Heaters")) {
    SetupUi();
    ConnectSignals();
    Form_Load();
}

void frmHeaters::SetupUi() {
    auto *frames = new QHBoxLayout;
    frames->addWidget(NewHeaterFrame(0));
    frames->addWidget(NewHeaterFrame(1));
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(frames);
    layout->addStretch();
    layout->addLayout(NewApplyCloseRow());
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

void frmHeaters::ConnectSignals() {
    for (size_t heater = 0; heater < controls.size(); ++heater) {
        const HeaterControls &row = controls[heater];
        connect(row.txtPWM, &QLineEdit::textChanged, this, &frmHeaters::ShowHeldDuties);
        row.txtPWM->installEventFilter(this);
        connect(row.chkSWControl, &QCheckBox::toggled, this,
                [this, heater] { ShowRampState(heater); });
    }
}

void frmHeaters::Form_Load() {
    const Requester heaters(requester);
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
        ShowRampState(heater);
    }
}

void frmHeaters::ShowHeaterDuty(int heater, int duty) {
    At(controls, heater).heldDuty = duty;
    ShowHeldDuties();
}

void frmHeaters::ShowHeldDuties() {
    for (HeaterControls &row : controls) {
        const bool isTyping = row.txtPWM->hasFocus() && row.txtPWM->isModified();
        if (row.heldDuty && !isTyping) {
            ShowNumber(*row.txtPWM, *std::exchange(row.heldDuty, {}));
            if (row.txtPWM->hasFocus()) {
                row.txtPWM->selectAll(); // a digit typed next replaces it
            }
        }
    }
}

/// Escape first gives up what was typed while the ramp went on.
void frmHeaters::EscapePressed() {
    bool isHeld = false;
    for (const HeaterControls &row : controls) {
        if (row.heldDuty) {
            row.txtPWM->setModified(false);
            isHeld = true;
        }
    }
    isHeld ? ShowHeldDuties() : Dialog::EscapePressed();
}

bool frmHeaters::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut) {
        ShowHeldDuties();
    }
    return Dialog::eventFilter(watched, event);
}

void frmHeaters::ShowRampState(size_t heater) {
    const HeaterControls &row = controls[heater];
    QPalette look;
    if (!row.chkSWControl->isChecked()) {
        for (const auto role : {QPalette::Base, QPalette::Text}) {
            look.setColor(role, palette().color(QPalette::Disabled, role));
        }
    }
    // Not of the boxes themselves, which may be marked.
    for (QLineEdit *box : {row.txtFrom, row.txtTo, row.txtIncrement, row.txtInterval}) {
        box->parentWidget()->setPalette(look);
    }
}

void frmHeaters::Store(size_t heater) {
    HeaterControls &row = controls[heater];
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
    row.txtPWM->setModified(false);
    row.heldDuty.reset(); // sent before this one
}

bool frmHeaters::Apply() {
    for (size_t heater = 0; heater < controls.size(); ++heater) {
        Store(heater);
    }
    const Requester heaters(requester);
    SetHeaterDuty(Heaters[0].Pwm, Heaters[1].Pwm);
    return true;
}

void frmHeaters::Form_Unload() {
    HeatersDialogOpen = false;
}

} // namespace ztm
