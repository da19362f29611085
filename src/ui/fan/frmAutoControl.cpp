#include "ui/fan/frmAutoControl.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "fan/FanCodes.h"
#include "fan/LookupGraphScale.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "monitor/Events.h"
#include "ui/fan/ControlSourceBoxes.h"
#include "ui/fan/FanTexts.h"
#include "ui/fan/LookupGraph.h"
#include "ui/fan/LookupGraphPanel.h"
#include "ui/instruments/ValueSlider.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/SpinButton.h"
#include "ui/kit/Text.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr SpinRange temperatureSpin{0, 150};
constexpr SpinRange rpmSpin{0, 15000, 50};
constexpr int lowestRange = 1000;
constexpr int highestRange = 20000;
constexpr int smallRangeStep = 100;
constexpr int largeRangeStep = 1000;

LookupPoint &PointAt(int point) {
    return At(TableInUse(), point);
}

constexpr char requester[] = "Auto-Control Response"; // of its requests

} // namespace

frmAutoControl::frmAutoControl()
    : PointsDialog(QStringLiteral("frmAutoControl"), tr("Auto-Control Response")) {
    SetupUi();
    ConnectSignals();
    Form_Load();
    StartEditing();
}

void frmAutoControl::SetupUi() {
    graphPanel = new LookupGraphPanel(this);
    pctGraph = &graphPanel->Graph();
    sldRange = Named(new ValueSlider(this), "sldRange");
    sldRange->SetCaption(tr("Range"));
    sldRange->SetMaximum(highestRange);
    sldRange->SetMinimum(lowestRange);
    sldRange->SetSteps(smallRangeStep, largeRangeStep);
    sldRange->setMinimumWidth(sldRange->sizeHint().width()); // its numbers in full size
    auto *settings = new QVBoxLayout;
    settings->addWidget(NewPointFrame());
    settings->addWidget(NewSourceFrame());
    settings->addWidget(NewTransitionFrame());
    settings->addStretch();
    auto *layout = new QGridLayout(this);
    layout->addWidget(graphPanel, 0, 0);
    layout->addWidget(sldRange, 0, 1);
    layout->addLayout(settings, 0, 2);
    auto *buttons = new QHBoxLayout;
    AddPointButtons(*buttons);
    layout->addLayout(NewLines(), 1, 0, 1, 3);
    buttons->addLayout(NewOkApplyCancelRow());
    layout->addLayout(buttons, 2, 0, 1, 3);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(0, 1);
}

QLayout *frmAutoControl::NewLines() {
    lblOperatingPoint = Named(new QLabel(this), "lblOperatingPoint");
    lblOperatingPoint->setWordWrap(true);
    lblFileResult = NewResultLabel(this);
    auto *lines = new QVBoxLayout;
    lines->addWidget(lblOperatingPoint);
    AddLines(*lines);
    lines->addWidget(lblFileResult);
    lblFileResult->hide();
    return lines;
}

QGroupBox *frmAutoControl::NewSourceFrame() {
    auto *frame = Named(new Frame(tr("Fan Control Source"), this), "Frame2");
    auto *layout = new QGridLayout(frame);
    cmbControl[0] = NewControlSourceBox(QStringLiteral("cmbControl(0)"), frame);
    cmbControl[1] = NewControlSourceBox(QStringLiteral("cmbControl(1)"), frame);
    Label3 = Named(AddRow(*layout, 0, tr("Fan1"), cmbControl[0]), "Label3");
    Label4 = Named(AddRow(*layout, 1, tr("Fan2"), cmbControl[1]), "Label4");
    cmbSource33 = NewControlSource33Box(tr("Fan Control Source"), frame);
    layout->addWidget(cmbSource33, 0, 1);
    layout->setColumnStretch(1, 1);
    return frame;
}

