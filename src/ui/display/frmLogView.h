#pragma once

#include "ui/kit/Form.h"

#include <QTimer>

#include <memory>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace ztm {

class StripChart;

/// Asks for the file of a measurement log; empty if the user cancelled.
QString AskLog(QWidget *parent);

/// The window "Recorded Log": a measurement log in a chart over elapsed seconds, and a second one
/// over it, dashed. A log is read in short steps, so the monitor keeps running meanwhile; until it
/// has been read, and if it cannot be, the window shows what it showed before.
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
    /// Moves the log laid over from there by so many seconds, to the left if negative.
    void ShiftSecond(double seconds);

    QSize sizeHint() const override;

protected:
    void EscapePressed() override;

private:
    struct RecordedLog;
    struct Opening;

    void SetupUi();
    void ConnectSignals();
    void Open(const QString &path, bool isSecond);
    void ReadOn();
    void EndOpening();
    void ShowFirst();
    void ShowSecond();
    void ShowTexts();
    void AskAndOpen(bool isSecond);

    std::unique_ptr<RecordedLog> first;
    std::unique_ptr<RecordedLog> second;
    std::unique_ptr<Opening> opening;
    QTimer reading{this};

    StripChart *stpLog = nullptr;
    QVBoxLayout *chartPlace;
    QWidget *openingRow;
    QProgressBar *prgbarOpen;
    QPushButton *cmdCancelOpen;
    QLabel *lblLog;
    QLabel *lblSecondLog;
    QLabel *lblShift;
    QLineEdit *txtShift;
    QPushButton *cmdOpenLog;
    QPushButton *cmdLayOver;
    QPushButton *cmdRemove;
};

} // namespace ztm
