#include "ui/kit/FileDialogs.h"

#include "ui/kit/Guide.h"
#include "ui/kit/Messages.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace ztm {
namespace {

QString lastUsedFolder;

QString Documents() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo::exists(folder) ? folder : QDir::homePath();
}

QString LastUsedFolder() {
    return QFileInfo::exists(lastUsedFolder) ? lastUsedFolder : Documents();
}

QString StartFolder() {
    const QString own = QCoreApplication::applicationDirPath();
    return QFileInfo(own).isWritable() ? own : LastUsedFolder();
}

class CommonDialog final : public QFileDialog {
public:
    CommonDialog(QWidget *parent, const QString &title, const QString &filter)
        : QFileDialog(parent, title, QString(), filter) {
        setObjectName(QStringLiteral("CommonDialog1"));
        // A desktop's own dialog may ask whether to replace a file before it adds the extension.
        setOption(DontUseNativeDialog);
        setOption(DontConfirmOverwrite); // its question would show a name as rich text
        setDirectory(StartFolder());
        HelpByF1(*this);
    }

    /// Adds the extension of the chosen filter to names without one.
    void AddExtensions() {
        connect(this, &QFileDialog::filterSelected, this, &CommonDialog::TakeExtension);
        TakeExtension(selectedNameFilter());
    }

    QString Ask(const QString &proposedName) {
        // The toolkit keeps the side bar for every program.
        const QList<QUrl> shortcuts = sidebarUrls();
        QList<QUrl> more = shortcuts;
        for (const QString &folder : {Documents(), LastUsedFolder()}) {
            if (const QUrl url = QUrl::fromLocalFile(folder); !more.contains(url)) {
                more.append(url);
            }
        }
        setSidebarUrls(more);
        if (!proposedName.isEmpty()) {
            selectFile(proposedName);
        }
        const bool chosen = exec() == Accepted;
        setSidebarUrls(shortcuts);
        const QString path = chosen ? selectedFiles().value(0) : QString();
        if (!path.isEmpty()) {
            lastUsedFolder = QFileInfo(path).absolutePath();
        }
        return path;
    }

protected:
    /// A file to read may be named in full or without its extension. The toolkit's own mode for
    /// existing files would not take the latter.
    void accept() override {
        if (acceptMode() == AcceptOpen) {
            const auto exists = [this] { return QFileInfo::exists(selectedFiles().value(0)); };
            setDefaultSuffix({});
            if (!exists()) {
                TakeExtension(selectedNameFilter());
            }
            if (!exists()) {
                ShowMessage(tr("There is no file of this name"), windowTitle(),
                            QMessageBox::Warning);
                return;
            }
        } else if (const QFileInfo file(selectedFiles().value(0));
                   file.exists() && !file.isDir() &&
                   !AskYesNo(
                       tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName()),
                       windowTitle())) {
            return;
        }
        QFileDialog::accept();
    }

private:
    void TakeExtension(const QString &filter) {
        static const QRegularExpression extension(QStringLiteral("\\*\\.(\\w+)"));
        setDefaultSuffix(extension.match(filter).captured(1));
    }
};

} // namespace

QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter) {
    CommonDialog dialog(parent, title, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    return dialog.Ask({});
}

QString AskSaveFileOfKind(QWidget *parent, const QString &title, const QString &filters,
                          const QString &proposedName) {
    CommonDialog dialog(parent, title, filters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.AddExtensions();
    return dialog.Ask(proposedName);
}

QString AskExportFile(QWidget *parent, const QString &title, const QString &filters,
                      const QString &proposedName) {
    CommonDialog dialog(parent, title, filters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.AddExtensions();
    if (!lastUsedFolder.isEmpty()) {
        dialog.setDirectory(LastUsedFolder());
    }
    return dialog.Ask(proposedName);
}

QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName) {
    CommonDialog dialog(parent, title, filter);
    return dialog.Ask(proposedName);
}

} // namespace ztm
