#pragma once

#include "fan/LookupTable.h"
#include "ui/kit/Dialog.h"

#include <array>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace ztm {

class LookupGraph;
class LookupGraphPanel;
class ValueSlider;

/// The window "Auto-Control Response": the lookup table as a curve of fan speed over temperature,
/// with its transition type and the control sources. A point is picked up by a click on it and
/// put down by the next one, typed, or moved by the arrow keys on the graph. Loading reads the
/// table in use from the chip; nothing reaches the chip before Apply or OK. Numbers that the
/// chip cannot hold are marked in place and limited when they are written.
class frmAutoControl final : public Dialog {
    Q_OBJECT

public:
    frmAutoControl();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void SetupUi();
    QGroupBox *NewSourceFrame();
    QGroupBox *NewTransitionFrame();
    QGroupBox *NewPointFrame();
    void ConnectSignals();
    void Form_Load();
    void LayoutOneFan();

    void PlotData();
    void ShowSelectedPoint();
    void MarkRpm();

    void optControl_Click(int point);
    void txtTLookUp_Change();
    void txtRPMLookup_Change();
    void pctGraph_MouseDown(QPointF place);
    void pctGraph_MouseMove(QPointF place);
    void MovePoint(int celsius, int rpm);
    void sldRange_Change(double value);
    bool Apply() override;

    int SelectedPoint = 0;
    bool shownEightPointMode = false;              // which table the boxes show a point of
    std::array<int16_t, LookupPoints> loadedRpm{}; // as the window read them from the chip

    LookupGraphPanel *graphPanel;
    LookupGraph *pctGraph;
    ValueSlider *sldRange;
    QLabel *Label3;
    QLabel *Label4;
    std::array<QComboBox *, 2> cmbControl;
    QComboBox *cmbSource33;
    QRadioButton *optDiscrete;
    QRadioButton *optLinear;
    std::array<QRadioButton *, LookupPoints> optControl;
    QLineEdit *txtTLookUp;
    QLineEdit *txtRPMLookup;
};

} // namespace ztm
