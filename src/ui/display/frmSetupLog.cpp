#include "ui/display/frmSetupLog.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace ztm {

frmSetupLog::frmSetupLog()
    : Form(QStringLiteral("frmSetupLog")), lstSetupLog(new QListWidget(this)) {
    setWindowTitle(tr("Easy Setup Log"));
    auto *caption = new QLabel(tr("Actions performed when Easy Setup is selected"), this);
    caption->setBuddy(lstSetupLog);
    lstSetupLog->setAccessibleName(caption->text());
    lstSetupLog->setObjectName(QStringLiteral("lstSetupLog"));
    lstSetupLog->addItems({tr("Enable Monitoring"), tr("Enable Graphing")});

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(lstSetupLog);
}

} // namespace ztm
