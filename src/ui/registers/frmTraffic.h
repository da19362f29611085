#pragma once

#include "ui/kit/Form.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QTableView;

namespace ztm {

class SettingsExport;
class TrafficTable;

/// The window "Bus Traffic": what was transferred to and from the adapter, the newest below.
/// Selected writes can be taken along as code.
class frmTraffic final : public Form {
    Q_OBJECT

public:
    frmTraffic();

    /// Shows new transfers, at most ten times a second and unless paused.
    void Follow();

    QSize sizeHint() const override;

protected:
    void EscapePressed() override { close(); }

private:
    void SetupUi();
    void ConnectSignals();

    std::vector<uint64_t> SelectedTransfers() const;
    void ShowFiltered();
    void cmdClear_Click();
    void CopySelected();

    QLineEdit *txtFilter;
    QCheckBox *chkMonitor;
    QCheckBox *chkPause;
    QTableView *tblTraffic;
    TrafficTable *table;
    SettingsExport *settings;
    QPushButton *cmdClear;
    double followed = 0; // RunningSeconds
};

} // namespace ztm
