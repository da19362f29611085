#pragma once

#include "link/CommFailure.h"
#include "link/LinkState.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/WindowDriver.h"
#include "ui/session/InitForm.h"
#include "ui/session/Program.h"

#include <QTimer>

#include <gmock/gmock.h>

#include <iostream>

namespace ztm::test {

/// What a failed request leads to in the tests.
struct CommFailed {};

/// The real windows on the recording adapter, with a clock that nobody has to wait for.
class UiTest : public testing::Test {
protected:
    UiTest() {
        ResetCore();
        SetCommFailureHandler([] { throw CommFailed{}; });
    }
    ~UiTest() override { DeleteAllForms(); }

    /// Opens the wizard.
    static void OpenWizard() {
        ShowForm<InitForm>();
        Settle();
    }

    /// Opens the wizard, finds a chip of that variant and finishes; the calls of the start are
    /// forgotten.
    static void StartSessionOf(std::string_view variant) {
        Adapter().registers[0x3D] = variant == ZTM7710 ? 0x33 : 0x34;
        OpenWizard();
        SearchInWizard();
        Click("FinishCMD");
        Settle();
        Adapter().calls.clear();
    }

    /// Opens every dialog from the main window by its button and calls `visit` with its name.
    static void ForEveryDialog(const std::function<void(const char *window)> &visit) {
        const struct {
            const char *tab;
            const char *button;
            const char *window;
        } dialogs[] = {
            {"Register Access", "cmdCompare", "frmCompare"},
            {"Register Access", "cmdTraffic", "frmTraffic"},
            {"Visual Display", "cmdSetUpLog", "frmSetupLog"},
            {"Visual Display", "cmdGraphOptions", "frmGraphOptions"},
            {"Control", "cmdLogData", "frmLogging"},
            {"Control", "cmdConParam", "frmConfig"},
            {"Control", "cmdAuto", "frmAutoControl"},
            {"Control", "cmdSetLookups", "frmLookup"},
            {"Control", "cmdThermTemp", "frmThermTemp"},
            {"Control", "cmdThermTimer", "frmThermTimer"},
            {"Control", "cmdManual", "frmManual"},
            {"Control", "cmdHeaters", "frmHeaters"},
        };
        for (const auto &dialog : dialogs) {
            ClickTab(dialog.tab);
            Find(dialog.button).setEnabled(true); // whatever drives the fans
            Click(dialog.button);
            Settle();
            visit(dialog.window);
        }
    }

    /// Runs `action` in an adapter failure, with what happens from then on told to standard
    /// error, and with a user who answers the message. For EXPECT_EXIT, with endOfAFailure.
    static void FailIn(const std::function<void()> &action) {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        Adapter().script = [](const Call &call) {
            std::cerr << (call.request == Handshake.request ? "handshake;" : "request;");
            return static_cast<int16_t>(call.request != Handshake.request);
        };
        SetCommFailureHandler(EndAfterCommFailure);
        QTimer::singleShot(100, [] {
            const auto message = AnswerMessageOf([] { QCoreApplication::processEvents(); });
            std::cerr << message.text.toStdString() << '|' << message.title.toStdString() << '|'
                      << message.icon << ';';
        });
        std::cerr << "begin;";
        action();
    }

    /// One request, the one message, every window unloaded, and the end.
    static constexpr const char *endOfAFailure =
        "begin;request;Communication Failure - Check USB connections"
        "\\|ZTM7710/20 Evaluation Software\\|3;handshake;$";

    ClockDouble clock;
};

} // namespace ztm::test
