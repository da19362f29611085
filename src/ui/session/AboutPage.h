#pragma once

#include <QWidget>

class QLabel;

namespace ztm {

/// The tab "About".
class AboutPage final : public QWidget {
    Q_OBJECT

public:
    explicit AboutPage(QWidget *parent = nullptr);

    /// Shows the chip variant of the session and the program's version.
    void ShowTitle();

private:
    QLabel *lblTitle;
    QLabel *lblVersion;
};

} // namespace ztm
