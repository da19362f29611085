#pragma once

#include "ui/kit/Form.h"

class QListWidget;

namespace ztm {

/// The window "Easy Setup Log": a fixed list of what the Easy Setup button does.
class frmSetupLog final : public Form {
    Q_OBJECT

public:
    frmSetupLog();

protected:
    void EscapePressed() override { close(); }

private:
    QListWidget *lstSetupLog;
};

} // namespace ztm