QGroupBox *frmAutoControl::NewTransitionFrame() {
    auto *frame = Named(new Frame(tr("Transition Type"), this), "Frame3");
    optDiscrete = NewOption(QStringLiteral("optDiscrete"), tr("Discrete"), frame);
    optLinear = NewOption(QStringLiteral("optLinear"), tr("Linear"), frame);
    auto *layout = new QHBoxLayout(frame);
    layout->addWidget(optDiscrete);
    layout->addWidget(optLinear);
    layout->addStretch();
    return frame;
}

QGroupBox *frmAutoControl::NewPointFrame() {
    auto *frame = Named(new Frame(tr("Select Look-Up Point"), this), "Frame1");
    auto *points = new QGridLayout;
    for (int point = 0; point < LookupPoints; ++point) {
        auto *option =
            NewOption(IndexedName("optControl", point), QString::number(point + 1), frame);
        At(optControl, point) = option;
        points->addWidget(option, point / PointsPerFan, point % PointsPerFan, Qt::AlignLeft);
    }
    optControl[0]->setChecked(true);
    auto *layout = new QGridLayout(frame);
    layout->addLayout(points, 0, 0, 1, 2);
    const NumberRow temperature =
        AddNumberRow(*layout, 1, tr("Temperature"), QStringLiteral("txtTLookUp"), temperatureSpin);
    const NumberRow rpm =
        AddNumberRow(*layout, 2, tr("RPM"), QStringLiteral("txtRPMLookup"), rpmSpin);
    Named(temperature.label, "Label1");
    Named(rpm.label, "Label2");
    txtTLookUp = temperature.box;
    txtRPMLookup = rpm.box;
    WatchRange(*txtTLookUp, lowestCelsius, highestCelsius, tr("°C"));
    layout->setColumnStretch(1, 1);
    return frame;
}

void frmAutoControl::ConnectSignals() {
    for (int point = 0; point < LookupPoints; ++point) {
        connect(At(optControl, point), &QRadioButton::toggled, this, [this, point](bool checked) {
            if (checked) {
                optControl_Click(point);
            }
        });
    }
    for (auto *option : {optDiscrete, optLinear}) {
        connect(option, &QRadioButton::toggled, this, &frmAutoControl::PlotData);
        connect(option, &QRadioButton::toggled, this, &frmAutoControl::EditedAlone);
    }
    for (auto *box : {cmbControl[0], cmbControl[1], cmbSource33}) {
        connect(box, &QComboBox::currentTextChanged, this, &frmAutoControl::EditedAlone);
    }
    connect(txtTLookUp, &QLineEdit::textChanged, this, &frmAutoControl::txtTLookUp_Change);
    connect(txtRPMLookup, &QLineEdit::textChanged, this, &frmAutoControl::txtRPMLookup_Change);
    connect(pctGraph, &LookupGraph::MouseDown, this, &frmAutoControl::pctGraph_MouseDown);
    connect(pctGraph, &LookupGraph::MouseMoved, this, &frmAutoControl::pctGraph_MouseMove);
    connect(pctGraph, &LookupGraph::MouseDragged, this, &frmAutoControl::pctGraph_MouseUp);
    connect(pctGraph, &LookupGraph::MoveWanted, this, &frmAutoControl::MovePoint);
    connect(pctGraph, &LookupGraph::TemperatureWanted, this,
            [this](int point, double celsius) { SetNumber(point, *txtTLookUp, celsius); });
    connect(pctGraph, &LookupGraph::PointWanted, this,
            [this](int point) { At(optControl, point)->setChecked(true); });
    connect(pctGraph, &LookupGraph::SpeedWanted, this,
            [this](int point, double rpm) { SetNumber(point, *txtRPMLookup, rpm); });
    connect(sldRange, &ValueSlider::ValueChanged, this, &frmAutoControl::sldRange_Change);
}

void frmAutoControl::LayoutOneFan() {
    cmbControl[0]->hide();
    cmbControl[1]->hide();
    Label4->hide();
    Label3->clear();
    graphPanel->HideLegend();
    cmbSource33->show();
}

