#pragma once

#include "files/TextFile.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"

#include <QWidget>

class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace ztm {

/// The tab "Control": the buttons that open the fan, THERM and heater dialogs and those that
/// work on files, and the state of the measurement log.
class ControlPage final : public QWidget, public FanControlButtons {
    Q_OBJECT

public:
    explicit ControlPage(QWidget *parent = nullptr);
    ~ControlPage() override;

    void DisableAuto() override;
    void DisableSetLookups() override;
    void DisableManual() override;

    /// Enables the buttons of automatic or of manual fan control.
    void ShowControlType(bool automatic);

    /// Creates the file of a measurement log and writes the two lines above its entries.
    /// Returns the system's reason when that fails; no file stays open then.
    QString OpenLog(const QString &path, const std::array<bool, ChannelCount> &selected);

    /// Starts the log in the opened file with the settings as they are.
    void StartLog();

    /// Appends one entry to the log and counts it. When it cannot be written, the log stops and
    /// the reason is shown below the count, which is that of the entries in the file.
    void WriteLogEntry(double startTime);

    /// Opens the log's dialog, or stops the log that is running.
    void cmdLogData_Click();

private:
    void SetupUi();
    void ConnectSignals();
    void ShowLogCount();
    void SetLogButton(const QString &caption, bool bold);
    void ShowLogProblem(const QString &reason);
    void cmdManual_Click();
    void cmdSaveRegs_Click();
    void cmdRecallRegs_Click();
    QGroupBox *NewFileFrame();

    QPushButton *cmdAuto;
    QPushButton *cmdConParam;
    QPushButton *cmdManual;
    QPushButton *cmdSetLookups;
    QPushButton *cmdThermTemp;
    QPushButton *cmdThermTimer;
    QPushButton *cmdLogData;
    QPushButton *cmdSaveRegs;
    QPushButton *cmdRecallRegs;
    QProgressBar *prgbarLog;
    QLabel *lblLogEntries;
    QLabel *lblLogProblem;
    QPushButton *cmdHeaters;
    TextFileWriter logFile;
};

} // namespace ztm
