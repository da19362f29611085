#include "ui/control/frmManual.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "fan/LookupTable.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/Traffic.h"
#include "monitor/MonitorSettings.h"
#include "ui/instruments/ValueSlider.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QGridLayout>
#include <QLabel>

namespace ztm {
namespace {

constexpr std::array<int32_t, 2> speedRegisters{ManualSpeedRegister(0), ManualSpeedRegister(1)};

constexpr double slowestRpm = 75;
constexpr double fastestRpm = 15000;
constexpr double smallStepRpm = 50;
constexpr double largeStepRpm = 500;

constexpr std::array<double, 2> sliderLeftTwips{360, 1440};

constexpr char requester[] = "Manual RPM Mode"; // of its requests

} // namespace

frmManual::frmManual() : Form(QStringLiteral("frmManual")) {
    setWindowTitle(tr("Manual RPM Mode"));
    SetupUi();
    ConnectSignals();
    Form_Load();
}

void frmManual::SetupUi() {
    Label1 = Named(new QLabel(tr("Set required RPM values for Fan1, Fan2"), this), "Label1");
    Label1->setIndent(Twips(sliderLeftTwips[0], *this));
    auto *speeds = new QVBoxLayout;
    speeds->addSpacing(fontMetrics().height());
    speeds->addLayout(NewSpeedRows());
    speeds->addSpacing(fontMetrics().height());
    lblNote = Named(new QLabel(tr("The speeds are written to points 1 and 2 of the lookup table. "
                                  "75 RPM writes nothing."),
                               this),
                    "lblNote");
    lblNote->setWordWrap(true);
    speeds->addWidget(lblNote);
    speeds->addStretch();

    auto *layout = new QGridLayout(this);
    layout->addWidget(Label1, 0, 0, 1, 3);
    layout->addLayout(NewSliderRow(), 1, 0, 2, 1);
    layout->setColumnMinimumWidth(1, fontMetrics().height());
    layout->addLayout(speeds, 1, 2);
    cmdClose = NewButton("cmdClose", tr("Close"), this);
    layout->addWidget(cmdClose, 2, 2, Qt::AlignRight);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(1, 1);
    QMargins margins = layout->contentsMargins();
    margins.setLeft(0);
    layout->setContentsMargins(margins);
}

/// The sliders at their distances from the left edge of the window.
QLayout *frmManual::NewSliderRow() {
    auto *row = new QHBoxLayout;
    row->setSpacing(0);
    leftOfSliders = new QSpacerItem(Twips(sliderLeftTwips[0], *this), 0, QSizePolicy::Fixed);
    row->addSpacerItem(leftOfSliders);
    const QString captions[] = {tr("Fan1"), tr("Fan2")};
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        auto *slider = new ValueSlider(this);
        slider->setObjectName(IndexedName("sldFan", fan));
        slider->setToolTip(tr("Slide this to adjust the Fan Speed"));
        slider->SetCaption(captions[fan]);
        slider->SetMinimum(slowestRpm);
        slider->SetMaximum(fastestRpm);
        slider->SetSteps(smallStepRpm, largeStepRpm);
        slider->setFixedWidth(Twips(sliderLeftTwips[1], *this) - Twips(sliderLeftTwips[0], *this));
        row->addWidget(slider);
        sldFan[fan] = slider;
    }
    return row;
}

QLayout *frmManual::NewSpeedRows() {
    auto *rows = new QGridLayout;
    const QString captions[] = {tr("Fan1 Current Speed"), tr("Fan2 Current Speed")};
    for (size_t fan = 0; fan < lblFanSpeed.size(); ++fan) {
        const int row = static_cast<int>(fan);
        Label2[fan] = new QLabel(captions[fan], this);
        Label2[fan]->setObjectName(IndexedName("Label2", row));
        lblFanSpeed[fan] = new QLabel(QStringLiteral("0"), this);
        lblFanSpeed[fan]->setObjectName(IndexedName("lblFanSpeed", row));
        // The widest speed fits from the start, so that nothing moves while it changes.
        lblFanSpeed[fan]->setMinimumWidth(
            fontMetrics().horizontalAdvance(QStringLiteral("4915200 RPM")));
        rows->addWidget(Label2[fan], row, 0);
        rows->addWidget(lblFanSpeed[fan], row, 1);
    }
    rows->setColumnStretch(1, 1);
    return rows;
}

void frmManual::ConnectSignals() {
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        connect(sldFan[fan], &ValueSlider::ValueChanged, this, [this, fan] { sldFan_Change(fan); });
        connect(sldFan[fan], &ValueSlider::Released, this, &frmManual::WritePending);
    }
    connect(cmdClose, &QPushButton::clicked, this, &frmManual::cmdClose_Click);
}

void frmManual::Form_Load() {
    WritePending();
    if (HasOneFan()) {
        LayOutForOneFan();
    }
    const Requester manual(requester);
    ManualDialogOpen = true;
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        sldFan[fan]->SetValue(ReadRPM(speedRegisters[fan]));
    }
}

/// One slider, where the second would be.
void frmManual::LayOutForOneFan() {
    sldFan[1]->hide();
    lblFanSpeed[1]->hide();
    Label2[1]->hide();
    Label1->clear();
    Label1->hide(); // not even a blank line
    Label2[0]->setText(tr("Current Fan Speed"));
    lblNote->setText(
        tr("The speed is written to point 1 of the lookup table. 75 RPM writes nothing."));
    sldFan[0]->SetCaption(tr("Fan"));
    leftOfSliders->changeSize(Twips(sliderLeftTwips[1], *this), 0, QSizePolicy::Fixed);
    layout()->invalidate();
}

void frmManual::ShowFanSpeed(int fan, const QString &text) {
    At(lblFanSpeed, fan)->setText(text);
}

void frmManual::sldFan_Change(size_t fan) {
    writing[fan].pending = true;
    if (!writing[fan].writtenInTick || !sldFan[fan]->IsDragged()) {
        Write(fan);
    }
}

void frmManual::Write(size_t fan) {
    const Requester manual(requester);
    writing[fan] = {false, true};
    WriteRPM(speedRegisters[fan], ToInt32(sldFan[fan]->Value()));
}

void frmManual::WritePending() {
    for (size_t fan = 0; fan < writing.size(); ++fan) {
        if (writing[fan].pending) {
            Write(fan);
        }
    }
}

void frmManual::MonitorTicked() {
    for (Writing &state : writing) {
        state.writtenInTick = false;
    }
    WritePending();
}

void frmManual::cmdClose_Click() {
    close();
}

// Not in Form_Unload: after a failed request all windows are unloaded, and none may send more.
void frmManual::closeEvent(QCloseEvent *event) {
    WritePending();
    Form::closeEvent(event);
}

void frmManual::Form_Unload() {
    ManualDialogOpen = false;
}

} // namespace ztm
