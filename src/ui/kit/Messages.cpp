#include "ui/kit/Messages.h"

#include "ui/kit/Guide.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>

#include <algorithm>

namespace ztm {
namespace {

bool messageShown = false;

int Show(QMessageBox &box) {
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setTextFormat(Qt::PlainText); // it may name a file, and files may have any name
    // A box is as wide as its text; the title has to fit as well.
    if (auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        const int wanted = label->fontMetrics().horizontalAdvance(box.windowTitle()) * 3 / 2;
        label->setMinimumWidth(std::max(wanted, label->sizeHint().width()));
    }
    HelpByF1(box);
    const QScopedValueRollback<bool> shown(messageShown, true);
    return box.exec();
}

} // namespace

bool IsMessageShown() {
    return messageShown;
}

void ShowMessage(const QString &text, const QString &title, QMessageBox::Icon icon) {
    QMessageBox box(icon, title, text, QMessageBox::Ok, QApplication::activeWindow());
    Show(box);
}

bool AskYesNo(const QString &question, const QString &title) {
    QMessageBox box(QMessageBox::Question, title, question, QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setDefaultButton(QMessageBox::No);
    return Show(box) == QMessageBox::Yes;
}

bool IsWarningAccepted(const QString &text, const QString &title, const QString &caption) {
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Cancel,
                    QApplication::activeWindow());
    QAbstractButton *accept = box.addButton(caption, QMessageBox::AcceptRole);
    accept->setObjectName(QStringLiteral("cmdAccept"));
    box.setDefaultButton(QMessageBox::Cancel);
    Show(box);
    return box.clickedButton() == accept;
}

} // namespace ztm
