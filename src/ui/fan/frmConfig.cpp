#include "ui/fan/frmConfig.h"

#include "common/Clock.h"
#include "fan/FanCodes.h"
#include "fan/FanOutlook.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "ui/fan/ControlSourceBoxes.h"
#include "ui/fan/FanTexts.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QTabWidget>

namespace ztm {
namespace {

constexpr int oneFanFrameLeft = 2040; // twips

template <class List>
QComboBox *NewBox(const QString &name, const List &items, QWidget *page) {
    auto *box = NewList(name, page);
    for (const std::string_view item : items) {
        box->addItem(ToQString(item));
    }
    return box;
}

/// The value of a register that holds one code per fan and nothing else.
template <class Code>
int32_t BothFans(const std::array<RegisterField, 2> &fields,
                 const std::array<QComboBox *, 2> &boxes, Code code) {
    return fields[1].With(fields[0].With(0, code(TextOf(*boxes[0]))), code(TextOf(*boxes[1])));
}

/// Shows a number of poles, as an extra item if the list does not have it.
void ShowPoles(QComboBox &box, int32_t code) {
    const QString text = ToQString(PolesText(code));
    if (box.findText(text) < 0) {
        box.addItem(text);
    }
    box.setCurrentText(text);
}

constexpr char requester[] = "Fan Configuration"; // of its requests

} // namespace

frmConfig::frmConfig() : Dialog(QStringLiteral("frmConfig"), tr("Fan Configuration")) {
    SetupUi();
    connect(SSTab1, &QTabWidget::currentChanged, this, &frmConfig::SSTab1_Click);
    Form_Load();
    for (auto *option : {optAuto, opt8Points}) {
        connect(option, &QRadioButton::toggled, this, &frmConfig::ShowWarning);
    }
    for (auto *box : {cmbSource[0], cmbSource[1], cmbSource33}) {
        connect(box, &QComboBox::currentTextChanged, this, &frmConfig::ShowWarning);
    }
    ShowWarning();
}

void frmConfig::SetupUi() {
    SSTab1 = Named(new QTabWidget(this), "SSTab1");
    SSTab1->addTab(NewGeneralPage(), tr("General"));
    SSTab1->addTab(NewFanPage(0), tr("Fan1"));
    SSTab1->addTab(NewFanPage(1), tr("Fan2"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(NewOkApplyCancelRow());
}

QWidget *frmConfig::NewGeneralPage() {
    auto *page = new QWidget;
    Frame5 = Named(new Frame(tr("Control Type"), page), "Frame5");
    optAuto =
        NewOption(QStringLiteral("optAuto"), tr("Automatic Control via Lookup Table"), Frame5);
    optManual = NewOption(QStringLiteral("optManual"), tr("Manual Control"), Frame5);
    Frame1 = Named(new Frame(tr("Lookup Table"), page), "Frame1");
    opt4Points = NewOption(QStringLiteral("opt4Points"), tr("Fan1:4-points Fan2:4-Points"), Frame1);
    opt8Points = NewOption(QStringLiteral("opt8Points"), tr("8-Points for both fans"), Frame1);
    const auto fill = [](QGroupBox *frame, QRadioButton *first, QRadioButton *second) {
        auto *layout = new QVBoxLayout(frame);
        layout->addWidget(first, 0, Qt::AlignLeft);
        layout->addWidget(second, 0, Qt::AlignLeft);
    };
    fill(Frame5, optAuto, optManual);
    fill(Frame1, opt4Points, opt8Points);
    lblWarning = Named(new QLabel(page), "lblWarning");
    lblWarning->setTextFormat(Qt::PlainText);
    lblWarning->setWordWrap(true);
    auto *frames = new QHBoxLayout;
    frames->addWidget(Frame5, 0, Qt::AlignTop);
    frames->addWidget(Frame1, 0, Qt::AlignTop);
    frames->addStretch();
    auto *layout = new QVBoxLayout(page);
    layout->addLayout(frames);
    layout->addWidget(lblWarning);
    layout->addStretch();
    return page;
}

QWidget *frmConfig::NewFanPage(size_t fan) {
    const int index = static_cast<int>(fan);
    auto *page = new QWidget;
    cmbPoles[fan] = NewBox(IndexedName("cmbPoles", index), FanPoles, page);
    cmbSource[fan] = NewControlSourceBox(IndexedName("cmbSource", index), page);
    if (fan == 0) {
        cmbSource33 = NewControlSource33Box(tr("Control Source"), page);
    }
    cmbRPMResponse[fan] = NewBox(IndexedName("cmbRPMResponse", index), FanResponses, page);
    cmbRamp[fan] = NewBox(IndexedName("cmbRamp", index), RampRates, page);
    auto *layout = new QGridLayout(page);
    int row = 0;
    for (const auto &[caption, box] : {std::pair{tr("No. of Poles"), cmbPoles[fan]},
                                       {tr("Control Source"), cmbSource[fan]},
                                       {tr("RPM Mode Response"), cmbRPMResponse[fan]},
                                       {tr("Acoustic Ramp Rate"), cmbRamp[fan]}}) {
        AddRow(*layout, row, caption, box);
        ++row;
    }
    if (fan == 0) {
        layout->addWidget(cmbSource33, 1, 1);
    }
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(row, 1);
    return page;
}

void frmConfig::LayoutOneFan() {
    SSTab1->setTabVisible(2, false);
    SSTab1->setTabText(1, tr("Fan"));
    Frame1->hide();
    QLayout &page = *Frame5->parentWidget()->layout();
    const int left = Twips(oneFanFrameLeft, *this) - page.contentsMargins().left();
    page.itemAt(0)->layout()->setContentsMargins(left, 0, 0, 0);
    cmbSource[0]->hide();
    cmbSource33->show();
}

void frmConfig::Form_Load() {
    const Requester load(requester);
    if (HasOneFan()) {
        LayoutOneFan();
    }
    const bool automatic = ControlTypeField.In(ReadRegister(Configuration1)) != 0;
    (automatic ? optAuto : optManual)->setChecked(true);
    const bool eightPoints = TableLayoutField.In(ReadRegister(Configuration2)) != 0;
    (eightPoints ? opt8Points : opt4Points)->setChecked(true);
    const int32_t poles = ReadRegister(Configuration3);
    const int32_t response = ReadRegister(FanResponse);
    ShowControlSources(ReadRegister(FanBehaviour), cmbSource, *cmbSource33);
    const int32_t ramp = ReadRegister(EnhanceAcoustics);
    for (size_t fan = 0; fan < cmbPoles.size(); ++fan) {
        ShowPoles(*cmbPoles[fan], FanPolesFields[fan].In(poles));
        cmbRPMResponse[fan]->setCurrentIndex(FanResponseFields[fan].In(response));
        cmbRamp[fan]->setCurrentIndex(RampRateFields[fan].In(ramp));
    }
}

std::vector<QComboBox *> frmConfig::BoxesInTurn() const {
    if (HasOneFan()) {
        return {cmbPoles[0], cmbRPMResponse[0], cmbSource33, cmbRamp[0]};
    }
    std::vector<QComboBox *> boxes;
    for (size_t fan = 0; fan < cmbPoles.size(); ++fan) {
        boxes.insert(boxes.end(),
                     {cmbPoles[fan], cmbSource[fan], cmbRPMResponse[fan], cmbRamp[fan]});
    }
    return boxes;
}

/// On a change of tab the focus goes through the boxes and ends on OK.
void frmConfig::SSTab1_Click() {
    for (QComboBox *box : BoxesInTurn()) {
        box->setFocus();
    }
    OkButton().setFocus();
}

/// What the lookup table would make the fans do, when they have been under manual control.
QString frmConfig::Warning() const {
    if (!optAuto->isChecked() || !IsManualSeen()) {
        return {};
    }
    const auto points = SeenPoints();
    if (!points) {
        return tr("Lookup table not read in this session: a fan below its first point may stop.");
    }
    return AsSentence(OutlookTexts({.Points = *points,
                                    .IsOneTable = HasOneFan() || opt8Points->isChecked(),
                                    .IsLinear = IsLinearSeen(),
                                    .Behaviour = ChosenBehaviour(cmbSource, *cmbSource33)}));
}

void frmConfig::ShowWarning() {
    lblWarning->setText(Warning());
}

void frmConfig::ShowMeasured() {
    constexpr double shownEverySeconds = 0.5;
    const double now = RunningSeconds();
    if (now - lastShown >= shownEverySeconds) {
        lastShown = now;
        ShowWarning();
    }
}

bool frmConfig::Apply() {
    const Requester apply(requester);
    WriteField(ControlTypeField, optAuto->isChecked());
    emit ControlTypeApplied(optAuto->isChecked());
    WriteField(TableLayoutField, opt8Points->isChecked());
    WriteRegister(Configuration3, BothFans(FanPolesFields, cmbPoles, PolesCode));
    WriteRegister(FanResponse, BothFans(FanResponseFields, cmbRPMResponse, SetFanResponse));
    WriteRegister(EnhanceAcoustics, BothFans(RampRateFields, cmbRamp, SetRampRate));
    WriteRegister(FanBehaviour, ChosenBehaviour(cmbSource, *cmbSource33));
    ShowWarning();
    return true;
}

} // namespace ztm
