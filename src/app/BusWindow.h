#pragma once

#include "adapter/i2c/BusControl.h"

#include <QWidget>

#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace ztm {

/// The window "I2C Bus" of ztm-eval-i2c. It comes alone and lets the user choose where the chip is;
/// nothing is chosen beforehand, and nothing is sent. "Use This Bus" opens the wizard. From then on
/// it shows how the bus fares beside the program, and the address can be changed only until a chip
/// has answered.
class BusWindow final : public QWidget {
    Q_OBJECT

public:
    BusWindow();

signals:
    void BusChosen();

protected:
    /// Ends the program, or makes room once the program is there.
    void closeEvent(QCloseEvent *event) override;

private:
    void SetupUi();
    void ConnectSignals();

    void cmbAddress_Changed();
    void cmdUse_Click();
    void tmrRefresh_Timer();

    void ListBuses();
    /// Whether the user accepts the address, asked about some; without a question about others.
    bool IsAddressAccepted() const;
    i2c::BusChoice Choice() const;
    void Choose();
    QString StateText(const i2c::BusReport &report) const;
    void FitToState();
    void ShowReport();

    std::vector<i2c::ListedBus> buses; ///< in the order of cmbBus
    i2c::BusChoice chosen;
    bool isInUse = false;
    QComboBox *cmbBus;
    QComboBox *cmbAddress;
    QLabel *lblState;
    QLabel *lblTransfers;
    QLabel *lblLastError;
    QPushButton *cmdUse;
    QPushButton *cmdQuit;
    QTimer *tmrRefresh;
};

/// The window, ready to open the wizard.
std::unique_ptr<QWidget> NewBusWindow();

} // namespace ztm
