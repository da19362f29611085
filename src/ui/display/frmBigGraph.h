#pragma once

#include "ui/kit/Form.h"

namespace ztm {

class MonitorCharts;

/// The window "Graphing": the strip charts of the main window at any size. It is updated while
/// `BigGraphEnabled` is set; closing it clears that.
class frmBigGraph final : public Form {
    Q_OBJECT

public:
    frmBigGraph();

    /// Shows new history data.
    void UpdateCharts();

    MonitorCharts &Charts() { return *charts; }

    QSize sizeHint() const override;

protected:
    void Form_Unload() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void Form_Resize();

    MonitorCharts *charts;
};

} // namespace ztm
