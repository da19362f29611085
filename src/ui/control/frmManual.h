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

/// The dialog "Manual RPM Mode": a slider per fan sets its required speed, next to the measured
/// one. Values read from the chip are not written back.
///
/// A dragged slider writes its first move immediately, then at most once per monitor tick, and
/// always its last value, as soon as the handle is released or the dialog closed. Changes by keys
/// and wheel are written immediately.
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
    void EscapePressed() override { cmdClose_Click(); }

private:
    /// Slider moves that have not been written to the chip yet.
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
    QLabel *lblNote;
    std::array<QLabel *, 2> Label2;
    std::array<QLabel *, 2> lblFanSpeed;
    QPushButton *cmdClose;
    QSpacerItem *leftOfSliders;
    std::array<Writing, 2> writing;
};

} // namespace ztm
