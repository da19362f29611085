#include "ui/display/frmLogView.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/Numbers.h"
#include "files/LogFile.h"
#include "ui/display/MeasurementPanel.h"
#include "ui/display/MonitorCharts.h"
#include "ui/instruments/StripChart.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double stepSeconds = 0.005;
constexpr double secondsWithoutProgress = 1;
constexpr int wholeProgress = 1000;
constexpr double rowHeight = 0.08; // of the chart's labels
constexpr double farthestShift = 1e6;
constexpr int decimalsOfShift = 3; // as the times in a log

} // namespace

QString AskLog(QWidget *parent) {
    return AskOpenFile(parent, frmLogView::tr("Open Log"), frmLogView::tr("Text Files (*.xls)"));
}

struct frmLogView::RecordedLog {
    QString name; // of the file
    ChannelHistory history{MostLogRows};
    LogContents contents;

    /// As in "run 1.xls, started at 23.11.2026 14:05:09, 1200 rows".
    QString Text() const {
        QString text = tr("%1, started at %2, %3 rows")
                           .arg(name, QString::fromLatin1(contents.StartedAt.c_str()))
                           .arg(contents.Rows);
        if (contents.IsCutOff) {
            text += tr(", cut off within the last line");
        }
        if (contents.IsTooLong) {
            text += tr(": the file has more, which are not shown");
        }
        return text;
    }
};

struct frmLogView::Opening {
    Opening(QString file, bool second) : path(std::move(file)), isSecond(second) {}

    const QString path;
    const bool isSecond;
    std::unique_ptr<RecordedLog> log = std::make_unique<RecordedLog>();
    LogFile file{log->history};
    const double start = RunningSeconds();
};

frmLogView::frmLogView() : Form(QStringLiteral("frmLogView")) {
    SetupUi();
    ConnectSignals();
    ShowTexts();
}

frmLogView::~frmLogView() {
    delete stpLog; // it draws from the logs
}

void frmLogView::SetupUi() {
    setWindowTitle(tr("Recorded Log"));
    setMinimumSize(320, 240);
    openingRow = new QWidget(this);
    prgbarOpen = Named(new QProgressBar(openingRow), "prgbarOpen");
    prgbarOpen->setAccessibleName(tr("Reading"));
    prgbarOpen->setRange(0, wholeProgress);
    cmdCancelOpen = NewButton("cmdCancelOpen", tr("Cancel"), openingRow);
    auto *openingLayout = new QHBoxLayout(openingRow);
    openingLayout->setContentsMargins(0, 0, 0, 0);
    openingLayout->addWidget(prgbarOpen, 1);
    openingLayout->addWidget(cmdCancelOpen);
    openingRow->hide();

    measurement = new MeasurementPanel(
        cursors, [this] { return ShownTraces(); }, this);
    lblLog = Named(new QLabel(this), "lblLog");
    cmdOpenLog = NewButton("cmdOpenLog", tr("&Open Log..."), this);
    cmdLayOver = NewButton("cmdLayOver", tr("&Lay Over..."), this);
    cmdLayOver->setToolTip(tr("Draws a second log over the first one, dashed"));
    auto *firstLayout = new QHBoxLayout;
    firstLayout->addWidget(lblLog, 1);
    firstLayout->addWidget(cmdOpenLog);
    firstLayout->addWidget(cmdLayOver);
    SetupSecondRow();
    for (QLabel *label : {lblLog, lblSecondLog}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }

    auto *layout = new QVBoxLayout(this);
    chartPlace = new QVBoxLayout;
    layout->addLayout(chartPlace, 1);
    layout->addWidget(measurement);
    layout->addWidget(openingRow);
    layout->addLayout(firstLayout);
    layout->addWidget(secondRow);
    resize(sizeHint());
}

