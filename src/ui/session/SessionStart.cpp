#include "ui/session/SessionStart.h"

#include "link/Traffic.h"
#include "regmap/RegMapStuff.h"
#include "ui/registers/RegisterAccessPage.h"
#include "ui/session/frmMain.h"

namespace ztm {

void StartSession() {
    auto *mainWindow = LoadedForm<frmMain>();
    if (mainWindow == nullptr) {
        return;
    }
    const Requester sessionStart("Session Start");
    RegisterAccessPage &page = mainWindow->RegisterAccess();
    mainWindow->InitMainWindow();
    page.LayoutBitLabels();
    BuildRegisterMap();
    page.BuildRegisterTree();
    page.ShowRegister(0);
    page.ExpandFirstNode();
    ShowForm(*mainWindow);
}

} // namespace ztm
