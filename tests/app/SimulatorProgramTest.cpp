// The program on the simulated board from its start to its exit code, with the board's window
// beside it. Each case is a process of its own, with a user who acts once the wizard is up.

#include "app/BoardWindow.h"
#include "support/ClockDouble.h"
#include "support/Driver.h"
#include "ui/session/Program.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

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
    const ClockDouble clock;
    char name[] = "simulator-program-tests";
    const int exitCode = RunProgram(
        name, []() -> std::unique_ptr<QWidget> { return std::make_unique<BoardWindow>(); });
    std::cerr << "ended;";
    return exitCode;
}

QWidget &Board() {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "BoardWindow" && widget->isVisible()) {
            return *widget;
        }
    }
    throw std::runtime_error("no board window");
}

void ClickOnBoard(const char *check) {
    Board().findChild<QCheckBox *>(QLatin1String(check))->click();
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

TEST(SimulatorProgram, EndsWhileTheBoardWindowIsOpen) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    Board();
                    Click("CancelCMD");
                })),
                testing::ExitedWithCode(0), "ended;$");
    EXPECT_EXIT(std::exit(RunWith([] {
                    StartSession();
                    Board();
                    CloseByCloseBox("frmMain");
                })),
                testing::ExitedWithCode(0), "ended;$");
}

TEST(SimulatorProgram, GoesOnWhenTheBoardWindowIsClosed) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    Board().close();
                    StartSession();
                    ClickTab("Register Access");
                    Click("cmdRead");
                    std::cerr << "still there;";
                    CloseByCloseBox("frmMain");
                })),
                testing::ExitedWithCode(0), "still there;ended;$");
}

TEST(SimulatorProgram, UnpluggedInMidSessionTheNextRequestEndsIt) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    StartSession();
                    ClickTab("Register Access");
                    Click("cmdRead");
                    ClickOnBoard("chkPluggedIn");
                    std::cerr << "unplugged;";
                    AnswerFailure();
                    Click("cmdRead");
                })),
                testing::ExitedWithCode(EXIT_FAILURE),
                "unplugged;Communication Failure - Check USB connections;$");
    EXPECT_EXIT(std::exit(RunWith([] {
                    StartSession();
                    ClickTab("Visual Display");
                    Click("cmdEasySetup");
                    Tick();
                    ClickOnBoard("chkPluggedIn");
                    AnswerFailure();
                    Tick();
                })),
                testing::ExitedWithCode(EXIT_FAILURE),
                "Communication Failure - Check USB connections;$");
}

TEST(SimulatorProgram, FindsNoChipWhenFirmwareIsRefusedOrTheBoardIsOut) {
    for (const char *check : {"chkRefuseFirmware", "chkPluggedIn"}) {
        EXPECT_EXIT(std::exit(RunWith([=] {
                        ClickOnBoard(check);
                        SearchInWizard();
                        std::cerr << TextOf("SearchResultsLBL").toStdString() << ';';
                        Click("CancelCMD");
                    })),
                    testing::ExitedWithCode(0), "Sorry, no [^;]*;ended;$");
    }
}

TEST(SimulatorProgram, FindsTheVariantAndAddressThatTheWindowChooses) {
    EXPECT_EXIT(std::exit(RunWith([] {
                    for (const char *list : {"cmbVariant", "cmbAddress"}) {
                        auto *box = Board().findChild<QComboBox *>(QLatin1String(list));
                        box->setCurrentIndex(1 - box->currentIndex());
                    }
                    SearchInWizard();
                    auto &results = Find<QListWidget>("SearchResultsLIST");
                    std::cerr << results.item(0)->text().toStdString() << ';';
                    Click("CancelCMD");
                })),
                testing::ExitedWithCode(0), "An ZTM7710 was found at:51h, [^;]*;ended;$");
}

} // namespace
} // namespace ztm::test

int main(int argumentCount, char *arguments[]) {
    testing::InitGoogleTest(&argumentCount, arguments);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    return RUN_ALL_TESTS();
}
