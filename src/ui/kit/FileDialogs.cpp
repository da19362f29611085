#include "ui/kit/FileDialogs.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QRegularExpression>

namespace ztm {
namespace {

QString Ask(QFileDialog &dialog, const QString &proposedName) {
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setDirectory(QCoreApplication::applicationDirPath());
    if (!proposedName.isEmpty()) {
        dialog.selectFile(proposedName);
    }
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName) {
    QFileDialog dialog(parent, title, QString(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    return Ask(dialog, proposedName);
}

QString AskSaveFileOfKind(QWidget *parent, const QString &title, const QString &filters) {
    QFileDialog dialog(parent, title, QString(), filters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const auto takeEnding = [&dialog](const QString &filter) {
        static const QRegularExpression ending(QStringLiteral("\\*\\.(\\w+)"));
        dialog.setDefaultSuffix(ending.match(filter).captured(1));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, takeEnding);
    takeEnding(dialog.selectedNameFilter());
    return Ask(dialog, QString());
}

QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName) {
    QFileDialog dialog(parent, title, QString(), filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Ask(dialog, proposedName);
}

} // namespace ztm
