#include "ui/VisualDisplayPage.h"

#include "link/Registers.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "ui/Controls.h"
#include "ui/frmSetupLog.h"

#include <QHBoxLayout>

namespace ztm {

VisualDisplayPage::VisualDisplayPage(QWidget *parent)
    : QWidget(parent)
    , cmdEasySetup(NewButton("cmdEasySetup", tr("Easy Setup"), this))
    , cmdGraphOptions(NewButton("cmdGraphOptions", tr("Options"), this))
    , cmdSetUpLog(NewButton("cmdSetUpLog", tr("Setup Log"), this)) {
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdEasySetup);
    buttons->addWidget(cmdGraphOptions);
    buttons->addWidget(cmdSetUpLog);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addLayout(buttons);

    connect(cmdEasySetup, &QPushButton::clicked, this, &VisualDisplayPage::cmdEasySetup_Click);
    connect(cmdSetUpLog, &QPushButton::clicked, this, &VisualDisplayPage::cmdSetUpLog_Click);
}

void VisualDisplayPage::cmdEasySetup_Click() {
    MonitoringEnabled = true;
    GraphingEnabled = true;
    LimitMonitorEnabled = true;
    BargraphEnabled = true;
    WriteRegister(Configuration1, ReadRegister(Configuration1) | MonitorBit);
}

void VisualDisplayPage::cmdSetUpLog_Click() {
    ShowForm<frmSetupLog>();
}

} // namespace ztm
