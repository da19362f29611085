#include "app/ProgramRun.h"

#include "common/Clock.h"
#include "support/ClockDouble.h"
#include "support/WindowDriver.h"
#include "ui/kit/Form.h"

#include <QComboBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/wait.h>

/// Tells a fault that a sanitizer found from the program's own end by a failure.
extern "C" const char *__asan_default_options() {
    return "exitcode=99";
}

namespace ztm::test {
namespace {

std::function<void()> userOfTheRun;
int pipeToTheTest = -1;

void AnswerFailure() {
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (box != nullptr && box->icon() == QMessageBox::Critical) {
        Say(box->text().toStdString());
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->objectName() == "BoardWindow") {
                Say("beside a board that is lost");
            }
        }
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    }
}

/// Runs when the program has made its application object: there is an event loop to come.
void CallUser() {
    QTimer::singleShot(0, [] {
        QTimer answers;
        QObject::connect(&answers, &QTimer::timeout, AnswerFailure);
        answers.start(0);
        userOfTheRun();
    });
}

Q_COREAPP_STARTUP_FUNCTION(CallUser)

int Run(CompanionMaker companion, Opening opening) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const ClockDouble clock;
    char name[] = "program";
    const int exitCode = RunProgram(name, companion, opening);
    Say("ended");
    return exitCode;
}

QWidget &OnScreen(const QString &name) {
    QWidgetList windows(LoadedForms().rbegin(), LoadedForms().rend());
    for (QWidget *window : windows += QApplication::topLevelWidgets()) {
        auto *found = window->objectName() == name ? window : window->findChild<QWidget *>(name);
        if (found != nullptr && found->isVisible()) {
            return *found;
        }
    }
    throw std::runtime_error("not on screen: " + name.toStdString());
}

void Step(const QString &step) {
    const QString object = step.section(' ', 1);
    const QString name = step.section(QRegularExpression("[=+]"), 0, 0);
    const QString value = step.mid(name.size() + 1);
    if (step.startsWith('?')) {
        const QWidget &shown = OnScreen(step.mid(1));
        const auto *list = qobject_cast<const QListWidget *>(&shown);
        Say((list != nullptr ? list->item(0)->text() : TextOf(shown)).toStdString());
    } else if (step.startsWith("tab ")) {
        ClickTab(object);
    } else if (step.startsWith("later ")) {
        QTimer::singleShot(0, qApp, [object] { Do(object); });
    } else if (step.startsWith("close ")) {
        OnScreen(object).close();
    } else if (step.startsWith("signal ")) {
        std::raise(object.toInt());
    } else if (step.startsWith("ticks ")) {
        for (int count = object.toInt(); count > 0; --count) {
            Wait(0.05);
            Tick();
        }
    } else if (step.contains('+')) {
        Press(name, QKeySequence::fromString(value)[0].key());
    } else if (auto *choice = qobject_cast<QComboBox *>(&OnScreen(name))) {
        choice->setCurrentText(value);
    } else if (step.contains('=')) {
        Type(name, value);
    } else {
        Click(OnScreen(step));
    }
}

} // namespace

Outcome RunProgramWith(const std::function<void()> &user, CompanionMaker companion,
                       Opening opening) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        std::abort();
    }
    std::fflush(nullptr); // so that the child does not write it too
    const pid_t child = fork();
    if (child == 0) {
        pipeToTheTest = ends[1];
        userOfTheRun = user;
        std::exit(Run(companion, opening));
    }
    close(ends[1]);
    Outcome run;
    std::array<char, 256> piece{};
    for (ssize_t count = 0; (count = read(ends[0], piece.data(), piece.size())) > 0;) {
        run.said.append(piece.data(), static_cast<size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

void Say(const std::string &text) {
    const std::string line = text + ';';
    if (write(pipeToTheTest, line.data(), line.size()) < 0) {
        std::abort();
    }
}

void Do(const QString &steps) {
    for (const QString &step : steps.split("; ")) {
        Step(step);
    }
}

} // namespace ztm::test