void frmAutoControl::Form_Load() {
    const Requester load(requester);
    if (HasOneFan()) {
        LayoutOneFan();
    }
    LookupTable points;
    for (int point = 0; point < LookupPoints; ++point) {
        const int32_t celsius = ReadPointTemperature(point);
        At(points, point) = {celsius, PointRpm(ReadRPM(SpeedRegister(point)))};
    }
    LoadTableInUse(points);
    ShowSelectedPoint();
    (IsConfig2Bit2Set() ? optLinear : optDiscrete)->setChecked(true);
    ShowControlSources(ReadRegister(FanBehaviour), cmbControl, *cmbSource33);
    sldRange->SetValue(static_cast<double>(GraphRpmRange));
    graphPanel->UpdateRPMLabels();
}

void frmAutoControl::PlotData() {
    pctGraph->linear = optLinear->isChecked();
    pctGraph->selectedPoint = SelectedPoint;
    pctGraph->DescribePoints();
    pctGraph->update();
}

void frmAutoControl::ShowSelectedPoint() {
    shownEightPointMode = EightPointMode;
    const SpeedPoint shown = PointInUse(SelectedPoint, SeenPoints());
    ShowNumber(*txtTLookUp, shown.Celsius);
    ShowNumber(*txtRPMLookup, shown.Rpm);
    BeginStep();
    MarkPoints();
    PlotData();
}

/// Marks the points whose numbers Apply cannot write, selected or not, and the speed in its box.
void frmAutoControl::MarkPoints() {
    const auto held = SeenPoints();
    const SpeedPoints points = PointsInUse(held);
    const auto fates = FatesOf(points, held);
    for (int point = 0; point < LookupPoints; ++point) {
        MarkField(*At(optControl, point), FateText(At(points, point), At(fates, point)));
    }
    const double entered = RoundHalfToEven(NumberIn(*txtRPMLookup));
    const bool isHeld = held && entered == At(*held, SelectedPoint).Rpm;
    const bool canBe = IsLookupRpm(entered) && entered <= LargestPointRpm;
    MarkField(*txtRPMLookup,
              canBe || isHeld
                  ? HowRead(*txtRPMLookup)
                  : tr("0, or %1 to %2 RPM").arg(SlowestLookupRpm).arg(LargestPointRpm));
}

void frmAutoControl::EditedAlone() {
    AsOneStep([] {});
}

void frmAutoControl::optControl_Click(int point) {
    SelectedPoint = point;
    ShowSelectedPoint();
}

void frmAutoControl::txtTLookUp_Change() {
    PointAt(SelectedPoint).Temperature = ToInt32(NumberIn(*txtTLookUp));
    MarkPoints();
    PlotData();
    TellPartChanged(*pctGraph, 2 * SelectedPoint);
}

void frmAutoControl::txtRPMLookup_Change() {
    PointAt(SelectedPoint).RPM = PointRpm(NumberIn(*txtRPMLookup));
    MarkPoints();
    PlotData();
    TellPartChanged(*pctGraph, 2 * SelectedPoint + 1);
}

void frmAutoControl::pctGraph_MouseDown(QPointF place) {
    if (pctGraph->carriedAt) {
        PutDown(place);
    } else if (pctGraph->IsOnSelectedPoint(place)) {
        pctGraph->carriedAt = place;
        pctGraph->setCursor(Qt::CrossCursor);
        PlotData();
    }
}

