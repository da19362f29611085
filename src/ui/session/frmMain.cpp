#include "ui/session/frmMain.h"

#include "fan/LookupGraphScale.h"
#include "files/RegisterComparison.h"
#include "link/Heaters.h"
#include "link/LinkState.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "monitor/Events.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "regmap/RegisterTree.h"
#include "ui/control/ControlPage.h"
#include "ui/display/VisualDisplayPage.h"
#include "ui/kit/Problems.h"
#include "ui/kit/Text.h"
#include "ui/registers/RegisterAccessPage.h"
#include "ui/registers/RegisterMapFrame.h"
#include "ui/registers/frmTraffic.h"
#include "ui/session/AboutPage.h"
#include "ui/session/StatusBar.h"

#include <QScopedValueRollback>
#include <QScreen>
#include <QStyle>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace ztm {
namespace {

constexpr int statusIntervalMs = 200; // ticks may be half a minute apart

} // namespace

frmMain::frmMain(bool usbChosen)
    : Form(QStringLiteral("frmMain"))
    , SSTab1(new QTabWidget(this))
    , about(new AboutPage)
    , registerAccess(new RegisterAccessPage)
    , visualDisplay(new VisualDisplayPage)
    , control(new ControlPage)
    , tmrMain(new QTimer(this))
    , tmrStatus(new QTimer(this))
    , monitorLoop(*this) {
    SetupUi();
    ConnectSignals();
    // The window manager tells the size of its frame only once the window is shown: ample room.
    const int titleBar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    resize(sizeHint().boundedTo(screen()->availableSize() - QSize(titleBar, 2 * titleBar)));
    ResetTraffic();
    const Requester sessionStart("Session Start");
    StartAdapter(usbChosen, registerAccess->Map());
}

void frmMain::SetupUi() {
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    SSTab1->addTab(about, tr("About"));
    SSTab1->addTab(registerAccess, tr("Register Access"));
    SSTab1->addTab(visualDisplay, tr("Visual Display"));
    SSTab1->addTab(control, tr("Control"));
    tmrMain->setObjectName(QStringLiteral("tmrMain"));
    tmrMain->setTimerType(Qt::PreciseTimer); // others come early by up to 5 %

    tmrStatus->setObjectName(QStringLiteral("tmrStatus"));

    stbMain = new StatusBar(this); // behind the pages in the order of the Tab key
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addWidget(stbMain);
    layout->setSpacing(0);
    QMargins margins = layout->contentsMargins();
    margins.setTop(margins.top() / 2); // the tabs and the bar have room of their own
    margins.setBottom(0);
    layout->setContentsMargins(margins);
}

void frmMain::ConnectSignals() {
    connect(SSTab1, &QTabWidget::currentChanged, this, &frmMain::SSTab1_Click);
    connect(tmrMain, &QTimer::timeout, this, &frmMain::tmrMain_Timer);
    connect(tmrStatus, &QTimer::timeout, this, &frmMain::tmrStatus_Timer);
    connect(stbMain, &StatusBar::PageWanted, this,
            [this](MainTab tab) { SSTab1->setCurrentIndex(static_cast<int>(tab)); });
    connect(stbMain, &StatusBar::OptionsWanted, visualDisplay,
            &VisualDisplayPage::cmdGraphOptions_Click);
    connect(stbMain, &StatusBar::HeatersWanted, control, &ControlPage::ShowHeaters);
    connect(visualDisplay, &VisualDisplayPage::MonitorPeriodWanted, this,
            [this] { SetTimerPeriod(MonitorInterval); });
}

QSize frmMain::sizeHint() const {
    return {960, 640};
}

void frmMain::InitMainWindow() {
    ResetMonitorSettings();
    ResetMeasurementLog();
    ResetEvents();
    ResetKeptStates();
    SmbusDelayMs = DefaultSmbusDelayMs;
    SmbusDelayEnabled = true;
    ResetLookupGraphScale();
    about->ShowTitle();
    setWindowTitle(ToQString(DeviceName) + tr(" Evaluation Software"));
    for (const int32_t address : {1, 2, 3}) {
        AfterRegisterWrite(address);
    }
    tmrMain->start(MonitorInterval);
    ResetHeaters();
    ResetProblems();
    tmrStatus->start(statusIntervalMs);
    tmrStatus_Timer();
}

void frmMain::StopMonitor() {
    for (Form *form : LoadedForms()) {
        for (auto *timer : form->findChildren<QTimer *>()) {
            timer->stop();
        }
    }
}

void frmMain::SSTab1_Click(int tab) {
    const Requester newTab("Tab");
    if (static_cast<MainTab>(tab) == MainTab::RegisterAccess) {
        registerAccess->ShowRegister(SelectedRegisterIndex);
    } else if (static_cast<MainTab>(tab) == MainTab::VisualDisplay) {
        visualDisplay->SetupMonitorTab();
    }
    tmrStatus_Timer();
}

void frmMain::tmrMain_Timer() {
    if (ticking) {
        return;
    }
    const QScopedValueRollback<bool> guard(ticking, true);
    monitorLoop.Tick();
}

void frmMain::tmrStatus_Timer() {
    stbMain->ShowState(ShownTab());
    registerAccess->ShowSeen();
    if (auto *traffic = LoadedForm<frmTraffic>()) {
        traffic->Follow();
    }
    control->ShowMeasured();
}

void frmMain::SetTimerPeriod(int milliseconds) {
    if (tmrMain->interval() != milliseconds) {
        tmrMain->setInterval(milliseconds);
    }
}

MainTab frmMain::ShownTab() const {
    return static_cast<MainTab>(SSTab1->currentIndex());
}

bool frmMain::ContinuousReadChecked() const {
    return registerAccess->ContinuousReadChecked();
}

void frmMain::ReadShownRegister() {
    registerAccess->ReadAddress();
}

void frmMain::UpdateAlerts() {
    visualDisplay->UpdateAlerts();
}

void frmMain::UpdateGauge() {
    visualDisplay->UpdateGauge();
}

void frmMain::UpdateCharts() {
    visualDisplay->UpdateCharts();
}

void frmMain::ShowFanSpeed(int fan, const std::string &text) {
    control->ShowFanSpeed(fan, ToQString(text));
}

void frmMain::ShowLog() {
    control->ShowLog();
}

void frmMain::ShowHeaterDuty(int heater, int duty) {
    control->ShowHeaterDuty(heater, duty);
}

void frmMain::TickDone() {
    control->TickDone();
    visualDisplay->TickDone();
    tmrStatus_Timer();
}

void frmMain::Form_Unload() {
    StopMonitor();
    UnloadAllForms();
    const Requester sessionEnd("Session End");
    AdapterHandshake();
}

} // namespace ztm
