#pragma once

#include "ui/kit/Form.h"

#include <array>
#include <cstddef>

class QHBoxLayout;
class QLabel;
class QLayout;
class QPushButton;
class QSpacerItem;

namespace ztm {

class ValueSlider;

/// The dialog "Manual RPM Mode": a slider per fan sets its required speed, beside the measured
/// one. What is read from the chip and shown is not written back.
///
/// A slider writes while it is dragged: its first move at once, then at most once per monitor
/// tick, and its last value always, as soon as the handle is let go or the dialog closed. What
/// the keys and the wheel do is written at once.
class frmManual final : public Form {
    Q_OBJECT

public:
    frmManual();

    /// Lays the dialog out for the variant and shows the speeds that the chip holds.
    void Form_Load();

    /// Shows the measured speed of fan 0 or 1.
    void ShowFanSpeed(int fan, const QString &text);

    /// A monitor tick has passed: sliders may write again.
    void MonitorTicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    void Form_Unload() override;

private:
    /// What of a slider's moves the chip has yet to be told.
    struct Writing {
        bool pending = false;       // the chip holds an earlier value
        bool writtenInTick = false; // since the last monitor tick
    };

    void SetupUi();
    QLayout *NewSliderRow();
    QLayout *NewSpeedRows();
    void ConnectSignals();
    void LayOutForOneFan();

    void sldFan_Change(size_t fan);
    void Write(size_t fan);
    void WritePending();
    void cmdClose_Click();

    std::array<ValueSlider *, 2> sldFan;
    QLabel *Label1;
    std::array<QLabel *, 2> Label2;
    std::array<QLabel *, 2> lblFanSpeed;
    QPushButton *cmdClose;
    QSpacerItem *leftOfSliders;
    std::array<Writing, 2> writing;
};

} // namespace ztm
