#include "app/ProgramRun.h"

#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/Driver.h"
#include "ui/session/Program.h"

#include <QTimer>

namespace ztm::test {
namespace {

std::function<void()> userOfTheRun;

/// Runs when the program has made its application object: there is an event loop to come.
void CallUser() {
    QTimer::singleShot(0, [] { userOfTheRun(); });
}

Q_COREAPP_STARTUP_FUNCTION(CallUser)

} // namespace

int RunWith(const std::function<void()> &user) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    userOfTheRun = user;
    ResetCore();
    Adapter().registers[0x3D] = 0x34;
    const ClockDouble clock;
    char name[] = "program-tests";
    return RunProgram(name);
}

void StartSession() {
    SearchInWizard();
    Click("FinishCMD");
}

} // namespace ztm::test