void frmLogView::SetupSecondRow() {
    secondRow = new QWidget(this);
    lblSecondLog = Named(new QLabel(secondRow), "lblSecondLog");
    txtShift = Named(new QLineEdit(secondRow), "txtShift");
    txtShift->setMaximumWidth(fontMetrics().averageCharWidth() * 14);
    WatchRange(*txtShift, -farthestShift, farthestShift, tr("s"));
    auto *lblShift = new QLabel(tr("&Shift (s)"), secondRow);
    lblShift->setBuddy(txtShift);
    lblShift->setToolTip(tr("Moves the second log, to the left if negative"));
    cmdAlignStarts = NewButton("cmdAlignStarts", tr("Align S&tarts"), secondRow);
    cmdAlignCursors = NewButton("cmdAlignCursors", tr("Align &B at A"), secondRow);
    cmdRemove = NewButton("cmdRemove", tr("&Remove"), secondRow);
    auto *layout = new QHBoxLayout(secondRow);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblSecondLog, 1);
    for (QWidget *control :
         {static_cast<QWidget *>(lblShift), static_cast<QWidget *>(txtShift),
          static_cast<QWidget *>(cmdAlignStarts), static_cast<QWidget *>(cmdAlignCursors),
          static_cast<QWidget *>(cmdRemove)}) {
        layout->addWidget(control);
    }
}

void frmLogView::ConnectSignals() {
    reading.setObjectName(QStringLiteral("reading"));
    connect(&reading, &QTimer::timeout, this, &frmLogView::ReadOn);
    connect(&cursors, &ChartCursors::Changed, this, &frmLogView::ShowButtons);
    connect(cmdCancelOpen, &QPushButton::clicked, this, &frmLogView::EscapePressed);
    connect(cmdOpenLog, &QPushButton::clicked, this, [this] { AskAndOpen(false); });
    connect(cmdLayOver, &QPushButton::clicked, this, [this] { AskAndOpen(true); });
    connect(txtShift, &QLineEdit::textChanged, this, [this] {
        const double seconds = NumberIn(*txtShift);
        if (std::abs(seconds) <= farthestShift) {
            ShiftSecond(seconds);
        }
    });
    connect(cmdAlignStarts, &QPushButton::clicked, this, [this] { EnterNumber(*txtShift, 0); });
    connect(cmdAlignCursors, &QPushButton::clicked, this, &frmLogView::cmdAlignCursors_Click);
    connect(cmdRemove, &QPushButton::clicked, this, [this] {
        second.reset();
        ShowSecond();
        stpLog->setFocus();
    });
}

QSize frmLogView::sizeHint() const {
    return screen()->availableSize() * 0.7;
}

void frmLogView::AskAndOpen(bool isSecond) {
    const QString path = AskLog(this);
    if (!path.isEmpty()) {
        Open(path, isSecond);
    }
}

void frmLogView::Open(const QString &path, bool isSecond) {
    opening = std::make_unique<Opening>(path, isSecond);
    opening->log->name = QFileInfo(path).fileName();
    opening->file.Open(QFile::encodeName(path).toStdString());
    openingRow->hide();
    reading.start(0);
}

/// Between two steps the event loop serves what is due, the monitor's tick for one.
void frmLogView::ReadOn() {
    if (stpLog != nullptr && stpLog->IsSaving()) {
        return; // what it saves must stay
    }
    const auto state = opening->file.Step(stepSeconds);
    if (state == LogFile::State::Reading) {
        if (RunningSeconds() - opening->start >= secondsWithoutProgress) {
            prgbarOpen->setValue(static_cast<int>(opening->file.Progress() * wholeProgress));
            openingRow->show();
        }
        return;
    }
    reading.stop();
    const auto done = std::move(opening);
    EndOpening();
    if (state == LogFile::State::Failed) {
        if (!first) {
            Unload();
        }
        ShowMessage(tr("The log could not be opened:\n%1\n%2")
                        .arg(done->path, ToQString(done->file.Problem())),
                    tr("Open Log"), QMessageBox::Warning);
        return;
    }
    done->log->contents = done->file.Contents();
    if (done->isSecond && first) {
        stpLog->LayOver(nullptr);
        second = std::move(done->log);
        ShowSecond();
        stpLog->ShowWholeHistory();
    } else {
        delete stpLog;
        cursors.Remove();
        second.reset();
        first = std::move(done->log);
        ShowFirst();
    }
}

void frmLogView::EndOpening() {
    reading.stop();
    opening.reset();
    openingRow->hide();
}

