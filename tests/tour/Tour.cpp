// Walks through the real windows on the simulated board, as a newcomer would, and writes a
// numbered picture at every stop.
//
//   ztm-tour FOLDER [dark]

#include "link/CommFailure.h"
#include "support/Driver.h"
#include "ui/InitForm.h"
#include "ui/Program.h"

#include <QDir>
#include <QLineEdit>
#include <QTextStream>
#include <QTimer>

#include <cstdlib>

namespace {

using namespace ztm::test;

class Tour {
public:
    explicit Tour(const QString &folder) : folder(folder) {}

    void Walk() {
        Wizard();
        About();
        RegisterAccess();
        OtherTabs();
        CloseByCloseBox("frmMain");
    }

private:
    void Wizard() {
        ztm::ShowForm<ztm::InitForm>();
        Picture("InitForm", "welcome");
        Click("NextCMD");
        Picture("InitForm", "medium");
        // The search blocks here, so the picture of it is taken from the events that it lets run.
        QTimer::singleShot(0, [this] { Picture("InitForm", "searching"); });
        Click("NextCMD");
        Picture("InitForm", "results");
        Click("FinishCMD");
    }

    void About() {
        ClickTab("About");
        Picture("frmMain", "about");
    }

    void RegisterAccess() {
        ClickTab("Register Access");
        Picture("frmMain", "register-access");
        ClickNode("Temperature");
        ClickNode("Local High Limit");
        Click("lblBit(3)");
        Picture("frmMain", "register-bit-flipped");
        Type("txtDec", "100");
        Click("cmdWrite");
        Picture("frmMain", "register-written");
        Type("txtReadAddr", "1fe");
        Picture("frmMain", "register-out-of-range");
        Type("txtReadAddr", "fe");
        Press("txtReadAddr", Qt::Key_Return);
        Picture("frmMain", "register-unknown");
    }

    void OtherTabs() {
        ClickTab("Visual Display");
        Click("cmdSetUpLog");
        Picture("frmSetupLog", "easy-setup-log");
        Picture("frmMain", "visual-display");
        ClickTab("Control");
        Picture("frmMain", "control");
    }

    void Picture(const QString &form, const QString &what) {
        Settle();
        const QString path =
            QDir(folder).filePath(QString("%1-%2.png").arg(++number, 2, 10, QChar('0')).arg(what));
        if (!Find(form).grab().save(path)) {
            throw std::runtime_error("cannot write " + path.toStdString());
        }
        QTextStream(stdout) << path << '\n';
    }

    QString folder;
    int number = 0;
};

void UseDarkPalette() {
    QPalette dark(QColor(49, 54, 59), QColor(35, 38, 41));
    dark.setColor(QPalette::Base, QColor(35, 38, 41));
    dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
    QApplication::setPalette(dark);
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    int one = 1;
    QApplication application(one, arguments);
    if (argumentCount < 2) {
        QTextStream(stderr) << "usage: ztm-tour FOLDER [dark]\n";
        return EXIT_FAILURE;
    }
    if (argumentCount > 2) {
        UseDarkPalette();
    }
    ztm::SetCommFailureHandler(ztm::EndAfterCommFailure);
    try {
        Tour(arguments[1]).Walk();
    } catch (const std::exception &failure) {
        QTextStream(stderr) << "the tour ended early: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
