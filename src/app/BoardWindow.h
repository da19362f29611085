#pragma once

#include "adapter/sim/BoardControl.h"

#include <QWidget>

#include <array>
#include <vector>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QSpinBox;
class QTimer;

namespace ztm {

/// The window "Simulated Board" lets the user of ztm-eval-sim change board and bench. Changes take
/// effect immediately, and it shows the true state of the board. It is not one of the program's
/// windows: the program neither waits for it nor closes it.
class BoardWindow final : public QWidget {
    Q_OBJECT

public:
    BoardWindow();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QGroupBox *NewBoardFrame();
    QGroupBox *NewBenchFrame();
    QGroupBox *NewTruthFrame();
    QCheckBox *NewCheck(const char *name, const QString &caption, bool sim::BoardSettings::*field);
    void ConnectSignals();

    /// Sets the board to what the controls show.
    void Arrange();
    /// Shows the board's settings in the controls.
    void ShowSettings();
    /// Shows the true values, and enables the controls that can be used.
    void Refresh();

    struct Check {
        QCheckBox *box;
        bool sim::BoardSettings::*field;
    };
    std::vector<Check> checks;
    QComboBox *cmbVariant;
    QComboBox *cmbAddress;
    QSpinBox *spnAmbient;
    std::array<QComboBox *, sim::Physics::remoteCount> cmbDiode{};
    std::array<QComboBox *, sim::Physics::fanCount> cmbFan{};
    QCheckBox *chkNoise;
    QLabel *lblFirmware;
    QLabel *lblBoard;
    std::array<QLabel *, sim::Physics::remoteCount> lblRemote{};
    std::array<QLabel *, sim::Physics::fanCount> lblFan{};
    std::array<QLabel *, sim::Physics::heaterCount> lblHeater{};
    QTimer *tmrRefresh;
};

} // namespace ztm
