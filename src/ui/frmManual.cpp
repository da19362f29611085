#include "ui/frmManual.h"

#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "monitor/MonitorSettings.h"
#include "ui/Controls.h"
#include "ui/Text.h"
#include "ui/Twips.h"
#include "ui/instruments/ValueSlider.h"

#include <QGridLayout>
#include <QLabel>

#include <cmath>

namespace ztm {
namespace {

/// The high bytes of the first two speed points of the lookup table.
constexpr std::array<int32_t, 2> speedRegisters{0x2B, 0x2D};

constexpr double slowestRpm = 75;
constexpr double fastestRpm = 15000;
constexpr int smallStepRpm = 50;
constexpr int largeStepRpm = 500;

// In twips.
constexpr std::array<int, 2> sliderLefts{360, 1440};
constexpr int sliderWidth = sliderLefts[1] - sliderLefts[0];
constexpr int sliderHeight = 3600;

} // namespace

frmManual::frmManual() : Form(QStringLiteral("frmManual")) {
    setWindowTitle(tr("Manual RPM Mode"));
    SetupUi();
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        connect(sldFan[fan], &ValueSlider::ValueChanged, this, [this, fan] { sldFan_Change(fan); });
        connect(sldFan[fan], &ValueSlider::Released, this, [this, fan] { WriteSpeed(fan); });
    }
    connect(cmdClose, &QPushButton::clicked, this, &frmManual::cmdClose_Click);
    Form_Load();
}

void frmManual::SetupUi() {
    Label1 = Named(new QLabel(tr("Set required RPM values for Fan1, Fan2"), this), "Label1");
    auto *sliders = NewSliders();
    auto *speeds = NewSpeeds();
    cmdClose = NewButton("cmdClose", tr("Close"), this);
    // The sliders' places count from the window's left edge.
    auto *layout = new QGridLayout(this);
    QMargins margins = layout->contentsMargins();
    Label1->setIndent(margins.left());
    margins.setLeft(0);
    layout->setContentsMargins(margins);
    layout->addWidget(Label1, 0, 0, 1, 2);
    layout->addWidget(sliders, 1, 0, 2, 1);
    layout->addLayout(speeds, 1, 1);
    layout->addWidget(cmdClose, 2, 1, Qt::AlignRight | Qt::AlignBottom);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
}

QWidget *frmManual::NewSliders() {
    auto *panel = new QWidget(this);
    auto *layout = new QHBoxLayout(panel);
    layout->setContentsMargins(Twips(sliderLefts[0], *this), 0, 0, 0);
    layout->setSpacing(0);
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        const int index = static_cast<int>(fan);
        sldFan[fan] = new ValueSlider(panel);
        sldFan[fan]->setObjectName(IndexedName("sldFan", index));
        sldFan[fan]->SetCaption(tr("Fan%1").arg(index + 1));
        sldFan[fan]->setToolTip(tr("Slide this to adjust the Fan Speed"));
        sldFan[fan]->SetMaximum(fastestRpm);
        sldFan[fan]->SetMinimum(slowestRpm);
        sldFan[fan]->SetSteps(smallStepRpm, largeStepRpm);
        sldFan[fan]->setFixedWidth(Twips(sliderWidth, *this));
        sldFan[fan]->setMinimumHeight(Twips(sliderHeight, *this));
        layout->addWidget(sldFan[fan]);
    }
    return panel;
}

QLayout *frmManual::NewSpeeds() {
    auto *layout = new QVBoxLayout;
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        const int index = static_cast<int>(fan);
        Label2[fan] = new QLabel(tr("Fan%1 Current Speed").arg(index + 1), this);
        Label2[fan]->setObjectName(IndexedName("Label2", index));
        lblFanSpeed[fan] = new QLabel(QStringLiteral("0"), this);
        lblFanSpeed[fan]->setObjectName(IndexedName("lblFanSpeed", index));
        Label2[fan]->setBuddy(lblFanSpeed[fan]);
        layout->addWidget(Label2[fan]);
        layout->addWidget(lblFanSpeed[fan]);
        layout->addSpacing(Label2[fan]->fontMetrics().height());
    }
    layout->addStretch();
    return layout;
}

void frmManual::Form_Load() {
    if (DeviceName == ZTM7710) {
        sldFan[1]->hide();
        lblFanSpeed[1]->hide();
        Label2[1]->hide();
        Label1->clear();
        Label2[0]->setText(tr("Current Fan Speed"));
        sldFan[0]->SetCaption(tr("Fan"));
        sldFan[0]->parentWidget()->layout()->setContentsMargins(Twips(sliderLefts[1], *this), 0, 0,
                                                                0);
    }
    ManualDialogOpen = true;
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        sldFan[fan]->SetValue(ReadRPM(speedRegisters[fan]));
        moved[fan] = false;
    }
}

void frmManual::ShowFanSpeed(int fan, const QString &text) {
    lblFanSpeed[static_cast<size_t>(fan)]->setText(text);
}

void frmManual::sldFan_Change(size_t fan) {
    moved[fan] = true;
    if (!written[fan]) {
        WriteSpeed(fan);
    }
}

void frmManual::WriteSpeed(size_t fan) {
    if (moved[fan]) {
        moved[fan] = false;
        written[fan] = true;
        WriteRPM(speedRegisters[fan], static_cast<int32_t>(std::lround(sldFan[fan]->Value())));
    }
}

void frmManual::WriteMoved() {
    written = {};
    for (size_t fan = 0; fan < sldFan.size(); ++fan) {
        WriteSpeed(fan);
    }
}

void frmManual::cmdClose_Click() {
    Unload();
}

void frmManual::Form_Unload() {
    ManualDialogOpen = false;
}

} // namespace ztm
