#pragma once

#include <QMessageBox>

namespace ztm {

/// Whether a message is on screen: no monitor tick runs meanwhile.
bool IsMessageShown();

/// Shows a message with an OK button and returns when the user has closed it.
void ShowMessage(const QString &text, const QString &title,
                 QMessageBox::Icon icon = QMessageBox::NoIcon);

} // namespace ztm
