#include "ui/kit/Guide.h"

#include "ui/kit/Messages.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QKeyEvent>
#include <QUrl>
#include <QWidget>

namespace ztm {
namespace {

class HelpKey final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::KeyPress ||
            static_cast<QKeyEvent *>(event)->key() != Qt::Key_F1) {
            return false;
        }
        const auto *asked = static_cast<QWidget *>(watched);
        while (asked->parentWidget() != nullptr &&
               !QFileInfo::exists(GuidePage(asked->objectName()))) {
            asked = asked->parentWidget();
        }
        OpenGuide(asked->objectName());
        return true;
    }
};

} // namespace

QString GuidePage(const QString &name) {
    const QDir program(QCoreApplication::applicationDirPath());
    QString path;
    for (const char *folder : {"guide", ZTM_INSTALLED_GUIDE}) {
        path = QDir::cleanPath(program.filePath(QStringLiteral("%1/%2.html").arg(folder, name)));
        if (QFileInfo::exists(path)) {
            break;
        }
    }
    return path;
}

void OpenGuide(const QString &name) {
    const QString path = GuidePage(name);
    const QString title = QObject::tr("User Guide");
    if (!QFileInfo::exists(path)) {
        ShowMessage(QObject::tr("The user guide is not installed; on Debian it is the package "
                                "ztm-eval-doc. This page is missing:\n%1")
                        .arg(path),
                    title, QMessageBox::Warning);
    } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        ShowMessage(
            QObject::tr("There is no program to show this page of the user guide:\n%1").arg(path),
            title, QMessageBox::Warning);
    }
}

void HelpByF1(QWidget &window) {
    window.installEventFilter(new HelpKey(&window));
}

} // namespace ztm
