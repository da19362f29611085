#include "ui/control/ControlPage.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "link/Traffic.h"
#include "monitor/MeasurementLog.h"
#include "ui/control/frmHeaters.h"
#include "ui/control/frmLogging.h"
#include "ui/control/frmManual.h"
#include "ui/fan/frmAutoControl.h"
#include "ui/fan/frmConfig.h"
#include "ui/fan/frmLookup.h"
#include "ui/fan/frmThermTemp.h"
#include "ui/fan/frmThermTimer.h"
#include "ui/kit/Controls.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Problems.h"
#include "ui/kit/Text.h"

#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>

#include <initializer_list>

namespace ztm {
namespace {

constexpr double recallSliceSeconds = 0.05;

struct ButtonRow {
    QPushButton *&member;
    const char *name;
    QString caption;
};

/// A frame with a column of buttons, in the order of the rows.
QGroupBox *NewButtonFrame(const char *name, const QString &caption,
                          std::initializer_list<ButtonRow> rows, QWidget *parent) {
    auto *frame = Named(new Frame(caption, parent), name);
    auto *layout = new QVBoxLayout(frame);
    for (const ButtonRow &row : rows) {
        row.member = NewButton(row.name, row.caption, frame);
        layout->addWidget(row.member);
    }
    return frame;
}

// Why a button is disabled.

QString OnlyAutomatic() {
    return ControlPage::tr("Only under automatic fan control: see Fan Configuration");
}

QString OnlyManual() {
    return ControlPage::tr("Only under manual fan control: see Fan Configuration");
}

QString RegistersText(size_t count, const QString &what) {
    return count == 1 ? QObject::tr("1 register %1").arg(what)
                      : QObject::tr("%1 registers %2").arg(count).arg(what);
}

} // namespace

ControlPage::ControlPage(QWidget *parent) : QWidget(parent) {
    SetupUi();
    ConnectSignals();
    SetFanControlButtons(this);
}

ControlPage::~ControlPage() {
    SetFanControlButtons(nullptr);
}

void ControlPage::SetupUi() {
    auto *fans = NewButtonFrame("fraFanControl", tr("Fan Control"),
                                {{cmdConParam, "cmdConParam", tr("Fan Configuration...")},
                                 {cmdAuto, "cmdAuto", tr("Automatic Control...")},
                                 {cmdSetLookups, "cmdSetLookups", tr("Set Lookup Table...")},
                                 {cmdManual, "cmdManual", tr("Manual RPM...")}},
                                this);
    auto *therm = NewButtonFrame("fraThermControl", tr("THERM Control"),
                                 {{cmdThermTemp, "cmdThermTemp", tr("THERM Temperature...")},
                                  {cmdThermTimer, "cmdThermTimer", tr("THERM Timer...")}},
                                 this);
    auto *files = NewFileFrame();
    auto *heaters = NewButtonFrame("fraHeaterControl", tr("Heater Control"),
                                   {{cmdHeaters, "cmdHeaters", tr("On-Board Heaters")}}, this);

    auto *layout = new QGridLayout(this);
    layout->addWidget(fans, 0, 0);
    layout->addWidget(therm, 0, 1);
    layout->addWidget(files, 1, 0);
    layout->addWidget(heaters, 1, 1);
    for (auto *frame : {fans, therm, files, heaters}) {
        static_cast<QBoxLayout *>(frame->layout())->addStretch();
        frame->setMaximumWidth(frame->fontMetrics().averageCharWidth() * 60);
    }
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
}

QGroupBox *ControlPage::NewFileFrame() {
    auto *frame =
        NewButtonFrame("fraFileIO", tr("File I/O"),
                       {{cmdLogData, "cmdLogData", tr("Log Data To File...")},
                        {cmdSaveRegs, "cmdSaveRegs", tr("Save Current Setup...")},
                        {cmdRecallRegs, "cmdRecallRegs", tr("Recall Previous Setup ...")}},
                       this);
    prgbarLog = Named(new QProgressBar(frame), "prgbarLog");
    prgbarLog->setAccessibleName(tr("Progress of the log"));
    prgbarLog->setValue(0);
    prgbarLog->setTextVisible(false);
    lblLogProblem = Named(new QLabel(frame), "lblLogProblem");
    lblLogProblem->setTextFormat(Qt::PlainText);
    lblLogProblem->setWordWrap(true);
    lblLogProblem->hide();
    lblLogEntries = Named(new QLabel(QStringLiteral("0"), frame), "lblLogEntries");
    auto *caption = new QLabel(tr("Log Entries"), frame);
    caption->setBuddy(lblLogEntries);

    auto *entries = new QHBoxLayout;
    entries->addWidget(caption);
    entries->addWidget(lblLogEntries);
    entries->addStretch();
    lblFileResult = NewResultLabel(frame);
    tmrRecall = Named(new QTimer(this), "tmrRecall");
    tmrRecall->setSingleShot(true);
    auto *layout = static_cast<QBoxLayout *>(frame->layout());
    layout->addWidget(lblFileResult);
    layout->insertWidget(1, prgbarLog);
    layout->insertLayout(2, entries);
    layout->insertWidget(3, lblLogProblem);
    return frame;
}

void ControlPage::ConnectSignals() {
    connect(cmdConParam, &QPushButton::clicked, this, &ControlPage::cmdConParam_Click);
    connect(cmdAuto, &QPushButton::clicked, this, [this] { ShowForm<frmAutoControl>(this); });
    connect(cmdSetLookups, &QPushButton::clicked, this, [this] { ShowForm<frmLookup>(this); });
    connect(cmdManual, &QPushButton::clicked, this, &ControlPage::cmdManual_Click);
    connect(cmdThermTemp, &QPushButton::clicked, this, [this] { ShowForm<frmThermTemp>(this); });
    connect(cmdThermTimer, &QPushButton::clicked, this, [this] { ShowForm<frmThermTimer>(this); });
    connect(cmdHeaters, &QPushButton::clicked, this, &ControlPage::ShowHeaters);
    connect(cmdLogData, &QPushButton::clicked, this, &ControlPage::cmdLogData_Click);
    connect(cmdSaveRegs, &QPushButton::clicked, this, &ControlPage::cmdSaveRegs_Click);
    connect(cmdRecallRegs, &QPushButton::clicked, this, &ControlPage::cmdRecallRegs_Click);
    connect(tmrRecall, &QTimer::timeout, this, &ControlPage::RecallMore);
}

void ControlPage::DisableAuto() {
    Enable(*cmdAuto, false, OnlyAutomatic());
}

void ControlPage::DisableSetLookups() {
    Enable(*cmdSetLookups, false, OnlyAutomatic());
}

void ControlPage::DisableManual() {
    Enable(*cmdManual, false, OnlyManual());
}

void ControlPage::ShowControlType(bool automatic) {
    Enable(*cmdAuto, automatic, OnlyAutomatic());
    Enable(*cmdSetLookups, automatic, OnlyAutomatic());
    Enable(*cmdManual, !automatic, OnlyManual());
}

void ControlPage::ShowLog() {
    lblLogEntries->setText(ToQString(NumberText(static_cast<double>(LogEntryCount))));
    if (MaxLogEntries != 0) {
        prgbarLog->setMaximum(MaxLogEntries);
    }
    prgbarLog->setValue(MaxLogEntries != 0 ? LogEntryCount : 0);
    QFont font = cmdLogData->font();
    if (font.bold() == LoggingActive) {
        return; // neither started nor stopped
    }
    font.setBold(LoggingActive);
    cmdLogData->setFont(font);
    cmdLogData->setText(LoggingActive ? tr("Click to stop...") : tr("Log Data To File..."));
    lblLogProblem->setText(
        tr("The log was stopped: %1").arg(QString::fromLocal8Bit(LogProblem().c_str())));
    lblLogProblem->setVisible(!LogProblem().empty());
    if (!LogProblem().empty()) {
        TellProblem(lblLogProblem->text());
    }
}

void ControlPage::ShowFanSpeed(int fan, const QString &text) {
    if (auto *manual = LoadedForm<frmManual>()) {
        manual->ShowFanSpeed(fan, text);
    }
}

void ControlPage::ShowHeaterDuty(int heater, int duty) {
    if (auto *heaters = LoadedForm<frmHeaters>()) {
        heaters->ShowHeaterDuty(heater, duty);
    }
}

void ControlPage::TickDone() {
    if (auto *manual = LoadedForm<frmManual>()) {
        manual->MonitorTicked();
    }
}

void ControlPage::ShowMeasured() {
    if (auto *config = LoadedForm<frmConfig>()) {
        config->ShowMeasured();
    }
    if (auto *curve = LoadedForm<frmAutoControl>()) {
        curve->ShowMeasured();
    }
    if (auto *points = LoadedForm<frmLookup>()) {
        points->ShowMeasured();
    }
}

void ControlPage::cmdConParam_Click() {
    connect(&ShowForm<frmConfig>(this), &frmConfig::ControlTypeApplied, this,
            &ControlPage::ShowControlType, Qt::UniqueConnection);
}

/// Opens the log dialog, or stops a running log.
void ControlPage::cmdLogData_Click() {
    if (LoggingActive) {
        StopLog();
        ShowLog();
    } else {
        connect(&ShowForm<frmLogging>(this), &frmLogging::LogStarted, this, &ControlPage::ShowLog,
                Qt::UniqueConnection);
    }
}

void ControlPage::ShowHeaters() {
    ShowForm<frmHeaters>(this);
}

/// Reads the speeds again if the dialog is already open, and twice if it is not.
void ControlPage::cmdManual_Click() {
    ShowForm<frmManual>(this).Form_Load();
}

void ControlPage::cmdSaveRegs_Click() {
    const QString path = AskSaveFile(this, tr("Save Current Setup"), tr("Text Files (*.sav)"));
    if (!path.isEmpty()) {
        const Requester save("Save Current Setup");
        const Snapshot saved = SaveSnapshot(QFile::encodeName(path).toStdString());
        const QString problem = QString::fromLocal8Bit(saved.Problem.c_str());
        lblFileResult->setText(
            problem.isEmpty() ? RegistersText(saved.Registers.size(), tr("saved")) : problem);
        if (!problem.isEmpty()) {
            TellProblem(tr("The setup was not saved: %1").arg(problem));
        }
    }
}

void ControlPage::cmdRecallRegs_Click() {
    const QString path = AskOpenFile(this, tr("Recall Previous Setup"), tr("Text Files (*.sav)"));
    if (!path.isEmpty()) {
        recalled = ReadSnapshot(QFile::encodeName(path).toStdString());
        registersWritten = 0;
        RecallMore();
    }
}

/// Writes as many registers as a short time allows, and the others later: a file may have many and
/// an adapter may be slow.
void ControlPage::RecallMore() {
    const Requester recall("Recall Previous Setup");
    const size_t count = recalled.Registers.size();
    const double start = RunningSeconds();
    while (registersWritten < count && RunningSeconds() - start < recallSliceSeconds) {
        const auto &next = recalled.Registers[registersWritten];
        WriteRegister(next.Address, next.Value);
        ++registersWritten;
    }
    const bool isDone = registersWritten == count;
    for (auto *button : {cmdSaveRegs, cmdRecallRegs}) {
        button->setEnabled(isDone);
        button->setToolTip(isDone ? QString() : tr("A setup is being written to the chip"));
    }
    const QString problem = QString::fromLocal8Bit(recalled.Problem.c_str());
    const QString written = RegistersText(count, tr("written"));
    if (!isDone) {
        lblFileResult->setText(tr("%1 of %2").arg(registersWritten).arg(written));
        tmrRecall->start(0);
    } else if (problem.isEmpty()) {
        lblFileResult->setText(written);
    } else {
        lblFileResult->setText(count == 0 ? problem : tr("%1; %2").arg(written, problem));
        TellProblem(tr("The setup was not recalled as a whole: %1").arg(problem));
    }
}

} // namespace ztm
