#pragma once

#include <QWidget>

class QPushButton;

namespace ztm {

/// The tab "Visual Display".
class VisualDisplayPage final : public QWidget {
    Q_OBJECT

public:
    explicit VisualDisplayPage(QWidget *parent = nullptr);

private:
    void cmdEasySetup_Click();
    void cmdSetUpLog_Click();

    QPushButton *cmdEasySetup;
    QPushButton *cmdGraphOptions;
    QPushButton *cmdSetUpLog;
};

} // namespace ztm
