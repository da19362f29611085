// The program with a running log, to be killed: logs every channel to the given file at 10 ms
// and tells after every tick the count that it shows.

#include "monitor/MonitorSettings.h"
#include "support/AdapterDouble.h"
#include "support/WindowDriver.h"
#include "ui/kit/Text.h"
#include "ui/session/InitForm.h"

#include <QTimer>

#include <cstdlib>
#include <unistd.h>

int main(int argumentCount, char *arguments[]) {
    using namespace ztm::test;
    if (argumentCount != 2) {
        return EXIT_FAILURE;
    }
    int one = 1;
    const QApplication application(one, arguments);
    ResetCore();
    Adapter().registers.fill(0x5A);
    Adapter().registers[0x3D] = 0x34;
    ztm::ShowForm<ztm::InitForm>();
    SearchInWizard();
    Click("FinishCMD");
    ztm::MonitoringEnabled = true;
    ztm::MonitorInterval = 3;
    ClickTab("Control");
    Click("cmdLogData");
    for (int channel = 0; channel < 6; ++channel) {
        Click(ztm::IndexedName("chkLog", channel));
    }
    Type("txtLogInt", "10");
    AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromLocal8Bit(arguments[1]));
    QObject::connect(&Find<QTimer>("tmrMain"), &QTimer::timeout, [] {
        const QByteArray count = TextOf("lblLogEntries").toLatin1() + '\n';
        if (write(STDOUT_FILENO, count.data(), static_cast<size_t>(count.size())) < 0) {
            std::abort();
        }
    });
    return QApplication::exec();
}
