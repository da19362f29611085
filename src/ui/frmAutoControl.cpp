#include "ui/frmAutoControl.h"

#include "common/Numbers.h"
#include "fan/FanCodes.h"
#include "fan/GraphSettings.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "ui/Controls.h"
#include "ui/Fields.h"
#include "ui/Frame.h"
#include "ui/LookupGraph.h"
#include "ui/SpinButton.h"
#include "ui/Text.h"
#include "ui/Twips.h"
#include "ui/instruments/ValueSlider.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr SpinRange temperatureSpin{0, 150};
constexpr SpinRange rpmSpin{0, 15000, 50};
constexpr int lowestRange = 1000;
constexpr int highestRange = 20000;
constexpr int smallRangeStep = 100;
constexpr int largeRangeStep = 1000;
constexpr int32_t sourceBits = 0x03;
constexpr int sourceShift = 2;
constexpr int labelShift = 50; // twips
constexpr int firstRpmLabel = 2;
constexpr double labelFontScale = 0.8; // so that neighbours stay apart
constexpr int largestPointRpm = std::numeric_limits<int16_t>::max();

LookupPoint &PointAt(int point) {
    return TableInUse()[static_cast<size_t>(point)];
}

/// A line of the legend.
QFrame *NewLine(const char *name, const char *colour, QWidget *parent) {
    auto *line = Named(new QFrame(parent), name);
    line->setFixedSize(line->fontMetrics().averageCharWidth() * 4, 5);
    // A light edge, so that it shows on a dark ground as well.
    line->setStyleSheet(
        QStringLiteral("background: %1; border: 1px solid white").arg(QLatin1String(colour)));
    return line;
}

} // namespace

frmAutoControl::frmAutoControl() : Form(QStringLiteral("frmAutoControl")) {
    setWindowTitle(tr("Auto-Control Response"));
    SetupUi();
    ConnectSignals();
    Form_Load();
}

void frmAutoControl::SetupUi() {
    sldRange = Named(new ValueSlider(this), "sldRange");
    sldRange->SetCaption(tr("Range"));
    sldRange->SetMaximum(highestRange);
    sldRange->SetMinimum(lowestRange);
    sldRange->SetSteps(smallRangeStep, largeRangeStep);
    sldRange->setMinimumWidth(sldRange->sizeHint().width()); // its numbers in full size
    auto *graph = new QGridLayout;
    graph->addWidget(NewGraphPanel(), 0, 0);
    graph->addLayout(NewLegend(), 1, 0);
    graph->setRowStretch(0, 1);
    auto *settings = new QVBoxLayout;
    settings->addWidget(NewPointFrame());
    settings->addWidget(NewSourceFrame());
    settings->addWidget(NewTransitionFrame());
    settings->addStretch();
    auto *layout = new QGridLayout(this);
    layout->addLayout(graph, 0, 0);
    layout->addWidget(sldRange, 0, 1);
    layout->addLayout(settings, 0, 2);
    layout->addLayout(NewButtonRow(), 1, 0, 1, 3);
    layout->setColumnStretch(0, 1);
}

QWidget *frmAutoControl::NewGraphPanel() {
    panel = new QWidget(this);
    pctGraph = Named(new LookupGraph(panel), "pctGraph");
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * labelFontScale);
    for (int label = 0; label < temperatureLabels; ++label) {
        auto *text = new QLabel(QString::number(10 * label), panel);
        text->setObjectName(IndexedName("lblTemp", label));
        text->setFont(small);
        lblTemp[static_cast<size_t>(label)] = text;
    }
    for (int label = firstRpmLabel; label <= lastRpmLabel; ++label) {
        auto *text = new QLabel(QStringLiteral("0"), panel);
        text->setObjectName(IndexedName("lblRPM", label));
        text->setFont(small);
        text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        lblRPM[static_cast<size_t>(label)] = text;
    }
    const int margin = fontMetrics().horizontalAdvance(QStringLiteral("00000 "));
    panel->setMinimumSize(pctGraph->sizeHint() +
                          QSize(margin + margin / 2, 2 * fontMetrics().height()));
    return panel;
}

