#pragma once

#include "ui/kit/Form.h"

#include <array>

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace ztm {

/// The dialog "Heaters": a fixed duty or a ramp for each heater of the board. It shows the stored
/// settings with the duties just read from the adapter. Apply stores the settings and sends the
/// duties. Values out of range are marked in place and limited; the ramp continues when the dialog
/// is closed.
class frmHeaters final : public Form {
    Q_OBJECT

public:
    frmHeaters();

    /// Shows the duty in percent of heater 0 or 1.
    void ShowHeaterDuty(int heater, int duty);

protected:
    void Form_Unload() override;
    void EnterPressed() override { cmdApply_Click(); }
    void EscapePressed() override { cmdClose_Click(); }

private:
    struct HeaterControls {
        QLineEdit *txtPWM;
        QCheckBox *chkSWControl;
        QLineEdit *txtFrom;
        QLineEdit *txtTo;
        QLineEdit *txtIncrement;
        QLineEdit *txtInterval;
    };

    void SetupUi();
    QGroupBox *NewHeaterFrame(int heater);
    void Form_Load();
    void Store(size_t heater);
    void cmdApply_Click();
    void cmdClose_Click();

    std::array<HeaterControls, 2> controls;
    QPushButton *cmdApply;
    QPushButton *cmdClose;
};

} // namespace ztm
