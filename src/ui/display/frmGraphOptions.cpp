#include "ui/display/frmGraphOptions.h"

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/frmBigGraph.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <cmath>

#include <limits>

namespace ztm {
namespace {

constexpr int32_t longestInterval = std::numeric_limits<int16_t>::max();

/// `GraphType` of the option with that index: the stored numbers are in reverse order.
constexpr int16_t GraphTypeOf(size_t option) {
    return static_cast<int16_t>(3 - option);
}

QCheckBox *NewCheck(const char *name, const QString &caption, QWidget *frame) {
    return Named(new QCheckBox(caption, frame), name);
}

/// A frame with its controls in a column.
QGroupBox *NewColumn(Frame *frame, std::initializer_list<QWidget *> controls) {
    auto *layout = new QVBoxLayout(frame);
    for (auto *control : controls) {
        layout->addWidget(control, 0, Qt::AlignLeft);
    }
    layout->addStretch();
    return frame;
}

/// A text box after its label.
QWidget *NewBoxRow(QLineEdit *&box, const char *name, const QString &caption, QWidget *frame) {
    auto *row = new QWidget(frame);
    box = Named(new QLineEdit(row), name);
    auto *label = new QLabel(caption, row);
    label->setBuddy(box);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(box);
    return row;
}

} // namespace

frmGraphOptions::frmGraphOptions() : Dialog(QStringLiteral("frmGraphOptions"), tr("Options")) {
    SetupUi();
    Form_Load();
}

void frmGraphOptions::SetupUi() {
    auto *layout = new QGridLayout(this);
    layout->addWidget(NewTimingFrame(), 0, 0);
    layout->addWidget(NewSmbusFrame(), 1, 0);
    layout->addWidget(NewEventsFrame(), 0, 1, 2, 1);
    layout->addWidget(NewGraphFrame(), 2, 0, 1, 2);
    layout->addLayout(NewOkApplyCancelRow(), 3, 0, 1, 2);
    layout->setRowStretch(2, 1);
}

QGroupBox *frmGraphOptions::NewTimingFrame() {
    auto *frame = Named(new Frame(tr("Timing"), this), "fraTiming");
    return NewColumn(
        frame, {NewBoxRow(txtInterval, "txtInterval", tr("Monitoring Interval (ms)"), frame)});
}

QGroupBox *frmGraphOptions::NewSmbusFrame() {
    auto *frame = Named(new Frame(tr("SMBus Delay"), this), "fraSMBusDelay");
    chkSMBusDelay = NewCheck("chkSMBusDelay", tr("Enable SMBus Delay"), frame);
    return NewColumn(
        frame, {chkSMBusDelay, NewBoxRow(txtSMBusDelay, "txtSMBusDelay", tr("Delay (ms)"), frame)});
}

QGroupBox *frmGraphOptions::NewEventsFrame() {
    auto *frame = Named(new Frame(tr("Enable Events"), this), "fraEnableEvents");
    chkEnMonitor = NewCheck("chkEnMonitor", tr("Enable Monitoring"), frame);
    chkEnGraph = NewCheck("chkEnGraph", tr("Enable Graphing"), frame);
    chkEnBargraph = NewCheck("chkEnBargraph", tr("Enable Bargraph"), frame);
    chkLimitMonitor = NewCheck("chkLimitMonitor", tr("Enable Limit Monitor"), frame);
    chkMonInRW = NewCheck("chkMonInRW", tr("Enable Monitoring in Read/Write tab"), frame);
    return NewColumn(frame, {chkEnMonitor, chkEnGraph, chkEnBargraph, chkLimitMonitor, chkMonInRW});
}

QGroupBox *frmGraphOptions::NewGraphFrame() {
    auto *frame = Named(new Frame(tr("Graph Options"), this), "fraGraphOptions");
    const QString captions[] = {tr("Graph Temperature only"), tr("Graph Fan Speed only"),
                                tr("Graph Temperature and Fan Speed")};
    for (size_t option = 0; option < optGraphType.size(); ++option) {
        optGraphType[option] =
            NewOption(IndexedName("optGraphType", option), captions[option], frame);
    }
    chkBigGraph = NewCheck("chkBigGraph", tr("Full-screen Graph"), frame);
    return NewColumn(frame, {optGraphType[0], optGraphType[1], optGraphType[2], chkBigGraph});
}

void frmGraphOptions::Form_Load() {
    WatchRange(*txtInterval, 1, longestInterval, tr("ms"));
    WatchNumber(
        *txtSMBusDelay, [](double delay) { return delay >= 0 && std::isfinite(delay); },
        tr("0 ms or more"));
    ShowNumber(*txtInterval, MonitorInterval);
    txtSMBusDelay->setText(ToQString(NumberText(SmbusDelayMs)));
    chkEnMonitor->setChecked(MonitoringEnabled);
    chkEnGraph->setChecked(GraphingEnabled);
    chkEnBargraph->setChecked(BargraphEnabled);
    chkBigGraph->setChecked(BigGraphEnabled);
    chkLimitMonitor->setChecked(LimitMonitorEnabled);
    chkSMBusDelay->setChecked(SmbusDelayEnabled);
    chkMonInRW->setChecked(MonitorInReadWrite);
    for (size_t option = 0; option < optGraphType.size(); ++option) {
        optGraphType[option]->setChecked(GraphType == GraphTypeOf(option));
    }
}

/// Stores the controls. If a number is out of range, shows a message, stores nothing and returns
/// false.
bool frmGraphOptions::Apply() {
    const int32_t interval = ToInt32(NumberIn(*txtInterval));
    if (interval < 1 || interval > longestInterval) {
        ShowMessage(tr("The monitoring interval must be 1 to %1 ms").arg(longestInterval),
                    windowTitle(), QMessageBox::Warning);
        txtInterval->setFocus();
        return false;
    }
    const auto delay = static_cast<float>(NumberIn(*txtSMBusDelay));
    if (!(delay >= 0 && std::isfinite(delay))) {
        ShowMessage(tr("The SMBus delay must be 0 ms or more"), windowTitle(),
                    QMessageBox::Warning);
        txtSMBusDelay->setFocus();
        return false;
    }
    MonitorInterval = static_cast<int16_t>(interval);
    SmbusDelayMs = delay;
    MonitoringEnabled = chkEnMonitor->isChecked();
    GraphingEnabled = chkEnGraph->isChecked();
    BargraphEnabled = chkEnBargraph->isChecked();
    BigGraphEnabled = chkBigGraph->isChecked();
    LimitMonitorEnabled = chkLimitMonitor->isChecked();
    SmbusDelayEnabled = chkSMBusDelay->isChecked();
    MonitorInReadWrite = chkMonInRW->isChecked();
    for (size_t option = 0; option < optGraphType.size(); ++option) {
        if (optGraphType[option]->isChecked()) {
            GraphType = GraphTypeOf(option);
        }
    }
    if (BigGraphEnabled) {
        ShowForm<frmBigGraph>();
    }
    emit Applied();
    return true;
}

} // namespace ztm
