#pragma once

#include "ui/kit/Form.h"

namespace ztm {

class MonitorCharts;

/// The window "Graphing": the strip charts of the main window, as large as the user wants them.
/// It is fed while `BigGraphEnabled` is set, which closing it clears.
class frmBigGraph final : public Form {
    Q_OBJECT

public:
    frmBigGraph();

    /// Shows what has been added to the history.
    void UpdateCharts();

    QSize sizeHint() const override;

protected:
    void Form_Unload() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void Form_Resize();

    MonitorCharts *charts;
};

} // namespace ztm
