#pragma once

#include "monitor/Channels.h"
#include "ui/kit/Dialog.h"

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace ztm {

/// The dialog "Logging": which channels the measurement log holds, how often an entry is written
/// and when the log ends. OK asks for the file and starts the log. A negative interval or limit, or
/// one above 2147483647, is refused with a message. If the file cannot be created, the dialog stays
/// open and shows the reason, with nothing changed.
class frmLogging final : public Dialog {
    Q_OBJECT

public:
    frmLogging();

signals:
    /// OK has started a log.
    void LogStarted();

private:
    void SetupUi();
    QGroupBox *NewMeasurementsFrame();
    QGroupBox *NewOptionsFrame();
    void PlaceChannels();
    void Form_Load();
    bool Apply() override;

    std::array<QCheckBox *, ChannelCount> chkLog;
    QLineEdit *txtLogInt;
    QLineEdit *txtNumLogs;
    QLabel *lblProblem;
};

} // namespace ztm
