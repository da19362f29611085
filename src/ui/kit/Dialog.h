#pragma once

#include "ui/kit/Form.h"

class QBoxLayout;
class QLayout;
class QPushButton;

namespace ztm {

/// A window in which the user changes settings. OK applies them and closes the window, Apply
/// leaves it open, and the focus where it is when it is clicked; Cancel and Close close it and
/// apply nothing. Enter presses OK, or Apply where there is none, and Escape Cancel or Close. It
/// opens with the text of its first box selected, so that what is typed replaces it.
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
    QLayout *NewApplyCloseRow();

    QPushButton &OkButton() { return *cmdOK; }

    void EnterPressed() override;
    void EscapePressed() override;
    void showEvent(QShowEvent *event) override;

private:
    void AddApply(QBoxLayout &layout);
    QPushButton *AddButton(QBoxLayout &layout, const char *name, const QString &caption,
                           void (Dialog::*handler)());
    void cmdOK_Click();
    void cmdApply_Click();
    void cmdCancel_Click();

    QPushButton *cmdOK = nullptr;
    QPushButton *cmdApply = nullptr;
};

} // namespace ztm