QLayout *frmAutoControl::NewLegend() {
    Line1 = NewLine("Line1", "#0000ff", this);
    Label5 = Named(new QLabel(tr("Fan1"), this), "Label5");
    Line2 = NewLine("Line2", "#00c000", this);
    Label6 = Named(new QLabel(tr("Fan2"), this), "Label6");
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QWidget *part : {static_cast<QWidget *>(Line1), static_cast<QWidget *>(Label5),
                          static_cast<QWidget *>(Line2), static_cast<QWidget *>(Label6)}) {
        row->addWidget(part);
    }
    row->addStretch();
    return row;
}

QGroupBox *frmAutoControl::NewSourceFrame() {
    auto *frame = Named(new Frame(tr("Fan Control Source"), this), "Frame2");
    auto *layout = new QGridLayout(frame);
    Label3 = Named(new QLabel(tr("Fan1"), frame), "Label3");
    Label4 = Named(new QLabel(tr("Fan2"), frame), "Label4");
    for (int fan = 0; fan < 2; ++fan) {
        auto *box = new QComboBox(frame);
        box->setObjectName(IndexedName("cmbControl", fan));
        for (const std::string_view source : ControlSources) {
            box->addItem(ToQString(source));
        }
        cmbControl[static_cast<size_t>(fan)] = box;
        layout->addWidget(fan == 0 ? Label3 : Label4, fan, 0);
        layout->addWidget(box, fan, 1);
    }
    Label3->setBuddy(cmbControl[0]);
    Label4->setBuddy(cmbControl[1]);
    cmbSource33 = Named(new QComboBox(frame), "cmbSource33");
    cmbSource33->setAccessibleName(tr("Fan Control Source"));
    cmbSource33->hide();
    for (const ControlSource33 &source : ControlSources33) {
        cmbSource33->addItem(ToQString(source.Text));
    }
    layout->addWidget(cmbSource33, 0, 1);
    layout->setColumnStretch(1, 1);
    return frame;
}

QGroupBox *frmAutoControl::NewTransitionFrame() {
    auto *frame = Named(new Frame(tr("Transition Type"), this), "Frame3");
    optDiscrete = Named(new QRadioButton(tr("Discrete"), frame), "optDiscrete");
    optLinear = Named(new QRadioButton(tr("Linear"), frame), "optLinear");
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
        auto *option = new QRadioButton(QString::number(point + 1), frame);
        option->setObjectName(IndexedName("optControl", point));
        optControl[static_cast<size_t>(point)] = option;
        points->addWidget(option, point / PointsPerFan, point % PointsPerFan, Qt::AlignLeft);
    }
    optControl[0]->setChecked(true);
    auto *layout = new QGridLayout(frame);
    layout->addLayout(points, 0, 0, 1, 2);
    const auto addRow = [&](int row, const QString &caption, const char *labelName,
                            const char *name, QLineEdit *&box, SpinRange spin) {
        auto *spinBox = NewSpinBox(box, QLatin1String(name), spin, frame);
        auto *label = Named(new QLabel(caption, frame), labelName);
        label->setBuddy(box);
        layout->addWidget(label, row, 0);
        layout->addWidget(spinBox, row, 1, Qt::AlignLeft);
    };
    addRow(1, tr("Temperature"), "Label1", "txtTLookUp", txtTLookUp, temperatureSpin);
    addRow(2, tr("RPM"), "Label2", "txtRPMLookup", txtRPMLookup, rpmSpin);
    WatchRange(*txtTLookUp, lowestCelsius, highestCelsius, tr("°C"));
    WatchNumber(
        *txtRPMLookup, [](double rpm) { return IsLookupRpm(rpm) && rpm <= largestPointRpm; },
        tr("0, or %1 to %2 RPM").arg(SlowestLookupRpm).arg(largestPointRpm));
    layout->setColumnStretch(1, 1);
    return frame;
}

QLayout *frmAutoControl::NewButtonRow() {
    cmdOK = NewButton("cmdOK", tr("OK"), this);
    cmdApply = NewButton("cmdApply", tr("Apply"), this);
    cmdCancel = NewButton("cmdCancel", tr("Cancel"), this);
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (auto *button : {cmdOK, cmdApply, cmdCancel}) {
        row->addWidget(button);
    }
    return row;
}

