#include "ui/fan/frmThermTimer.h"

#include "common/NumberText.h"
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
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace ztm {
namespace {

constexpr double largestPercent = 100;
constexpr int percentDecimals = 2;

constexpr char requester[] = "THERM Timer"; // of its requests

} // namespace

frmThermTimer::frmThermTimer() : Dialog(QStringLiteral("frmThermTimer"), tr("THERM Timer")) {
    SetupUi();
    connect(txtLimit, &QLineEdit::textChanged, this, &frmThermTimer::txtLimit_Change);
    Form_Load();
}

void frmThermTimer::SetupUi() {
    auto *timer = NewTimerFrame();
    auto *events = NewEventsFrame();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(timer);
    layout->addWidget(events);
    layout->addStretch();
    layout->addLayout(NewOkCancelRow());
}

QGroupBox *frmThermTimer::NewTimerFrame() {
    auto *frame = Named(new Frame(tr("Timer Control"), this), "Frame1");
    chkEnableTimer = Named(new QCheckBox(tr("Enable THERM Timer"), frame), "chkEnableTimer");
    cmbWindow = NewList(QStringLiteral("cmbWindow"), frame);
    for (const std::string_view window : ThermWindows) {
        cmbWindow->addItem(ToQString(window));
    }
    txtLimit = Named(new QLineEdit(frame), "txtLimit");
    txtLimit->setFixedWidth(cmbWindow->sizeHint().width());
    WatchRange(*txtLimit, 0, largestPercent, QStringLiteral("%"));
    chkEnRef = Named(new QCheckBox(tr("Enable external THERM reference input (pin 8)"), frame),
                     "chkEnRef");
    auto *layout = new QGridLayout(frame);
    layout->addWidget(chkEnableTimer, 0, 0, 1, 2, Qt::AlignLeft);
    Named(AddRow(*layout, 1, tr("Set THERM Time Window"), cmbWindow, Qt::AlignLeft), "Label1");
    Named(AddRow(*layout, 2, tr("Set THERM% Limit"), txtLimit, Qt::AlignLeft), "Label2");
    layout->addWidget(chkEnRef, 3, 0, 1, 2, Qt::AlignLeft);
    layout->setColumnStretch(1, 1);
    return frame;
}

QGroupBox *frmThermTimer::NewEventsFrame() {
    auto *frame = Named(new Frame(tr("THERM Events"), this), "Frame2");
    chkEvents = {
        Named(new QCheckBox(tr("Enable Local THERM events"), frame), "chkEnLocal"),
        Named(new QCheckBox(tr("Enable Remote1 THERM events"), frame), "chkEnR1"),
        Named(new QCheckBox(tr("Enable Remote2 THERM events"), frame), "chkEnR2"),
    };
    auto *layout = new QVBoxLayout(frame);
    for (auto *box : chkEvents) {
        layout->addWidget(box, 0, Qt::AlignLeft);
    }
    return frame;
}

void frmThermTimer::Form_Load() {
    const Requester load(requester);
    if (HasOneFan()) {
        chkEvents[2]->hide();
        chkEvents[1]->setText(tr("Enable Remote THERM events"));
    }
    chkEnableTimer->setChecked(EnableThermTimerField.In(ReadRegister(Configuration1)) != 0);
    const int32_t settings = ReadRegister(Configuration4);
    chkEnRef->setChecked(ThermReferenceField.In(settings) != 0);
    cmbWindow->setCurrentIndex(std::min(ThermWindowField.In(settings), cmbWindow->count() - 1));
    for (size_t channel = 0; channel < chkEvents.size(); ++channel) {
        chkEvents[channel]->setChecked(ThermEventFields[channel].In(settings) != 0);
    }
    const double percent = PercentOfByte(ReadRegister(ThermPercentLimit));
    ShowNumber(*txtLimit, RoundToDecimals(percent, percentDecimals));
}

void frmThermTimer::txtLimit_Change() {
    if (NumberIn(*txtLimit) > largestPercent) {
        CorrectText(*txtLimit, ToQString(NumberText(largestPercent)));
    }
}

void frmThermTimer::ApplyTimerChanges() {
    const Requester apply(requester);
    WriteField(EnableThermTimerField, chkEnableTimer->isChecked());
    int32_t settings = ReadRegister(Configuration4);
    settings = ThermReferenceField.With(settings, chkEnRef->isChecked());
    for (size_t channel = 0; channel < chkEvents.size(); ++channel) {
        settings = ThermEventFields[channel].With(settings, chkEvents[channel]->isChecked());
    }
    settings = ThermWindowField.With(settings, cmbWindow->currentIndex());
    WriteRegister(Configuration4, settings);
    WriteRegister(ThermPercentLimit, PercentByte(NumberIn(*txtLimit)));
}

bool frmThermTimer::Apply() {
    ApplyTimerChanges();
    return true;
}

} // namespace ztm
