#pragma once

#include "ui/kit/Dialog.h"

#include <array>
#include <vector>

class QComboBox;
class QGroupBox;
class QLabel;
class QRadioButton;
class QTabWidget;

namespace ztm {

/// The dialog "Fan Configuration": control type, layout of the lookup table, and for each fan its
/// poles, control source, response and ramp rate. It reads six registers when it loads and writes
/// the same six on Apply or OK. 0 and 9 to 15 poles, which the list does not have, are shown
/// unchanged, so that Apply writes them back. While automatic control is chosen and the chip is
/// under manual control, a line warns of fans that the lookup table would stop.
class frmConfig final : public Dialog {
    Q_OBJECT

public:
    frmConfig();

    /// Shows what has been measured; call after a monitor tick, and now and then.
    void ShowMeasured();

signals:
    /// Apply has written the control type.
    void ControlTypeApplied(bool automatic);

private:
    void SetupUi();
    QWidget *NewGeneralPage();
    QWidget *NewFanPage(size_t fan);
    void Form_Load();
    void LayoutOneFan();
    void SSTab1_Click();
    std::vector<QComboBox *> BoxesInTurn() const;
    QString Warning() const;
    void ShowWarning();
    bool Apply() override;

    double lastShown = 0;

    QTabWidget *SSTab1;
    QGroupBox *Frame5;
    QRadioButton *optAuto;
    QRadioButton *optManual;
    QGroupBox *Frame1;
    QRadioButton *opt4Points;
    QRadioButton *opt8Points;
    QLabel *lblWarning;
    std::array<QComboBox *, 2> cmbPoles;
    std::array<QComboBox *, 2> cmbSource;
    QComboBox *cmbSource33;
    std::array<QComboBox *, 2> cmbRPMResponse;
    std::array<QComboBox *, 2> cmbRamp;
};

} // namespace ztm
