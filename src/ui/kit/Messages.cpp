#include "ui/kit/Messages.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>

namespace ztm {

namespace {

bool messageShown = false;

void Run(QMessageBox &box) {
    box.setObjectName(QStringLiteral("MessageBox"));
    // A box is as wide as its text; the title has to fit as well.
    if (auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        const int widest = label->fontMetrics().horizontalAdvance(box.windowTitle()) * 3 / 2;
        if (label->sizeHint().width() < widest) {
            label->setMinimumWidth(widest);
        }
    }
    const QScopedValueRollback<bool> shown(messageShown, true);
    box.exec();
}

} // namespace

bool IsMessageShown() {
    return messageShown;
}

void ShowMessage(const QString &text, const QString &title, QMessageBox::Icon icon) {
    QMessageBox box(icon, title, text, QMessageBox::Ok, QApplication::activeWindow());
    Run(box);
}

bool IsWarningAccepted(const QString &text, const QString &title, const QString &caption) {
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Cancel,
                    QApplication::activeWindow());
    QAbstractButton *accept = box.addButton(caption, QMessageBox::AcceptRole);
    accept->setObjectName(QStringLiteral("cmdAccept"));
    box.setDefaultButton(QMessageBox::Cancel);
    Run(box);
    return box.clickedButton() == accept;
}

} // namespace ztm
