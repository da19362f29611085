#include "ui/fan/frmThermTimer.h"

#include "common/Numbers.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace ztm {
namespace {

// Configuration4: THERM events per channel in bits 0 to 2, the time window in bits 6 to 4.
constexpr int32_t localEventBit = 0x01;
constexpr int32_t remote1EventBit = 0x02;
constexpr int32_t remote2EventBit = 0x04;
constexpr int32_t windowBits = 0x70;
constexpr int windowShift = 4;
constexpr int32_t referenceBit = 0x80;

constexpr double largestPercent = 100;
constexpr int percentDecimals = 2;

/// The time windows, by their code.
const QStringList &Windows() {
    static const QStringList windows{QStringLiteral(".25 sec"), QStringLiteral(".5 sec"),
                                     QStringLiteral("1 sec"),   QStringLiteral("2 sec"),
                                     QStringLiteral("4 sec"),   QStringLiteral("8 sec")};
    return windows;
}

} // namespace

frmThermTimer::frmThermTimer() : Form(QStringLiteral("frmThermTimer")) {
    setWindowTitle(tr("THERM Timer"));
    SetupUi();
    connect(txtLimit, &QLineEdit::textChanged, this, &frmThermTimer::txtLimit_Change);
    connect(cmdOK, &QPushButton::clicked, this, &frmThermTimer::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmThermTimer::cmdCancel_Click);
    Form_Load();
}

void frmThermTimer::SetupUi() {
    auto *timer = NewTimerFrame();
    auto *events = NewEventsFrame();
    cmdOK = NewButton("cmdOK", tr("OK"), this);
    cmdCancel = NewButton("cmdCancel", tr("Cancel"), this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(timer);
    layout->addWidget(events);
    layout->addStretch();
    layout->addLayout(NewButtonRow({cmdOK, cmdCancel}));
}

QGroupBox *frmThermTimer::NewTimerFrame() {
    auto *frame = Named(new Frame(tr("Timer Control"), this), "Frame1");
    chkEnableTimer = Named(new QCheckBox(tr("Enable THERM Timer"), frame), "chkEnableTimer");
    cmbWindow = Named(new QComboBox(frame), "cmbWindow");
    cmbWindow->addItems(Windows());
    txtLimit = Named(new QLineEdit(frame), "txtLimit");
    txtLimit->setFixedWidth(cmbWindow->sizeHint().width());
    WatchRange(*txtLimit, 0, largestPercent, QStringLiteral("%"));
    chkEnRef = Named(new QCheckBox(tr("Enable external THERM reference input (pin 8)"), frame),
                     "chkEnRef");
    auto *window = Named(new QLabel(tr("Set THERM Time Window"), frame), "Label1");
    window->setBuddy(cmbWindow);
    auto *limit = Named(new QLabel(tr("Set THERM% Limit"), frame), "Label2");
    limit->setBuddy(txtLimit);
    auto *layout = new QGridLayout(frame);
    layout->addWidget(chkEnableTimer, 0, 0, 1, 2, Qt::AlignLeft);
    layout->addWidget(window, 1, 0);
    layout->addWidget(cmbWindow, 1, 1, Qt::AlignLeft);
    layout->addWidget(limit, 2, 0);
    layout->addWidget(txtLimit, 2, 1, Qt::AlignLeft);
    layout->addWidget(chkEnRef, 3, 0, 1, 2, Qt::AlignLeft);
    layout->setColumnStretch(1, 1);
    return frame;
}

QGroupBox *frmThermTimer::NewEventsFrame() {
    auto *frame = Named(new Frame(tr("THERM Events"), this), "Frame2");
    chkEnLocal = Named(new QCheckBox(tr("Enable Local THERM events"), frame), "chkEnLocal");
    chkEnR1 = Named(new QCheckBox(tr("Enable Remote1 THERM events"), frame), "chkEnR1");
    chkEnR2 = Named(new QCheckBox(tr("Enable Remote2 THERM events"), frame), "chkEnR2");
    auto *layout = new QVBoxLayout(frame);
    for (auto *box : {chkEnLocal, chkEnR1, chkEnR2}) {
        layout->addWidget(box, 0, Qt::AlignLeft);
    }
    return frame;
}

void frmThermTimer::Form_Load() {
    if (DeviceName == ZTM7710) {
        chkEnR2->hide();
        chkEnR1->setText(tr("Enable Remote THERM events"));
    }
    chkEnableTimer->setChecked((ReadRegister(Configuration1) & EnableTimerBit) != 0);
    const int32_t settings = ReadRegister(Configuration4);
    chkEnRef->setChecked((settings & referenceBit) != 0);
    const int code = (settings & windowBits) >> windowShift;
    cmbWindow->setCurrentIndex(std::min(code, cmbWindow->count() - 1));
    chkEnLocal->setChecked((settings & localEventBit) != 0);
    chkEnR1->setChecked((settings & remote1EventBit) != 0);
    chkEnR2->setChecked((settings & remote2EventBit) != 0);
    const double percent = PercentOfByte(ReadRegister(ThermPercentLimit));
    ShowNumber(*txtLimit, RoundToDecimals(percent, percentDecimals));
}

void frmThermTimer::txtLimit_Change() {
    if (NumberIn(*txtLimit) > largestPercent) {
        ShowNumber(*txtLimit, largestPercent);
    }
}

void frmThermTimer::ApplyTimerChanges() {
    WriteRegister(Configuration1, WithBit(ReadRegister(Configuration1), EnableTimerBit,
                                          chkEnableTimer->isChecked()));
    int32_t settings = ReadRegister(Configuration4);
    settings = WithBit(settings, referenceBit, chkEnRef->isChecked());
    settings = WithBit(settings, localEventBit, chkEnLocal->isChecked());
    settings = WithBit(settings, remote1EventBit, chkEnR1->isChecked());
    settings = WithBit(settings, remote2EventBit, chkEnR2->isChecked());
    settings = (settings & ~windowBits) | cmbWindow->currentIndex() << windowShift;
    WriteRegister(Configuration4, settings);
    WriteRegister(ThermPercentLimit, PercentByte(NumberIn(*txtLimit)));
}

void frmThermTimer::cmdOK_Click() {
    ApplyTimerChanges();
    cmdCancel_Click();
}

void frmThermTimer::cmdCancel_Click() {
    Unload();
}

} // namespace ztm