void frmAutoControl::ConnectSignals() {
    for (int point = 0; point < LookupPoints; ++point) {
        connect(optControl[static_cast<size_t>(point)], &QRadioButton::toggled, this,
                [this, point](bool checked) {
                    if (checked) {
                        optControl_Click(point);
                    }
                });
    }
    for (auto *option : {optDiscrete, optLinear}) {
        connect(option, &QRadioButton::toggled, this, &frmAutoControl::PlotData);
    }
    connect(txtTLookUp, &QLineEdit::textChanged, this, &frmAutoControl::txtTLookUp_Change);
    connect(txtRPMLookup, &QLineEdit::textChanged, this, &frmAutoControl::txtRPMLookup_Change);
    connect(pctGraph, &LookupGraph::MouseDown, this, &frmAutoControl::pctGraph_MouseDown);
    connect(pctGraph, &LookupGraph::MouseMoved, this, &frmAutoControl::pctGraph_MouseMove);
    connect(pctGraph, &LookupGraph::MoveWanted, this, &frmAutoControl::MovePoint);
    connect(pctGraph, &LookupGraph::DropWanted, this, &frmAutoControl::DropPoint);
    connect(sldRange, &ValueSlider::ValueChanged, this, &frmAutoControl::sldRange_Change);
    connect(cmdOK, &QPushButton::clicked, this, &frmAutoControl::cmdOK_Click);
    connect(cmdApply, &QPushButton::clicked, this, &frmAutoControl::cmdApply_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmAutoControl::cmdCancel_Click);
}

void frmAutoControl::LayoutOneFan() {
    cmbControl[0]->hide();
    cmbControl[1]->hide();
    Label4->hide();
    Label3->clear();
    for (QWidget *part : {static_cast<QWidget *>(Line1), static_cast<QWidget *>(Label5),
                          static_cast<QWidget *>(Line2), static_cast<QWidget *>(Label6)}) {
        part->hide();
    }
    cmbSource33->show();
}

void frmAutoControl::Form_Load() {
    if (DeviceName == ZTM7710) {
        LayoutOneFan();
    }
    for (int point = 0; point < LookupPoints; ++point) {
        PointAt(point).Temperature = ReadPointTemperature(point);
        PointAt(point).RPM = PointRpm(ReadRPM(SpeedRegister(point)));
    }
    ShowSelectedPoint();
    (IsConfig2Bit2Set() ? optLinear : optDiscrete)->setChecked(true);
    const int32_t behaviour = ReadRegister(FanBehaviour);
    cmbControl[0]->setCurrentIndex(behaviour & sourceBits);
    cmbControl[1]->setCurrentIndex(behaviour >> sourceShift & sourceBits);
    cmbSource33->setCurrentIndex(static_cast<int>(ControlSource33Item(behaviour & sourceBits)));
    SetUpGraphLabels();
    sldRange->SetValue(static_cast<double>(GraphRpmRange));
    UpdateRPMLabels();
}

void frmAutoControl::PlotData() {
    pctGraph->linear = optLinear->isChecked();
    pctGraph->selectedPoint = SelectedPoint;
    pctGraph->DescribePoints();
    pctGraph->update();
}

/// The graph keeps its proportions in the middle of its panel, with the labels at its grid lines.
void frmAutoControl::SetUpGraphLabels() {
    const int height = fontMetrics().height();
    const int margin = fontMetrics().horizontalAdvance(QStringLiteral("00000 "));
    const double scale = std::min((panel->width() - margin - margin / 2) / GraphWidth,
                                  (panel->height() - 2 * height) / GraphHeight);
    const QRect graph(margin, height / 2, qRound(GraphWidth * scale), qRound(GraphHeight * scale));
    pctGraph->setGeometry(graph);
    const int last = lblTemp.back()->sizeHint().width();
    const int shift = Twips(labelShift, *this);
    for (int label = 0; label < temperatureLabels; ++label) {
        auto *text = lblTemp[static_cast<size_t>(label)];
        text->resize(text->sizeHint());
        const int along = graph.width() * label / (temperatureLabels - 1);
        text->move(graph.left() + along - (label == 0 ? 0 : last / 2) +
                       (label > 0 && label < 10 ? shift : 0),
                   graph.bottom() + 2);
    }
    for (int label = firstRpmLabel; label <= lastRpmLabel; ++label) {
        const double rpm = (lastRpmLabel - label) * static_cast<double>(GraphRpmRange) / 10;
        const int line = graph.top() + qRound(RPMY(rpm) * scale);
        lblRPM[static_cast<size_t>(label)]->setGeometry(
            0, line - height / 2, graph.left() - fontMetrics().averageCharWidth() / 2, height);
    }
}