void frmLogView::EscapePressed() {
    const bool wasOpening = opening != nullptr;
    EndOpening();
    if (!wasOpening || !first) {
        Unload();
    }
}

void frmLogView::ShowFirst() {
    StripChartSetup setup = CombinedChartSetup(rowHeight);
    setup.recorded = true;
    setup.title = tr("Recorded log");
    setup.emptyNotice = tr("This log has no values");
    const ChannelHistory &history = first->history;
    // A little more, so that the first row is not at the very edge.
    setup.visibleSeconds =
        history.IsEmpty() ? 1 : std::max(1.0, (history.LastTime() - history.FirstTime()) * 1.01);
    stpLog = Named(new StripChart(history, std::move(setup), this), "stpLog");
    stpLog->setAccessibleName(tr("Temperatures and fan speeds over elapsed seconds"));
    stpLog->ShareCursors(cursors);
    connect(stpLog, &StripChart::OpenLogRequested, this, [this] { AskAndOpen(false); });
    chartPlace->addWidget(stpLog);
    stpLog->show();
    stpLog->setFocus();
    ShowTexts();
}

void frmLogView::ShowSecond() {
    if (NumberIn(*txtShift) == 0) {
        ShiftSecond(0);
    }
    ShowNumber(*txtShift, 0);
    ShowTexts();
}

void frmLogView::ShiftSecond(double seconds) {
    shift = seconds;
    if (first) {
        stpLog->LayOver(second ? &second->history : nullptr, ShiftOfSecond());
        measurement->ShowMeasurement();
        ShowButtons();
    }
}

/// How much later the times of the second log come, on those of the first.
double frmLogView::ShiftOfSecond() const {
    if (!second) {
        return 0;
    }
    const double start = first->history.FirstTime() - second->history.FirstTime();
    return (std::isnan(start) ? 0 : start) + shift;
}

/// What is at B in the second log comes to where A is in the first.
void frmLogView::cmdAlignCursors_Click() {
    const double change = *cursors.Time(0) - *cursors.Time(1);
    EnterNumber(*txtShift, RoundToDecimals(shift + change, decimalsOfShift));
    cursors.Unset(1);
}

/// Those of both logs, in the order of the chart.
std::vector<MeasuredTrace> frmLogView::ShownTraces() const {
    std::vector<MeasuredTrace> traces;
    for (const auto *log : {first.get(), second.get()}) {
        for (int channel = 0; log != nullptr && channel < ChannelCount; ++channel) {
            if (log->history.HasValues(channel)) {
                const QString name = ToQString(At(log->contents.Names, channel));
                const bool isDashed = log == second.get();
                traces.push_back({&log->history, channel,
                                  isDashed ? tr("%1 dashed").arg(name) : name,
                                  isDashed ? ShiftOfSecond() : 0});
            }
        }
    }
    return traces;
}

/// Names what is drawn, and enables what can be done.
void frmLogView::ShowTexts() {
    lblLog->setText(first ? tr("Line: %1").arg(first->Text()) : tr("Reading..."));
    lblSecondLog->setText(second ? tr("Dashed: %1").arg(second->Text()) : QString());
    secondRow->setVisible(second != nullptr);
    ShowButtons();
    if (!first) {
        return;
    }
    const StripChartSetup setup = CombinedChartSetup(rowHeight);
    for (const auto &trace : setup.traces) {
        const auto &ours = At(first->contents.Names, trace.channel);
        const auto &other = second ? At(second->contents.Names, trace.channel) : ours;
        stpLog->SetLabel(trace.label, ToQString(ours.empty() ? other : ours));
    }
    stpLog->SetDevice(second ? tr("%1, dashed %2").arg(first->name, second->name) : first->name);
}

void frmLogView::ShowButtons() {
    cmdLayOver->setEnabled(first != nullptr);
    cmdAlignStarts->setEnabled(shift != 0);
    cmdAlignCursors->setEnabled(cursors.Between().has_value());
    cmdAlignCursors->setToolTip(
        tr("Moves the second log: what is in it at cursor B comes to cursor A"));
}

} // namespace ztm
