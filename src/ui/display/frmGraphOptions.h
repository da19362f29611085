#pragma once

#include "ui/kit/Dialog.h"

#include <array>

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

namespace ztm {

/// The dialog "Options": how often the monitor runs, what it does and which chart is shown. It
/// stores nothing before Apply or OK. For a monitoring interval outside 1 to 32767 ms or a negative
/// delay it shows a message and stores nothing.
class frmGraphOptions final : public Dialog {
    Q_OBJECT

public:
    frmGraphOptions();

signals:
    /// Everything has been stored.
    void Applied();

private:
    void SetupUi();
    QGroupBox *NewTimingFrame();
    QGroupBox *NewSmbusFrame();
    QGroupBox *NewEventsFrame();
    QGroupBox *NewGraphFrame();
    void Form_Load();

    bool Apply() override;

    QLineEdit *txtInterval;
    QLineEdit *txtSMBusDelay;
    QCheckBox *chkSMBusDelay;
    QCheckBox *chkEnMonitor;
    QCheckBox *chkEnGraph;
    QCheckBox *chkEnBargraph;
    QCheckBox *chkLimitMonitor;
    QCheckBox *chkMonInRW;
    QCheckBox *chkBigGraph;
    std::array<QRadioButton *, 3> optGraphType; // temperature, fan speed, both
};

} // namespace ztm