void frmAutoControl::UpdateRPMLabels() {
    for (int k = 2; k <= 11; ++k) {
        const double rpm = (k - 1) * static_cast<double>(GraphRpmRange) / 10;
        lblRPM[static_cast<size_t>(13 - k)]->setText(QString::number(std::floor(rpm)));
    }
}

void frmAutoControl::ShowSelectedPoint() {
    const LookupPoint point = PointAt(SelectedPoint);
    ShowNumber(*txtTLookUp, point.Temperature);
    ShowNumber(*txtRPMLookup, point.RPM);
    PlotData();
}

void frmAutoControl::optControl_Click(int point) {
    SelectedPoint = point;
    ShowSelectedPoint();
}

void frmAutoControl::txtTLookUp_Change() {
    PointAt(SelectedPoint).Temperature = ToInt32(NumberIn(*txtTLookUp));
    PlotData();
}

void frmAutoControl::txtRPMLookup_Change() {
    PointAt(SelectedPoint).RPM = PointRpm(NumberIn(*txtRPMLookup));
    PlotData();
}

void frmAutoControl::pctGraph_MouseDown(QPointF place) {
    if (pctGraph->carriedAt) {
        pctGraph->carriedAt.reset();
        pctGraph->unsetCursor();
        ShowNumber(*txtTLookUp, std::floor(X2Temp(place.x())));
        ShowNumber(*txtRPMLookup, std::floor(Y2RPM(place.y())));
        PlotData();
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
            optControl[static_cast<size_t>(point)]->setChecked(true);
            break;
        }
    }
    pctGraph->setCursor(pctGraph->IsOnSelectedPoint(place) ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

/// Moves the selected point by the keyboard, within what its boxes' spin buttons reach.
void frmAutoControl::MovePoint(int celsius, int rpm) {
    if (pctGraph->carriedAt) {
        return;
    }
    const LookupPoint point = PointAt(SelectedPoint);
    if (celsius != 0) {
        ShowNumber(*txtTLookUp, std::clamp(point.Temperature + celsius, temperatureSpin.minimum,
                                           temperatureSpin.maximum));
    }
    if (rpm != 0) {
        ShowNumber(*txtRPMLookup, std::clamp(point.RPM + rpm, rpmSpin.minimum, rpmSpin.maximum));
    }
}

/// Puts a carried point back to where it was.
void frmAutoControl::DropPoint() {
    pctGraph->carriedAt.reset();
    pctGraph->unsetCursor();
    pctGraph->update();
}

void frmAutoControl::sldRange_Change(double value) {
    GraphRpmRange = static_cast<float>(value);
    UpdateRPMLabels();
    PlotData();
}

int32_t frmAutoControl::SourceCodes() const {
    const auto textOf = [](const QComboBox *box) { return box->currentText().toStdString(); };
    return DeviceName == ZTM7710 ? ControlSource33Code(textOf(cmbSource33))
                                 : ControlSourceCode(textOf(cmbControl[1])) << sourceShift |
                                       ControlSourceCode(textOf(cmbControl[0]));
}

void frmAutoControl::cmdApply_Click() {
    WriteRegister(Configuration2,
                  WithBit(ReadRegister(Configuration2), LinearBit, optLinear->isChecked()));
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointTemperature(point, PointAt(point).Temperature);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointRpm(point, PointAt(point).RPM);
    }
    WriteRegister(FanBehaviour, SourceCodes());
}

void frmAutoControl::cmdOK_Click() {
    cmdApply_Click();
    cmdCancel_Click();
}

void frmAutoControl::cmdCancel_Click() {
    Unload();
}

void frmAutoControl::resizeEvent(QResizeEvent *event) {
    Form::resizeEvent(event);
    layout()->activate();
    SetUpGraphLabels();
    PlotData();
}

void frmAutoControl::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ActivationChange && pctGraph != nullptr) {
        PlotData();
    }
    Form::changeEvent(event);
}

} // namespace ztm
