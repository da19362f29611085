#include "ui/fan/frmLookup.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "files/LutFile.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/Traffic.h"
#include "monitor/Channels.h"
#include "monitor/Events.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Problems.h"
#include "ui/kit/SpinButton.h"
#include "ui/kit/Text.h"

#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

static_assert(LutPoints == LookupPoints);

constexpr double largestNumber = 1e9; // far beyond what is limited when it is written

constexpr SpinRange temperatureSpin{0, 140};
constexpr SpinRange rpmSpin{0, 15000, 50};

using TestPoints = std::array<std::pair<const char *, const char *>, LookupPoints>;
constexpr TestPoints eightTestPoints{{{"30", "1000"},
                                      {"40", "2300"},
                                      {"50", "3500"},
                                      {"60", "4000"},
                                      {"70", "4700"},
                                      {"80", "5500"},
                                      {"90", "6000"},
                                      {"100", "7500"}}};
constexpr TestPoints fourTestPoints{{{"30", "1900"},
                                     {"40", "3800"},
                                     {"55", "5500"},
                                     {"80", "6500"},
                                     {"40", "1500"},
                                     {"70", "2600"},
                                     {"95", "4800"},
                                     {"105", "7000"}}};

const QString &LutFilter() {
    static const QString filter = QObject::tr("Text Files (*.lut)");
    return filter;
}

const QString &LutName() {
    static const QString name = QStringLiteral("LUT_Data");
    return name;
}

/// The row of a point, below the headings and, from the fifth on, below a second heading.
constexpr int RowOf(int point) {
    return 1 + point + point / PointsPerFan;
}

/// Shows the numeric value of a piece of a table file; false if it is not a finite number.
bool ShowPiece(QLineEdit &box, const std::string &piece) {
    const double number = NumericValue(piece);
    if (std::isfinite(number)) {
        EnterNumber(box, number);
    }
    return std::isfinite(number);
}

constexpr char requester[] = "Set Lookup Points"; // of its requests

} // namespace

frmLookup::frmLookup() : PointsDialog(QStringLiteral("frmLookup"), tr("Set Lookup Points")) {
    SetupUi();
    ConnectSignals();
    Form_Load();
    WatchNumbers();
    StartEditing();
}

