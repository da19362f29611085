#pragma once

#include "files/SnapshotFile.h"
#include "link/USBComms.h"

#include <QWidget>

class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

namespace ztm {

/// The tab "Control": buttons for the fan, THERM and heater dialogs and for files, and the state of
/// the measurement log.
class ControlPage final : public QWidget, public FanControlButtons {
    Q_OBJECT

public:
    explicit ControlPage(QWidget *parent = nullptr);
    ~ControlPage() override;

    void DisableAuto() override;
    void DisableSetLookups() override;
    void DisableManual() override;

    /// Shows the state of the measurement log: the button that starts or stops it, its entries, its
    /// progress, and why it stopped if the user did not stop it.
    void ShowLog();

    /// Opens the dialog of the heaters.
    void ShowHeaters();

    // Monitor tick updates for the dialogs that this page opens; no effect on one that is not open.

    /// Shows the measured speed of fan 0 or 1.
    void ShowFanSpeed(int fan, const QString &text);
    /// Shows the duty in percent of heater 0 or 1.
    void ShowHeaterDuty(int heater, int duty);
    /// A tick has passed.
    void TickDone();
    /// Whatever is measured or no longer measured: call after a tick, and now and then without one.
    void ShowMeasured();

private:
    void SetupUi();
    void ConnectSignals();
    /// Enables the buttons of automatic or of manual fan control.
    void ShowControlType(bool automatic);
    void cmdConParam_Click();
    void cmdLogData_Click();
    void cmdManual_Click();
    void cmdSaveRegs_Click();
    void cmdRecallRegs_Click();
    void RecallMore();
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
    QLabel *lblFileResult;
    QPushButton *cmdHeaters;

    Snapshot recalled;
    size_t registersWritten = 0; // of those recalled
    QTimer *tmrRecall;
};

} // namespace ztm
