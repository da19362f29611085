#pragma once

#include "ui/kit/Form.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace ztm {

/// The dialog "THERM Timer": whether the THERM timer runs, its time window, the THERM % limit,
/// the external reference input and which channels raise THERM events. It reads the chip when it
/// loads and writes it on OK. A limit above 100 becomes 100 while it is typed; one below 0 is
/// marked in place and written as 0.
class frmThermTimer final : public Form {
    Q_OBJECT

public:
    frmThermTimer();

private:
    void SetupUi();
    QGroupBox *NewTimerFrame();
    QGroupBox *NewEventsFrame();
    void Form_Load();
    void txtLimit_Change();
    void ApplyTimerChanges();
    void cmdOK_Click();
    void cmdCancel_Click();

    QCheckBox *chkEnableTimer;
    QComboBox *cmbWindow;
    QLineEdit *txtLimit;
    QCheckBox *chkEnRef;
    QCheckBox *chkEnLocal;
    QCheckBox *chkEnR1;
    QCheckBox *chkEnR2;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace ztm
