#pragma once

#include <QString>

class QWidget;

namespace ztm {

/// The user guide: a folder of HTML pages, one for each window under the name of its class, and
/// "index". It lies beside the program or where the installation has put it.

/// The path of a page. If there is none, the path that it would have in an installation.
QString GuidePage(const QString &name);

/// Shows a page in the system's viewer. If that is not possible, a message says so.
void OpenGuide(const QString &name);

/// From now on F1 in a window opens its page, or that of the window to which it belongs.
void HelpByF1(QWidget &window);

} // namespace ztm
