#include "ui/kit/Messages.h"

#include "ui/kit/Guide.h"

#include <QApplication>
#include <QLabel>
#include <QScopedValueRollback>

#include <algorithm>

namespace ztm {

namespace {

bool messageShown = false;

} // namespace

bool IsMessageShown() {
    return messageShown;
}

void ShowMessage(const QString &text, const QString &title, QMessageBox::Icon icon) {
    QMessageBox box(icon, title, text, QMessageBox::Ok, QApplication::activeWindow());
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setTextFormat(Qt::PlainText); // it may name a path
    // A box is as wide as its text; the title has to fit as well.
    if (auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        const int wanted = label->fontMetrics().horizontalAdvance(title) * 3 / 2;
        label->setMinimumWidth(std::max(wanted, label->sizeHint().width()));
    }
    HelpByF1(box);
    const QScopedValueRollback<bool> shown(messageShown, true);
    box.exec();
}

} // namespace ztm
