#pragma once

#include "ui/kit/Dialog.h"

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace ztm {

/// The dialog "THERM Temperature": the THERM limits in °C, the THERM hysteresis and the boost
/// disable bit. It reads the chip when it loads and writes it on OK. A limit outside −64 to 191 °C
/// or a hysteresis outside 0 to 15 is marked in place; the nearest limit that can be encoded and
/// the lower four bits of the hysteresis are written.
class frmThermTemp final : public Dialog {
    Q_OBJECT

public:
    frmThermTemp();

private:
    void SetupUi();
    QGroupBox *NewLimitsFrame();
    QGroupBox *NewControlFrame();
    std::array<QLineEdit *, 3> Limits() const;
    void Form_Load();
    void ApplyTempChanges();
    bool Apply() override;

    QLabel *Label2;
    QLabel *Label3;
    QWidget *spinR2;
    QLineEdit *txtLocal;
    QLineEdit *txtR1;
    QLineEdit *txtR2;
    QLineEdit *txtHyst;
    QCheckBox *chkBoost;
};

} // namespace ztm
