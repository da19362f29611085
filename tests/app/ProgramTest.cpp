// The whole program from its start to its exit code, on the recording adapter. Each case is a
// process of its own, with a user who acts once the wizard is up.

#include "app/ProgramRun.h"
#include "support/AdapterDouble.h"
#include "support/Driver.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <iostream>

namespace ztm::test {
namespace {

/// RunWith, and the number of requests on standard error.
int RunAndCount(const std::function<void()> &user) {
    const int exitCode = RunWith(user);
    std::cerr << "requests: " << Adapter().calls.size() << ';';
    return exitCode;
}

void AnswerFailure() {
    QTimer::singleShot(0, [] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        std::cerr << box->text().toStdString() << ';';
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
}

TEST(Program, EndsWithoutFailureFromWizardAndSession) {
    EXPECT_EXIT(std::exit(RunAndCount([] { Click("CancelCMD"); })), testing::ExitedWithCode(0),
                "requests: 0;$");
    EXPECT_EXIT(std::exit(RunAndCount([] {
                    SearchInWizard();
                    Click("CancelCMD");
                })),
                testing::ExitedWithCode(0), "requests: 3;$");
    EXPECT_EXIT(std::exit(RunAndCount([] {
                    StartSession();
                    CloseByCloseBox("frmMain");
                })),
                testing::ExitedWithCode(0), "requests: 6;$");
}

TEST(Program, EndsWhenTheWizardIsClosedDuringItsSearch) {
    EXPECT_EXIT(std::exit(RunAndCount([] {
                    Adapter().registers[0x3D] = 0;
                    QTimer::singleShot(
                        0, [] { QTimer::singleShot(0, [] { CloseByCloseBox("InitForm"); }); });
                    SearchInWizard();
                })),
                testing::ExitedWithCode(0), "requests: [3-9];$");
}

TEST(Program, EndsWithFailureWhenARequestFails) {
    EXPECT_EXIT(std::exit(RunAndCount([] {
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
