#pragma once

#include "files/RegisterComparison.h"
#include "ui/kit/Form.h"

#include <array>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace ztm {

class CompareTable;
class MapReading;
class SettingsExport;

/// The window "Compare Registers": two states of the registers side by side, each the chip, the
/// defaults, a snapshot file or a state that was kept. What differs can be written to the chip, or
/// be taken along as code.
class frmCompare final : public Form {
    Q_OBJECT

public:
    frmCompare();

    QSize sizeHint() const override;

protected:
    void EscapePressed() override;

private:
    enum Side { Left, Right };

    void SetupUi();
    void ConnectSignals();
    QComboBox *NewStateList(const char *name, const QString &accessibleName);

    void ShowStates();
    void ShowComparison();
    void ShowState();
    bool IsChip(Side side) const;
    bool ShowsUnreadChip() const;
    RegisterValues ValuesIn(Side side) const;
    QString NoteOf(Side side) const;

    void cmbState_Chosen(Side side);
    void OpenSnapshot(Side side);
    void cmdSwap_Click();
    void cmdReadChip_Click();
    void ChipRead(const RegisterValues &values);
    void cmdKeep_Click();
    void cmdWriteSelected_Click();
    void WriteMore();
    void EndWriting();

    std::array<QComboBox *, 2> cmbState;
    std::array<QLabel *, 2> lblNote;
    QPushButton *cmdSwap;
    QCheckBox *chkAll;
    QCheckBox *chkCheckAll;
    CompareTable *tblCompare;
    QLabel *lblResult;
    MapReading *prgReading;
    QPushButton *cmdReadChip;
    QPushButton *cmdKeep;
    SettingsExport *settings;
    QPushButton *cmdWriteSelected;
    QTimer *tmrWrite;

    std::array<int, 2> shownStates; // entries of the lists
    std::optional<RegisterValues> chip;
    double chipTime = 0; // RunningSeconds at which it was read
    std::vector<RegisterSetting> writing;
    size_t written = 0;
    size_t notTaken = 0;
};

} // namespace ztm
