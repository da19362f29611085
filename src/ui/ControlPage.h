#pragma once

#include "link/USBComms.h"

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

private:
    void SetupUi();
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
    QPushButton *cmdHeaters;
};

} // namespace ztm
