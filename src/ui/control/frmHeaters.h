#pragma once

#include "ui/kit/Dialog.h"

#include <array>
#include <optional>

class QCheckBox;
class QGroupBox;
class QLineEdit;

namespace ztm {

/// The dialog "Heaters": a fixed duty or a ramp for each heater of the board. It shows the stored
/// settings with the duties just read from the adapter. Apply stores the settings and sends the
/// duties. Values out of range are marked in place and limited; the ramp continues when the dialog
/// is closed. The boxes of a ramp that is off are gray, but can be edited.
class frmHeaters final : public Dialog {
    Q_OBJECT

public:
    frmHeaters();

    /// Shows the duty in percent of heater 0 or 1; while the user is typing another one, only when
    /// that is applied, undone or left.
    void ShowHeaterDuty(int heater, int duty);

protected:
    void Form_Unload() override;
    void EscapePressed() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct HeaterControls {
        QLineEdit *txtPWM;
        QCheckBox *chkSWControl;
        QLineEdit *txtFrom;
        QLineEdit *txtTo;
        QLineEdit *txtIncrement;
        QLineEdit *txtInterval;
        std::optional<int> heldDuty{}; // sent by the ramp and not shown yet
    };

    void SetupUi();
    QGroupBox *NewHeaterFrame(int heater);
    void ConnectSignals();
    void Form_Load();
    void ShowHeldDuties();
    void ShowRampState(size_t heater);
    void Store(size_t heater);
    bool Apply() override;

    std::array<HeaterControls, 2> controls;
};

} // namespace ztm
