#include "ui/registers/RegisterMapFrame.h"

#include "ui/instruments/ToggleIndicator.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Form.h"
#include "ui/registers/MapReading.h"
#include "ui/registers/RegisterTreeView.h"
#include "ui/registers/frmCompare.h"
#include "ui/registers/frmTraffic.h"

#include <QLabel>
#include <QVBoxLayout>

namespace ztm {

RegisterMapFrame::RegisterMapFrame(QWidget *parent)
    : Frame(tr("Register Map "), parent)
    , TreeView1(Named(new RegisterTreeView(this), "TreeView1"))
    , prgReadAll(Named(new MapReading("Read All", this), "prgReadAll"))
    , cmdReadAll(NewButton("cmdReadAll", tr("Read All"), this))
    , cmdCompare(NewButton("cmdCompare", tr("Compare..."), this))
    , cmdTraffic(NewButton("cmdTraffic", tr("Bus Traffic..."), this))
    , Shape1(Named(new ToggleIndicator(this), "Shape1"))
    , lampCaption(new QLabel(tr("USB adapter"), this)) {
    SetupUi();
    ConnectSignals();
}

void RegisterMapFrame::SetupUi() {
    setObjectName(QStringLiteral("fraRegMap"));
    TreeView1->setAccessibleName(tr("Registers by function"));
    cmdReadAll->setToolTip(tr("Reads every register but those that reading changes; Esc stops it"));
    Shape1->setAccessibleName(lampCaption->text());
    Shape1->hide();
    lampCaption->hide();

    auto *lamp = new QHBoxLayout;
    lamp->addWidget(Shape1);
    lamp->addWidget(lampCaption);
    lamp->addWidget(prgReadAll, 1);
    auto *buttons = new QHBoxLayout;
    for (auto *button : {cmdReadAll, cmdCompare, cmdTraffic}) {
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(TreeView1);
    layout->addLayout(buttons);
    layout->addLayout(lamp);
}

void RegisterMapFrame::ConnectSignals() {
    connect(cmdReadAll, &QPushButton::clicked, this, &RegisterMapFrame::cmdReadAll_Click);
    connect(prgReadAll, &MapReading::RunningChanged, TreeView1, &RegisterTreeView::ShowSeen);
    connect(cmdCompare, &QPushButton::clicked, this, &RegisterMapFrame::cmdCompare_Click);
    connect(cmdTraffic, &QPushButton::clicked, this, &RegisterMapFrame::cmdTraffic_Click);
}

void RegisterMapFrame::cmdReadAll_Click() {
    prgReadAll->Start();
}

bool RegisterMapFrame::StopReading() {
    const bool isReading = prgReadAll->IsRunning();
    prgReadAll->Stop();
    return isReading;
}

void RegisterMapFrame::cmdCompare_Click() {
    ShowForm<frmCompare>(this);
}

void RegisterMapFrame::cmdTraffic_Click() {
    ShowForm<frmTraffic>(this);
}

void RegisterMapFrame::SetRed() {
    ShowLamp(true, tr("The USB adapter has no firmware"));
}

void RegisterMapFrame::SetGreen() {
    ShowLamp(false, tr("The USB adapter is running"));
}

void RegisterMapFrame::ShowLamp(bool alarm, const QString &state) {
    Shape1->SetAlarm(alarm);
    Shape1->setToolTip(state);
    Shape1->setAccessibleDescription(state);
}

void RegisterMapFrame::Show() {
    Shape1->show();
    lampCaption->show();
}

} // namespace ztm
