#pragma once

#include "ui/kit/Dialog.h"

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;

namespace ztm {

/// The dialog "THERM Timer": whether the THERM timer runs, its time window, the THERM % limit,
/// the external reference input and which channels raise THERM events. It reads the chip when it
/// loads and writes it on OK. A limit above 100 becomes 100 while it is typed; one below 0 is
/// marked in place and written as 0.
class frmThermTimer final : public Dialog {
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
    bool Apply() override;

    QCheckBox *chkEnableTimer;
    QComboBox *cmbWindow;
    QLineEdit *txtLimit;
    QCheckBox *chkEnRef;
    std::array<QCheckBox *, 3> chkEvents; // chkEnLocal, chkEnR1, chkEnR2
};

} // namespace ztm