void frmAutoControl::pctGraph_MouseMove(QPointF place) {
    if (pctGraph->carriedAt) {
        pctGraph->carriedAt = place;
        pctGraph->update();
        return;
    }
    const double celsius = X2Temp(place.x());
    for (int point = LookupPoints - 1; point >= 0; --point) {
        if (std::abs(celsius - PointAt(point).Temperature) < 1) {
            At(optControl, point)->setChecked(true);
            break;
        }
    }
    pctGraph->setCursor(pctGraph->IsOnSelectedPoint(place) ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

/// The end of a drag; a click on a point only picks it up.
void frmAutoControl::pctGraph_MouseUp(QPointF place) {
    if (pctGraph->carriedAt) {
        PutDown(place);
    }
}

void frmAutoControl::PutDown(QPointF place) {
    pctGraph->carriedAt.reset();
    pctGraph->unsetCursor();
    AsOneStep([&] {
        EnterNumber(*txtTLookUp, std::floor(X2Temp(place.x())));
        EnterNumber(*txtRPMLookup, std::floor(Y2RPM(place.y())));
    });
    PlotData();
}

/// Moves the selected point by keyboard, within the ranges of its spin buttons. A key that is held
/// makes one step.
void frmAutoControl::MovePoint(int celsius, int rpm, bool isRepeated) {
    if (pctGraph->carriedAt) {
        return;
    }
    if (!isRepeated) {
        BeginStep();
    }
    const auto move = [](QLineEdit &box, const SpinRange &range, int32_t value, int change) {
        if (change != 0) {
            EnterNumber(box, static_cast<double>(range.Moved(value, change)));
        }
    };
    move(*txtTLookUp, temperatureSpin, PointAt(SelectedPoint).Temperature, celsius);
    move(*txtRPMLookup, rpmSpin, ToInt32(PointInUse(SelectedPoint, SeenPoints()).Rpm), rpm);
}

void frmAutoControl::SetNumber(int point, QLineEdit &box, double number) {
    At(optControl, point)->setChecked(true);
    AsOneStep([&] { EnterNumber(box, RoundHalfToEven(number)); });
}

/// Escape returns a carried point to where it was, whichever control has the focus.
void frmAutoControl::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape || !pctGraph->carriedAt) {
        Dialog::keyPressEvent(event);
        return;
    }
    PutBack();
}

void frmAutoControl::PutBack() {
    pctGraph->carriedAt.reset();
    pctGraph->unsetCursor();
    pctGraph->update();
}

/// Keeps the slider at whole steps, so that the grid lines are at round numbers.
void frmAutoControl::sldRange_Change(double value) {
    sldRange->SetValue(RoundHalfToEven(value / smallRangeStep) * smallRangeStep);
    GraphRpmRange = static_cast<float>(sldRange->Value());
    graphPanel->UpdateRPMLabels();
    PlotData();
}

/// On the curve as it is edited, but with the control sources that the chip has.
void frmAutoControl::ShowFans() {
    FanPlan plan = Plan();
    plan.Behaviour = SeenBehaviour();
    std::array<std::optional<LivePoint>, 2> live;
    for (int fan = 0; fan < FanCount(); ++fan) {
        const FanOutlook outlook = OutlookOf(plan, fan);
        if (const auto rpm = OperatingRpm(outlook, fan)) {
            At(live, fan) = LivePoint{outlook.Channel, outlook.Celsius, *rpm, outlook.DemandedRpm};
        }
    }
    pctGraph->ShowLive(live);
    ShowText(*lblOperatingPoint, OperatingText(plan));
}

bool frmAutoControl::Apply() {
    const Requester apply(requester);
    WriteField(TransitionField, optLinear->isChecked());
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointTemperature(point, PointAt(point).Temperature);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointRpm(point, PointInUse(point, SeenPoints()).Rpm);
    }
    AddEvent("Lookup table applied");
    WriteRegister(FanBehaviour, ChosenBehaviour(cmbControl, *cmbSource33));
    MarkPoints();
    PointsApplied();
    return true;
}

/// Meanwhile the fan configuration may have selected the other table.
void frmAutoControl::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ActivationChange) {
        if (shownEightPointMode != EightPointMode) {
            ShowSelectedPoint();
        } else {
            PlotData();
        }
    }
    Dialog::changeEvent(event);
}

} // namespace ztm
