#include "ui/display/frmLogView.h"

#include "common/At.h"
#include "files/LogFile.h"
#include "ui/display/MonitorCharts.h"
#include "ui/instruments/StripChart.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QElapsedTimer>
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
constexpr qint64 millisecondsWithoutProgress = 1000;
constexpr int wholeProgress = 1000;
constexpr double rowHeight = 0.04; // of the chart's labels
constexpr double farthestShift = 1e6;

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
    QElapsedTimer since{};
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

    lblLog = Named(new QLabel(this), "lblLog");
    lblSecondLog = Named(new QLabel(this), "lblSecondLog");
    for (QLabel *label : {lblLog, lblSecondLog}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    cmdOpenLog = NewButton("cmdOpenLog", tr("Open Log..."), this);
    cmdLayOver = NewButton("cmdLayOver", tr("Lay Over..."), this);
    cmdRemove = NewButton("cmdRemove", tr("Remove"), this);
    cmdLayOver->setToolTip(tr("Draws a second log over the first one, dashed"));
    txtShift = Named(new QLineEdit(this), "txtShift");
    txtShift->setToolTip(tr("Moves the second log, to the left if negative"));
    lblShift = new QLabel(tr("Shift (s)"), this);
    lblShift->setBuddy(txtShift);
    WatchRange(*txtShift, -farthestShift, farthestShift, tr("s"));
    auto *buttons = new QHBoxLayout;
    for (auto *button : {cmdOpenLog, cmdLayOver, cmdRemove}) {
        buttons->addWidget(button);
    }
    buttons->addWidget(lblShift);
    buttons->addWidget(txtShift);
    buttons->addStretch();

    auto *layout = new QVBoxLayout(this);
    chartPlace = new QVBoxLayout;
    layout->addLayout(chartPlace, 1);
    layout->addWidget(openingRow);
    layout->addWidget(lblLog);
    layout->addWidget(lblSecondLog);
    layout->addLayout(buttons);
    resize(sizeHint());
}

void frmLogView::ConnectSignals() {
    reading.setObjectName(QStringLiteral("reading"));
    connect(&reading, &QTimer::timeout, this, &frmLogView::ReadOn);
    connect(cmdCancelOpen, &QPushButton::clicked, this, &frmLogView::EscapePressed);
    connect(cmdOpenLog, &QPushButton::clicked, this, [this] { AskAndOpen(false); });
    connect(cmdLayOver, &QPushButton::clicked, this, [this] { AskAndOpen(true); });
    connect(cmdRemove, &QPushButton::clicked, this, [this] {
        second.reset();
        ShowSecond();
    });
    connect(txtShift, &QLineEdit::textChanged, this, [this] {
        const double seconds = NumberIn(*txtShift);
        if (std::abs(seconds) <= farthestShift) {
            ShiftSecond(seconds);
        }
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
    opening->since.start();
    opening->log->name = QFileInfo(path).fileName();
    opening->file.Open(QFile::encodeName(path).toStdString());
    openingRow->hide();
    reading.start(0);
}

/// Between two steps the event loop serves what is due, the monitor's tick for one.
void frmLogView::ReadOn() {
    const auto state = opening->file.Step(stepSeconds);
    if (state == LogFile::State::Reading) {
        if (opening->since.hasExpired(millisecondsWithoutProgress)) {
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
    setup.elapsed = true;
    setup.title = tr("Recorded log");
    setup.emptyNotice = tr("This log has no values");
    const ChannelHistory &history = first->history;
    // A little more, so that the first row is not at the very edge.
    setup.visibleSeconds =
        history.IsEmpty() ? 1 : std::max(1.0, (history.LastTime() - history.FirstTime()) * 1.01);
    stpLog = Named(new StripChart(history, std::move(setup), this), "stpLog");
    stpLog->setAccessibleName(tr("Temperatures and fan speeds over elapsed seconds"));
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
    if (first) {
        const double start = second ? first->history.FirstTime() - second->history.FirstTime() : 0;
        stpLog->LayOver(second ? &second->history : nullptr,
                        (std::isnan(start) ? 0 : start) + seconds);
    }
}

/// Names what is drawn, and enables what can be done.
void frmLogView::ShowTexts() {
    lblLog->setText(first ? tr("Line: %1").arg(first->Text()) : tr("Reading..."));
    lblSecondLog->setText(second ? tr("Dashed: %1").arg(second->Text()) : QString());
    lblSecondLog->setVisible(second != nullptr);
    Enable(*cmdLayOver, first != nullptr, tr("There is no log to lay it over"));
    for (QWidget *control : {static_cast<QWidget *>(cmdRemove), static_cast<QWidget *>(lblShift),
                             static_cast<QWidget *>(txtShift)}) {
        control->setVisible(second != nullptr);
    }
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

} // namespace ztm
