#pragma once

#include "ui/kit/Form.h"

#include <array>

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace ztm {

/// The dialog "Options": how often the monitor runs, what it does and which chart is shown. It
/// stores nothing before Apply or OK. A monitoring interval outside 1 to 32767 ms or a delay
/// outside 0 to 32767 ms is refused with a message, and nothing is stored then.
class frmGraphOptions final : public Form {
    Q_OBJECT

public:
    frmGraphOptions();

private:
    void SetupUi();
    QGroupBox *NewTimingFrame();
    QGroupBox *NewSmbusFrame();
    QGroupBox *NewEventsFrame();
    QGroupBox *NewGraphFrame();
    void Form_Load();

    bool Apply();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

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
    QPushButton *cmdOK;
    QPushButton *cmdApply;
    QPushButton *cmdCancel;
};

} // namespace ztm
