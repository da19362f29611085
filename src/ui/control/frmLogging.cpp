#include "ui/control/frmLogging.h"

#include "link/LinkState.h"
#include "monitor/MeasurementLog.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Problems.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QCheckBox>
#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <cmath>
#include <limits>
#include <optional>

namespace ztm {
namespace {

constexpr int boxCharacters = 12;

// In twips, within the frame.
constexpr int channelLeft = 240;
constexpr int channelHeight = 360;
constexpr std::array<int, ChannelCount> channelTops{240, 600, 960, 1320, 1680, 2040};
constexpr std::array<int, ChannelCount> channelTopsZTM7710{600, 960, 0, 1320, 0, 1680};
constexpr int frameHeight = 2520;

/// The number in a box, rounded to a whole number from 0 to the largest 32-bit one; otherwise none.
std::optional<int32_t> WholeNumberIn(const QLineEdit &box) {
    const double number = std::nearbyint(NumberIn(box));
    if (number < 0 || number > std::numeric_limits<int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<int32_t>(number);
}

/// Asks for another number in a box.
void Refuse(QLineEdit &box, const QString &what) {
    ShowMessage(
        QObject::tr("%1 must be 0 to %2").arg(what).arg(std::numeric_limits<int32_t>::max()),
        box.window()->windowTitle(), QMessageBox::Warning);
    box.setFocus();
    box.selectAll();
}

QLineEdit *NewNumberBox(const char *name, QWidget *frame) {
    auto *box = Named(new QLineEdit(frame), name);
    box->setFixedWidth(box->fontMetrics().averageCharWidth() * boxCharacters +
                       box->sizeHint().height());
    return box;
}

} // namespace

frmLogging::frmLogging() : Dialog(QStringLiteral("frmLogging"), tr("Logging")) {
    SetupUi();
    Form_Load();
}

void frmLogging::SetupUi() {
    lblProblem = Named(new QLabel(this), "lblProblem");
    lblProblem->setTextFormat(Qt::PlainText);
    lblProblem->setWordWrap(true);
    lblProblem->hide();
    auto *layout = new QGridLayout(this);
    layout->addWidget(NewMeasurementsFrame(), 0, 0);
    layout->addWidget(NewOptionsFrame(), 0, 1);
    layout->addWidget(lblProblem, 1, 0, 1, 2);
    layout->addLayout(NewOkCancelRow(), 2, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(0, 1);
}

QGroupBox *frmLogging::NewMeasurementsFrame() {
    auto *frame = Named(new Frame(tr("Measurements"), this), "fraMeasurements");
    const QString captions[] = {tr("Local"), tr("Remote1"), tr("Remote2"),
                                tr("Fan1"),  tr("Fan2"),    tr("THERM%")};
    for (size_t channel = 0; channel < chkLog.size(); ++channel) {
        chkLog[channel] = new QCheckBox(captions[channel], frame);
        chkLog[channel]->setObjectName(IndexedName("chkLog", channel));
    }
    return frame;
}

QGroupBox *frmLogging::NewOptionsFrame() {
    auto *frame = Named(new Frame(tr("Options"), this), "fraOptions");
    txtLogInt = NewNumberBox("txtLogInt", frame);
    txtNumLogs = NewNumberBox("txtNumLogs", frame);
    WatchRange(*txtLogInt, 0, std::numeric_limits<int32_t>::max(), tr("ms"));
    WatchRange(*txtNumLogs, 0, std::numeric_limits<int32_t>::max(), tr("entries"));
    auto *layout = new QGridLayout(frame);
    AddRow(*layout, 0, tr("Logging Interval (ms)"), txtLogInt, Qt::AlignLeft);
    AddRow(*layout, 1, tr("Max Number of  Log Entries"), txtNumLogs, Qt::AlignLeft);
    layout->addWidget(new QLabel(tr("(Set to zero for unlimited entries)"), frame), 2, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(3, 1);
    return frame;
}

/// One row per channel; a larger font stretches all rows alike.
void frmLogging::PlaceChannels() {
    const auto &tops = HasOneFan() ? channelTopsZTM7710 : channelTops;
    const double rowHeight = Twips(channelHeight, *this);
    const double stretch = std::max(1.0, chkLog[0]->sizeHint().height() / rowHeight);
    int width = 0;
    for (size_t channel = 0; channel < chkLog.size(); ++channel) {
        QCheckBox &box = *chkLog[channel];
        box.adjustSize();
        box.move(Twips(channelLeft, *this), qRound(stretch * Twips(tops[channel], *this)));
        width = std::max(width, box.width());
    }
    QWidget &frame = *chkLog[0]->parentWidget();
    const QSize rows(2 * Twips(channelLeft, *this) + width,
                     qRound(stretch * Twips(frameHeight, *this)));
    frame.setMinimumSize(rows.expandedTo(frame.minimumSizeHint()));
}

void frmLogging::Form_Load() {
    if (HasOneFan()) {
        chkLog[2]->hide();
        chkLog[4]->hide();
        chkLog[1]->setText(tr("Remote"));
        chkLog[3]->setText(tr("Fan Speed"));
    }
    PlaceChannels();
    for (size_t channel = 0; channel < chkLog.size(); ++channel) {
        chkLog[channel]->setChecked(LogSelected[channel]);
    }
    ShowNumber(*txtLogInt, LogInterval);
    ShowNumber(*txtNumLogs, MaxLogEntries);
}

/// Asks for the file and starts the log.
bool frmLogging::Apply() {
    const auto interval = WholeNumberIn(*txtLogInt);
    const auto entries = WholeNumberIn(*txtNumLogs);
    if (!interval) {
        Refuse(*txtLogInt, tr("The logging interval in ms"));
        return false;
    }
    if (!entries) {
        Refuse(*txtNumLogs, tr("The number of log entries"));
        return false;
    }
    const QString path = AskSaveFileOfKind(this, tr("Log Data To File"), tr("Text Files (*.xls)"));
    if (path.isEmpty()) {
        return false;
    }
    LogSettings settings{{}, *interval, *entries};
    for (size_t channel = 0; channel < chkLog.size(); ++channel) {
        settings.Selected[channel] = chkLog[channel]->isChecked();
    }
    const std::string problem = StartLog(QFile::encodeName(path).toStdString(), settings);
    if (!problem.empty()) {
        lblProblem->setText(
            tr("%1 could not be written: %2").arg(path, QString::fromLocal8Bit(problem.c_str())));
        lblProblem->show();
        TellProblem(lblProblem->text());
        return false;
    }
    emit LogStarted();
    return true;
}

} // namespace ztm