void frmLookup::SetupUi() {
    auto *layout = new QGridLayout(this);
    layout->addWidget(NewTableFrame(), 0, 0);
    layout->addLayout(NewButtonColumn(), 0, 1);
    auto *lines = new QVBoxLayout;
    lblFileResult = NewResultLabel(this);
    lines->addWidget(lblFileResult);
    AddLines(*lines);
    layout->addLayout(lines, 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(0, 1);
}

QGroupBox *frmLookup::NewTableFrame() {
    Frame1 = Named(new Frame(tr("8 Point Lookup Table"), this), "Frame1");
    auto *layout = new QGridLayout(Frame1);
    layout->addWidget(new QLabel(tr("Temperature"), Frame1), 0, 1);
    layout->addWidget(new QLabel(tr("RPM"), Frame1), 0, 2);
    for (int fan = 0; fan < 2; ++fan) {
        auto *label = new QLabel(tr("Fan%1").arg(fan + 1), Frame1);
        label->setObjectName(IndexedName("lblFan", fan));
        label->hide();
        At(lblFan, fan) = label;
        layout->addWidget(label, RowOf(fan * PointsPerFan) - 1, 0);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        const auto slot = static_cast<size_t>(point);
        const int row = RowOf(point);
        Label3[slot] = new QLabel(Frame1);
        Label3[slot]->setObjectName(IndexedName("Label3", point));
        layout->addWidget(Label3[slot], row, 0);
        layout->addWidget(
            NewSpinBox(txtTemp[slot], IndexedName("txtTemp", point), temperatureSpin, Frame1), row,
            1, Qt::AlignLeft);
        layout->addWidget(NewSpinBox(txtRPM[slot], IndexedName("txtRPM", point), rpmSpin, Frame1),
                          row, 2, Qt::AlignLeft);
    }
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(layout->rowCount(), 1);
    return Frame1;
}

QLayout *frmLookup::NewButtonColumn() {
    cmdTestData = NewButton("cmdTestData", tr("Generate Test Points"), this);
    cmdSaveLUT = NewButton("cmdSaveLUT", tr("Save Table"), this);
    cmdLoadLUT = NewButton("cmdLoadLUT", tr("Load Table"), this);
    auto *column = new QVBoxLayout;
    for (auto *button : {cmdTestData, cmdSaveLUT, cmdLoadLUT}) {
        column->addWidget(button);
    }
    AddPointButtons(*column);
    column->addStretch();
    AddOkApplyCancel(*column);
    return column;
}

void frmLookup::ConnectSignals() {
    connect(cmdTestData, &QPushButton::clicked, this, &frmLookup::cmdTestData_Click);
    connect(cmdSaveLUT, &QPushButton::clicked, this, &frmLookup::cmdSaveLUT_Click);
    connect(cmdLoadLUT, &QPushButton::clicked, this, &frmLookup::cmdLoadLUT_Click);
}

/// Numbers the points, from 1 again for fan 2 if it has its own table.
void frmLookup::ShowLayout() {
    if (!EightPointMode) {
        Frame1->setTitle(tr("2 x 4-Point Lookup Table"));
        lblFan[0]->show();
        lblFan[1]->show();
    }
    for (int point = 0; point < LookupPoints; ++point) {
        const auto slot = static_cast<size_t>(point);
        const int number = (EightPointMode ? point : point % PointsPerFan) + 1;
        const QString name = tr("Point %1").arg(number);
        const QString whole =
            EightPointMode ? name : lblFan[slot / PointsPerFan]->text() + ' ' + name;
        Label3[slot]->setText(name);
        txtTemp[slot]->setAccessibleName(tr("%1, temperature in °C").arg(whole));
        txtRPM[slot]->setAccessibleName(tr("%1, speed in RPM").arg(whole));
    }
}

void frmLookup::Form_Load() {
    const Requester load(requester);
    ShowLayout();
    for (int point = 0; point < LookupPoints; ++point) {
        ShowNumber(*At(txtTemp, point), ReadPointTemperature(point));
    }
    for (int point = 0; point < LookupPoints; ++point) {
        ShowNumber(*At(txtRPM, point), ReadRPM(SpeedRegister(point)));
    }
}

/// A speed that the chip holds needs no mark: the slowest count reads as 75 RPM, which cannot be
/// written.
void frmLookup::WatchNumbers() {
    for (int point = 0; point < LookupPoints; ++point) {
        WatchRange(*At(txtTemp, point), lowestCelsius, highestCelsius, tr("°C"));
        WatchNumber(
            *At(txtRPM, point),
            [point](double rpm) {
                const auto held = SeenPoints();
                return IsLookupRpm(rpm) || (held && At(*held, point).Rpm == rpm);
            },
            tr("0, or %1 to %2 RPM").arg(SlowestLookupRpm).arg(FastestLookupRpm));
    }
}

void frmLookup::cmdTestData_Click() {
    const TestPoints &points = EightPointMode ? eightTestPoints : fourTestPoints;
    AsOneStep([&] {
        for (size_t point = 0; point < points.size(); ++point) {
            EnterText(*txtTemp[point], QLatin1String(points[point].first));
            EnterText(*txtRPM[point], QLatin1String(points[point].second));
        }
    });
}

void frmLookup::cmdSaveLUT_Click() {
    const QString path = AskSaveFileOfKind(this, tr("Save Table"), LutFilter(), LutName());
    if (path.isEmpty()) {
        return;
    }
    std::array<LutPoint, LutPoints> points;
    for (size_t point = 0; point < points.size(); ++point) {
        points[point] = {txtTemp[point]->text().toStdString(), txtRPM[point]->text().toStdString()};
    }
    const QString problem =
        QString::fromLocal8Bit(SaveLut(QFile::encodeName(path).toStdString(), points).c_str());
    lblFileResult->setText(problem.isEmpty() ? tr("%1 points saved").arg(LookupPoints) : problem);
    if (!problem.isEmpty()) {
        TellProblem(tr("The table was not saved: %1").arg(problem));
    }
}

void frmLookup::cmdLoadLUT_Click() {
    const QString path = AskOpenFile(this, tr("Load Table"), LutFilter(), LutName());
    if (path.isEmpty()) {
        return;
    }
    std::string problem;
    const auto points = ReadLut(QFile::encodeName(path).toStdString(), problem);
    QString result = QString::fromLocal8Bit(problem.c_str());
    if (points) {
        AsOneStep([&] { result = ShowFile(*points); });
    }
    lblFileResult->setText(result);
    if (!points) {
        TellProblem(tr("The table was not loaded: %1").arg(lblFileResult->text()));
    }
}

/// Shows the numeric values of a file's points as far as they go. Returns what lblFileResult says
/// of it: the first fault, if there is one.
QString frmLookup::ShowFile(const std::array<std::string, LookupPoints> &points) {
    QString fault;
    for (size_t point = 0; point < points.size(); ++point) {
        const auto note = [&](const QString &what) {
            if (fault.isEmpty()) {
                const bool isOfFan2 = point >= PointsPerFan && !lblFan[1]->isHidden();
                const QString name = isOfFan2 ? tr("Fan2 point %1").arg(point - PointsPerFan + 1)
                                              : tr("point %1").arg(point + 1);
                fault = tr("%1: %2").arg(name, what);
            }
        };
        const LutPieces pieces = PiecesOf(points[point]);
        if (!HasNumber(pieces.Temperature)) {
            note(tr("no temperature"));
        }
        if (!HasNumber(pieces.RPM.value_or(""))) {
            note(tr("no speed"));
        }
        if (!ShowPiece(*txtTemp[point], pieces.Temperature) || !pieces.RPM ||
            !ShowPiece(*txtRPM[point], *pieces.RPM)) {
            note(tr("number out of range"));
            return tr("%1; the rest was not loaded").arg(fault);
        }
    }
    return fault.isEmpty() ? tr("%1 points loaded").arg(LookupPoints) : fault;
}

SpeedPoints frmLookup::Points() const {
    SpeedPoints points;
    for (int point = 0; point < LookupPoints; ++point) {
        const auto number = [](const QLineEdit *box) {
            return std::clamp(NumberIn(*box), -largestNumber, largestNumber);
        };
        At(points, point) = {number(At(txtTemp, point)), number(At(txtRPM, point))};
    }
    return points;
}

FanPlan frmLookup::Plan() const {
    return {.Points = AsWritten(Points(), SeenPoints()),
            .IsOneTable = EightPointMode,
            .IsLinear = IsLinearSeen(),
            .Behaviour = SeenBehaviour()};
}

QVariantList frmLookup::State() const {
    QVariantList texts;
    for (int point = 0; point < LookupPoints; ++point) {
        texts << At(txtTemp, point)->text() << At(txtRPM, point)->text();
    }
    return texts;
}

void frmLookup::Restore(const QVariantList &state) {
    auto text = state.begin();
    for (int point = 0; point < LookupPoints; ++point) {
        for (auto *box : {At(txtTemp, point), At(txtRPM, point)}) {
            EnterText(*box, text->toString());
            ++text;
        }
    }
}

QStringList frmLookup::EnterPoints(const std::vector<SpeedPoint> &points) {
    for (size_t point = 0; point < points.size(); ++point) {
        EnterNumber(*txtTemp[point], points[point].Celsius);
        EnterNumber(*txtRPM[point], points[point].Rpm);
    }
    return {};
}

void frmLookup::TellResult(const QString &text) {
    lblFileResult->setText(text);
}

bool frmLookup::Apply() {
    const Requester apply(requester);
    SpeedPoints points;
    for (size_t point = 0; point < points.size(); ++point) {
        points[point] = {NumberIn(*txtTemp[point]), NumberIn(*txtRPM[point])};
    }
    WritePoints(points);
    AddEvent("Lookup table applied");
    PointsApplied();
    return true;
}

} // namespace ztm
