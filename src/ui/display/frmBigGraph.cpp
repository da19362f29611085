#include "ui/display/frmBigGraph.h"

#include "monitor/MonitorSettings.h"
#include "ui/display/MonitorCharts.h"
#include "ui/kit/Twips.h"

#include <QScreen>

namespace ztm {
namespace {

constexpr double allowanceTwips = 200;

} // namespace

frmBigGraph::frmBigGraph()
    : Form(QStringLiteral("frmBigGraph")), charts(new MonitorCharts({0.04, 0.05}, this)) {
    setWindowTitle(tr("Graphing"));
    setMinimumSize(320, 240);
    resize(sizeHint()); // by itself a window takes at most two thirds of its screen
}

QSize frmBigGraph::sizeHint() const {
    return screen()->availableSize() * 0.9;
}

void frmBigGraph::UpdateCharts() {
    charts->ShowGraphType();
    charts->HistoryChanged();
}

void frmBigGraph::Form_Unload() {
    BigGraphEnabled = false;
}

void frmBigGraph::resizeEvent(QResizeEvent *event) {
    Form::resizeEvent(event);
    Form_Resize();
}

void frmBigGraph::Form_Resize() {
    charts->ShowGraphType();
    const int allowance = Twips(allowanceTwips, *this);
    charts->setGeometry(allowance / 2, allowance / 2, width() - allowance, height() - allowance);
    charts->LayOutForVariant();
}

} // namespace ztm
