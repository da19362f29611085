#include "ui/FileDialogs.h"

#include <QCoreApplication>
#include <QFileDialog>

namespace ztm {
namespace {

QString Ask(QFileDialog &dialog, const QString &proposedName) {
    dialog.setObjectName(QStringLiteral("FileDialog"));
    dialog.setDirectory(QCoreApplication::applicationDirPath());
    if (!proposedName.isEmpty()) {
        dialog.selectFile(proposedName);
    }
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName, QString *chosenFilter) {
    QFileDialog dialog(parent, title, QString(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const QString path = Ask(dialog, proposedName);
    if (chosenFilter != nullptr) {
        *chosenFilter = dialog.selectedNameFilter();
    }
    return path;
}

QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName) {
    QFileDialog dialog(parent, title, QString(), filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Ask(dialog, proposedName);
}

} // namespace ztm
