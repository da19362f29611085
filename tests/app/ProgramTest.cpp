// The whole program from its start to its exit code, on the recording adapter. Each case is a
// process of its own, with a user who acts once the wizard is up.

#include "ui/Program.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/Driver.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <iostream>

namespace ztm::test {
namespace {

std::function<void()> user;

/// Runs when the program has made its application object: there is an event loop to come.
void CallUser() {
    QTimer::singleShot(0, [] { user(); });
}

Q_COREAPP_STARTUP_FUNCTION(CallUser)

int RunWith(const std::function<void()> &whatTheUserDoes) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    user = whatTheUserDoes;
    ResetCore();
    Adapter().registers[0x3D] = 0x34;
    const ClockDouble clock;
    char name[] = "program-tests";
    const int exitCode = RunProgram(name);
    std::cerr << "requests: " << Adapter().calls.size() << ';';
    return exitCode;
}

void StartSession() {
    SearchInWizard();
    Click("FinishCMD");
}

void AnswerFailure() {
    QTimer::singleShot(0, [] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        std::cerr << box->text().toStdString() << ';';
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
}

TEST(Program, EndsWithoutFailureFromWizardAndSession) {
    EXPECT_EXIT(std::exit(RunWith([] { Click("CancelCMD"); })), testing::ExitedWithCode(0),
                "requests: 0;$");
    EXPECT_EXIT(std::exit(RunWith([] {
                    SearchInWizard();
                    Click("CancelCMD");
                })),
                testing::ExitedWithCode(0), "requests: 3;$");
    EXPECT_EXIT(std::exit(RunWith([] {
                    StartSession();
                    CloseByCloseBox("frmMain");
                })),
                testing::ExitedWithCode(0), "requests: 6;$");
}

TEST(Program, EndsWhenTheWizardIsClosedDuringItsSearch) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    Adapter().registers[0x3D] = 0;
                    QTimer::singleShot(
                        0, [] { QTimer::singleShot(0, [] { CloseByCloseBox("InitForm"); }); });
                    SearchInWizard();
                })),
                testing::ExitedWithCode(0), "requests: [3-9];$");
}

TEST(Program, EndsWithFailureWhenARequestFails) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    Adapter().script = [](const Call &call) {
                        if (call == Read(0x3D)) {
                            AnswerFailure();
                        }
                        return static_cast<int16_t>(call == Read(0x3D));
                    };
                    StartSession();
                })),
                testing::ExitedWithCode(EXIT_FAILURE),
                "Communication Failure - Check USB connections;$");
}

} // namespace
} // namespace ztm::test

int main(int argumentCount, char *arguments[]) {
    testing::InitGoogleMock(&argumentCount, arguments);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    return RUN_ALL_TESTS();
}
