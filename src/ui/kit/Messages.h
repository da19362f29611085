#pragma once

#include <QMessageBox>

namespace ztm {

/// Whether a message is on screen.
bool IsMessageShown();

/// Shows a message with an OK button and returns when the user has closed it. The monitor keeps
/// running meanwhile.
void ShowMessage(const QString &text, const QString &title,
                 QMessageBox::Icon icon = QMessageBox::NoIcon);

/// Asks a question and returns whether the answer is yes. No is the default.
bool AskYesNo(const QString &question, const QString &title);

/// Warns the user, who has to press the button of that caption to go on and not Cancel, the
/// default. Returns whether that was done.
bool IsWarningAccepted(const QString &text, const QString &title, const QString &caption);

} // namespace ztm
