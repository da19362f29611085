#pragma once

#include "ui/kit/Form.h"

class QBoxLayout;
class QLayout;
class QPushButton;

namespace ztm {

/// A window in which the user changes settings. OK applies them and closes the window, Apply
/// leaves it open, Cancel closes it and applies nothing. Enter presses OK, Escape Cancel.
class Dialog : public Form {
    Q_OBJECT

protected:
    Dialog(const QString &name, const QString &title);

    /// Applies the values of the controls. False if one was refused; the window then stays open.
    virtual bool Apply() = 0;

    // The buttons, to be created once, after all other controls: as a row at the right, or in a
    // layout.
    QLayout *NewOkCancelRow();
    QLayout *NewOkApplyCancelRow();
    void AddOkApplyCancel(QBoxLayout &layout);

    QPushButton &OkButton() { return *cmdOK; }

    void EnterPressed() override;
    void EscapePressed() override;

private:
    QPushButton *AddButton(QBoxLayout &layout, const char *name, const QString &caption,
                           void (Dialog::*handler)());
    void cmdOK_Click();
    void cmdApply_Click();
    void cmdCancel_Click();

    QPushButton *cmdOK = nullptr;
};

} // namespace ztm
