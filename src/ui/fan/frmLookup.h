#pragma once

#include "fan/LookupTable.h"
#include "ui/fan/PointsDialog.h"

#include <array>
#include <string>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ztm {

/// The dialog "Set Lookup Points": the eight points of the lookup table as numbers. It reads the
/// chip when it loads and writes it on Apply or OK; test points and table files change only the
/// boxes. Numbers that the chip cannot hold are marked in place; writing limits them, but does not
/// write 1 to 75 RPM. A line below the table says what became of a file, or of pasted points.
class frmLookup final : public PointsDialog {
    Q_OBJECT

public:
    frmLookup();

    SpeedPoints Points() const override;

private:
    void SetupUi();
    QGroupBox *NewTableFrame();
    QLayout *NewButtonColumn();
    void ConnectSignals();
    void Form_Load();
    void ShowLayout();
    void WatchNumbers();

    void cmdTestData_Click();
    void cmdSaveLUT_Click();
    void cmdLoadLUT_Click();
    QString ShowFile(const std::array<std::string, LookupPoints> &points);
    FanPlan Plan() const override;
    QVariantList State() const override;
    void Restore(const QVariantList &state) override;
    QStringList EnterPoints(const std::vector<SpeedPoint> &points) override;
    void TellResult(const QString &text) override;
    bool Apply() override;

    QGroupBox *Frame1;
    std::array<QLabel *, 2> lblFan; // headings of the layout with a table for each fan
    std::array<QLabel *, LookupPoints> Label3;
    std::array<QLineEdit *, LookupPoints> txtTemp;
    std::array<QLineEdit *, LookupPoints> txtRPM;
    QLabel *lblFileResult;
    QPushButton *cmdTestData;
    QPushButton *cmdSaveLUT;
    QPushButton *cmdLoadLUT;
};

} // namespace ztm
