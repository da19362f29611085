#include "ui/session/Program.h"

#include "link/CommFailure.h"
#include "link/LinkState.h"
#include "ui/kit/HeldKeys.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"
#include "ui/session/InitForm.h"
#include "ui/session/ProductPicture.h"
#include "ui/session/Signals.h"
#include "ui/session/frmMain.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

namespace ztm {

void EndProgramAtOnce(int exitCode) {
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

void EndAfterCommFailure() {
    static bool ending = false;
    if (!ending) {
        ending = true;
        if (auto *mainWindow = LoadedForm<frmMain>()) {
            mainWindow->StopMonitor();
        }
        ShowMessage(QObject::tr("Communication Failure - Check USB connections"),
                    ToQString(FamilyName) + QObject::tr(" Evaluation Software"),
                    QMessageBox::Critical);
        UnloadAllForms();
    }
    EndProgramAtOnce(EXIT_FAILURE);
}

void OpenWizard() {
    ShowForm<InitForm>();
}

int RunProgram(char *name, CompanionMaker companion, Opening opening) {
    int argumentCount = 1;
    char *arguments[] = {name, nullptr};
    QApplication application(argumentCount, arguments);
    // The program ends with the last of its own windows, whatever else is open.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ProductPicture::Icon());
    TakeSignals();
    const HeldKeys heldKeys;
    const auto beside = companion != nullptr ? companion() : nullptr;
    SetCommFailureHandler([&beside] {
        if (beside) {
            beside->hide(); // the end takes minutes in which no window answers
        }
        EndAfterCommFailure();
    });
    if (beside) {
        beside->show();
    }
    if (opening == Opening::Wizard) {
        OpenWizard();
    }
    return QApplication::exec();
}

} // namespace ztm
