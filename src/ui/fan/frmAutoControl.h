#pragma once

#include "fan/LookupTable.h"
#include "ui/fan/PointsDialog.h"

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
/// with its transition type and the control sources. A point is dragged, or picked up by a click
/// and put down by the next one; it can also be typed, or moved by the arrow keys on the graph.
/// Loading reads the table in use from the chip; nothing is written before Apply or OK. Numbers
/// that the chip cannot hold are marked in place and at the option of their point; writing limits
/// them, but does not write 1 to 75 RPM. A speed of the chip beyond the 16 bits of the table is
/// shown and kept until the point gets another. While the monitor measures, the graph shows where
/// each fan is on its curve.
class frmAutoControl final : public PointsDialog {
    Q_OBJECT

public:
    frmAutoControl();

    SpeedPoints Points() const override;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void SetupUi();
    QGroupBox *NewSourceFrame();
    QGroupBox *NewTransitionFrame();
    QGroupBox *NewPointFrame();
    QLayout *NewLines();
    void ConnectSignals();
    void Form_Load();
    void LayoutOneFan();

    void PlotData();
    void ShowSelectedPoint();
    void MarkPoints();
    void EditedAlone();

    void optControl_Click(int point);
    void txtTLookUp_Change();
    void txtRPMLookup_Change();
    void pctGraph_MouseDown(QPointF place);
    void pctGraph_MouseMove(QPointF place);
    void pctGraph_MouseUp(QPointF place);
    void PutDown(QPointF place);
    void PutBack();
    void MovePoint(int celsius, int rpm, bool isRepeated);
    void SetNumber(int point, QLineEdit &box, double number);
    void sldRange_Change(double value);
    FanPlan Plan() const override;
    QVariantList State() const override;
    void Restore(const QVariantList &state) override;
    QStringList EnterPoints(const std::vector<SpeedPoint> &points) override;
    void TellResult(const QString &text) override;
    QStringList OtherChanges() const override;
    void ShowFans() override;
    bool Apply() override;

    int SelectedPoint = 0;
    bool shownEightPointMode = false; // the table whose point the boxes show

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
    QLabel *lblOperatingPoint;
    QLabel *lblFileResult;
};

} // namespace ztm
