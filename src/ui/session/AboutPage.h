#pragma once

#include <QWidget>

class QLabel;

namespace ztm {

/// The tab "About": the product and its version, and of the program the release, the licence and
/// where the guide lies, which it opens.
class AboutPage final : public QWidget {
    Q_OBJECT

public:
    explicit AboutPage(QWidget *parent = nullptr);

    /// Shows the chip variant of the session and the version.
    void ShowTitle();

private:
    QLabel *lblTitle;
    QLabel *lblVersion;
};

} // namespace ztm
