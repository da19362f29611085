#pragma once

#include "ui/Form.h"

#include <array>

class QLabel;
class QPushButton;

namespace ztm {

class ValueSlider;

/// The dialog "Manual RPM Mode": a slider per fan for the required speed, and the measured
/// speeds. Showing a speed that was read writes nothing. A slider writes while it is moved, at
/// most once between two monitor ticks, and always the last value: at the next tick, or when the
/// handle is let go.
class frmManual final : public Form {
    Q_OBJECT

public:
    frmManual();

    /// Puts both sliders to the speeds that the chip holds.
    void Form_Load();

    /// Shows the measured speed of fan 0 or 1.
    void ShowFanSpeed(int fan, const QString &text);

    /// Writes what was moved since the last write. Comes with every monitor tick.
    void WriteMoved();

protected:
    void Form_Unload() override;

private:
    void SetupUi();
    QWidget *NewSliders();
    QLayout *NewSpeeds();
    void sldFan_Change(size_t fan);
    void WriteSpeed(size_t fan);
    void cmdClose_Click();

    QLabel *Label1;
    std::array<ValueSlider *, 2> sldFan;
    std::array<QLabel *, 2> Label2;
    std::array<QLabel *, 2> lblFanSpeed;
    QPushButton *cmdClose;
    std::array<bool, 2> moved{};   // and not yet written
    std::array<bool, 2> written{}; // since the last tick
};

} // namespace ztm
