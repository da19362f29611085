#include "ui/kit/Dialog.h"

#include "ui/kit/Controls.h"

#include <QLineEdit>
#include <QShowEvent>

namespace ztm {

Dialog::Dialog(const QString &name, const QString &title) : Form(name) {
    setWindowTitle(title);
}

QPushButton *Dialog::AddButton(QBoxLayout &layout, const char *name, const QString &caption,
                               void (Dialog::*handler)()) {
    auto *button = NewButton(name, caption, this);
    connect(button, &QPushButton::clicked, this, handler);
    layout.addWidget(button);
    return button;
}

QLayout *Dialog::NewOkCancelRow() {
    auto *row = NewButtonRow({});
    cmdOK = AddButton(*row, "cmdOK", tr("OK"), &Dialog::cmdOK_Click);
    AddButton(*row, "cmdCancel", tr("Cancel"), &Dialog::cmdCancel_Click);
    return row;
}

QLayout *Dialog::NewOkApplyCancelRow() {
    auto *row = NewButtonRow({});
    AddOkApplyCancel(*row);
    return row;
}

void Dialog::AddOkApplyCancel(QBoxLayout &layout) {
    cmdOK = AddButton(layout, "cmdOK", tr("OK"), &Dialog::cmdOK_Click);
    AddApply(layout);
    AddButton(layout, "cmdCancel", tr("Cancel"), &Dialog::cmdCancel_Click);
}

QLayout *Dialog::NewApplyCloseRow() {
    auto *row = NewButtonRow({});
    AddApply(*row);
    AddButton(*row, "cmdClose", tr("Close"), &Dialog::cmdCancel_Click);
    return row;
}

void Dialog::AddApply(QBoxLayout &layout) {
    cmdApply = AddButton(layout, "cmdApply", tr("Apply"), &Dialog::cmdApply_Click);
    cmdApply->setFocusPolicy(Qt::TabFocus);
}

void Dialog::EnterPressed() {
    (cmdOK != nullptr ? cmdOK : cmdApply)->click();
}

void Dialog::EscapePressed() {
    cmdCancel_Click();
}

void Dialog::showEvent(QShowEvent *event) {
    Form::showEvent(event);
    auto *box = findChild<QLineEdit *>();
    if (box != nullptr && !event->spontaneous()) {
        box->setFocus();
        box->selectAll();
    }
}

void Dialog::cmdOK_Click() {
    if (Apply()) {
        cmdCancel_Click();
    }
}

void Dialog::cmdApply_Click() {
    Apply();
}

void Dialog::cmdCancel_Click() {
    Unload();
}

} // namespace ztm
