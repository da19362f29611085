#include "ui/fan/frmThermTemp.h"

#include "common/Numbers.h"
#include "link/LinkState.h"
#include "link/Registers.h"
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

constexpr SpinRange limitRange{-55, 150};
constexpr SpinRange hysteresisRange{0, 15};
constexpr int32_t hysteresisBits = 0x0F;
constexpr int oneRemoteShift = 300; // twips

} // namespace

frmThermTemp::frmThermTemp() : Form(QStringLiteral("frmThermTemp")) {
    setWindowTitle(tr("THERM Temperature"));
    SetupUi();
    connect(cmdOK, &QPushButton::clicked, this, &frmThermTemp::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmThermTemp::cmdCancel_Click);
    Form_Load();
}

void frmThermTemp::SetupUi() {
    auto *limits = NewLimitsFrame();
    auto *control = NewControlFrame();
    cmdOK = NewButton("cmdOK", tr("OK"), this);
    cmdCancel = NewButton("cmdCancel", tr("Cancel"), this);
    auto *layout = new QGridLayout(this);
    layout->addWidget(limits, 0, 0);
    layout->addWidget(control, 0, 1);
    layout->addLayout(NewButtonRow({cmdOK, cmdCancel}), 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(0, 1);
}

QGroupBox *frmThermTemp::NewLimitsFrame() {
    auto *frame = Named(new Frame(tr("THERM Limits"), this), "Frame1");
    auto *layout = new QGridLayout(frame);
    const auto addRow = [&](int row, QLabel *label, const char *name, QLineEdit *&box) {
        auto *spinBox = NewSpinBox(box, QLatin1String(name), limitRange, frame);
        label->setBuddy(box);
        WatchRange(*box, lowestCelsius, highestCelsius, tr("°C"));
        layout->addWidget(label, row, 0);
        layout->addWidget(spinBox, row, 1, Qt::AlignLeft);
        return spinBox;
    };
    Label2 = Named(new QLabel(tr("Remote1"), frame), "Label2");
    Label3 = Named(new QLabel(tr("Remote2"), frame), "Label3");
    addRow(0, Named(new QLabel(tr("Local"), frame), "Label1"), "txtLocal", txtLocal);
    addRow(1, Label2, "txtR1", txtR1);
    spinR2 = addRow(2, Label3, "txtR2", txtR2);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(3, 1);
    return frame;
}

QGroupBox *frmThermTemp::NewControlFrame() {
    auto *frame = Named(new Frame(tr("Control"), this), "Frame2");
    chkBoost = Named(new QCheckBox(tr("Boost Disable"), frame), "chkBoost");
    auto *label = Named(new QLabel(tr("THERM Hysteresis"), frame), "Label4");
    auto *spinBox = NewSpinBox(txtHyst, QStringLiteral("txtHyst"), hysteresisRange, frame);
    label->setBuddy(txtHyst);
    WatchRange(*txtHyst, hysteresisRange.minimum, hysteresisRange.maximum, tr("°C"));
    auto *layout = new QGridLayout(frame);
    layout->addWidget(chkBoost, 0, 0, 1, 2, Qt::AlignLeft);
    layout->addWidget(label, 1, 0);
    layout->addWidget(spinBox, 1, 1, Qt::AlignLeft);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    return frame;
}

void frmThermTemp::Form_Load() {
    if (DeviceName == ZTM7710) {
        Label3->hide();
        spinR2->hide();
        QLayout &rows = *spinR2->parentWidget()->layout();
        rows.setContentsMargins(rows.contentsMargins() +
                                QMargins(0, Twips(oneRemoteShift, *this), 0, 0));
        Label2->setText(tr("Remote"));
    }
    ShowNumber(*txtLocal, CelsiusOfByte(ReadRegister(LocalThermLimit)));
    ShowNumber(*txtR1, CelsiusOfByte(ReadRegister(Remote1ThermLimit)));
    ShowNumber(*txtR2, CelsiusOfByte(ReadRegister(Remote2ThermLimit)));
    ShowNumber(*txtHyst, ReadRegister(ThermHysteresis) & hysteresisBits);
    chkBoost->setChecked((ReadRegister(Configuration2) & BoostDisableBit) != 0);
}

void frmThermTemp::ApplyTempChanges() {
    WriteRegister(LocalThermLimit, TemperatureByte(NumberIn(*txtLocal)));
    WriteRegister(Remote1ThermLimit, TemperatureByte(NumberIn(*txtR1)));
    WriteRegister(Remote2ThermLimit, TemperatureByte(NumberIn(*txtR2)));
    WriteRegister(ThermHysteresis, ToInt32(NumberIn(*txtHyst)) & hysteresisBits);
    WriteRegister(Configuration2,
                  WithBit(ReadRegister(Configuration2), BoostDisableBit, chkBoost->isChecked()));
}

void frmThermTemp::cmdOK_Click() {
    ApplyTempChanges();
    cmdCancel_Click();
}

void frmThermTemp::cmdCancel_Click() {
    Unload();
}

} // namespace ztm
