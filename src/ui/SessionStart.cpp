#include "ui/SessionStart.h"

#include "regmap/RegMapStuff.h"
#include "ui/RegisterAccessPage.h"
#include "ui/frmMain.h"

namespace ztm {

void StartSession() {
    auto *mainWindow = LoadedForm<frmMain>();
    if (mainWindow == nullptr) {
        return;
    }
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
