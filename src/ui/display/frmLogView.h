#pragma once

#include "ui/instruments/ChartCursors.h"
#include "ui/kit/Form.h"

#include <QTimer>

#include <memory>
#include <vector>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace ztm {

class MeasurementPanel;
class StripChart;
struct MeasuredTrace;

/// Asks for the file of a measurement log; empty if the user cancelled.
QString AskLog(QWidget *parent);

/// The window "Recorded Log": a measurement log in a chart over elapsed seconds, and a second one
/// over it, dashed, with two cursors of its own that measure in both. A log is read in short steps,
/// so the monitor keeps running meanwhile; until it has been read, and if it cannot be, the window
/// shows what it showed before.
class frmLogView final : public Form {
    Q_OBJECT

public:
    frmLogView();
    ~frmLogView() override;

    /// Shows a log in place of all that is shown.
    void OpenLog(const QString &path) { Open(path, false); }
    /// Lays a log over the one shown, in place of the last one laid over it. Both start at the same
    /// place.
    void LayOver(const QString &path) { Open(path, true); }
    QSize sizeHint() const override;

protected:
    void EscapePressed() override;

private:
    struct RecordedLog;
    struct Opening;

    void SetupUi();
    void SetupSecondRow();
    void ConnectSignals();
    void Open(const QString &path, bool isSecond);
    void ReadOn();
    void EndOpening();
    void ShowFirst();
    void ShowSecond();
    void ShowTexts();
    void ShowButtons();
    void AskAndOpen(bool isSecond);
    void ShiftSecond(double seconds);
    void cmdAlignCursors_Click();
    double ShiftOfSecond() const;
    std::vector<MeasuredTrace> ShownTraces() const;

    std::unique_ptr<RecordedLog> first;
    std::unique_ptr<RecordedLog> second;
    std::unique_ptr<Opening> opening;
    QTimer reading{this};
    ChartCursors cursors;
    double shift = 0; // of the second log, in seconds

    StripChart *stpLog = nullptr;
    QVBoxLayout *chartPlace;
    MeasurementPanel *measurement;
    QWidget *openingRow;
    QProgressBar *prgbarOpen;
    QPushButton *cmdCancelOpen;
    QLabel *lblLog;
    QPushButton *cmdOpenLog;
    QPushButton *cmdLayOver;
    QWidget *secondRow;
    QLabel *lblSecondLog;
    QLineEdit *txtShift;
    QPushButton *cmdAlignStarts;
    QPushButton *cmdAlignCursors;
    QPushButton *cmdRemove;
};

} // namespace ztm
