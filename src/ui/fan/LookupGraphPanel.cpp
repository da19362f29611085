#include "ui/fan/LookupGraphPanel.h"

#include "common/At.h"
#include "fan/LookupGraphScale.h"
#include "ui/fan/LookupGraph.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr int celsiusPerLabel = 10;
constexpr int rpmLines = 10;
constexpr int twoDigitShift = 50; // twips

/// A legend line on the graph's background colour.
QFrame *NewLine(const char *name, const char *colour, QWidget *parent) {
    auto *line = Named(new QFrame(parent), name);
    line->setFixedSize(line->fontMetrics().averageCharWidth() * 4, 5);
    line->setStyleSheet(
        QStringLiteral("background: %1; border: 1px solid white").arg(QLatin1String(colour)));
    return line;
}

} // namespace

LookupGraphPanel::LookupGraphPanel(QWidget *parent)
    : QWidget(parent), pctGraph(Named(new LookupGraph(this), "pctGraph")) {
    for (int label = 0; label < temperatureLabels; ++label) {
        At(lblTemp, label) =
            NewLabel(IndexedName("lblTemp", label), QString::number(celsiusPerLabel * label));
    }
    for (int label = firstRpmLabel; label <= lastRpmLabel; ++label) {
        auto *text = NewLabel(IndexedName("lblRPM", label), QStringLiteral("0"));
        text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        At(lblRPM, label) = text;
    }
    lblTempAxis = NewLabel(QStringLiteral("lblTempAxis"), tr("Temperature (°C)"));
    lblRPMAxis = NewLabel(QStringLiteral("lblRPMAxis"), tr("RPM"));
    SetupLegend();
    SetUpGraphLabels();
}

QLabel *LookupGraphPanel::NewLabel(const QString &name, const QString &text) {
    auto *label = new QLabel(text, this);
    label->setObjectName(name);
    return label;
}

void LookupGraphPanel::SetupLegend() {
    legend = new QWidget(this);
    Line1 = NewLine("Line1", "#0000ff", legend);
    Label5 = Named(new QLabel(tr("Fan1"), legend), "Label5");
    Line2 = NewLine("Line2", "#00c000", legend);
    Label6 = Named(new QLabel(tr("Fan2"), legend), "Label6");
    auto *row = new QHBoxLayout(legend);
    row->setContentsMargins(0, 0, 0, 0);
    for (QWidget *part : std::initializer_list<QWidget *>{Line1, Label5, Line2, Label6}) {
        row->addWidget(part);
    }
}

void LookupGraphPanel::HideLegend() {
    for (QWidget *part : std::initializer_list<QWidget *>{Line1, Label5, Line2, Label6}) {
        part->hide();
    }
}

void LookupGraphPanel::UpdateRPMLabels() {
    for (int line = 1; line <= rpmLines; ++line) {
        const double rpm = line * static_cast<double>(GraphRpmRange) / rpmLines;
        At(lblRPM, lastRpmLabel - line)->setText(QString::number(std::floor(rpm)));
    }
}

/// The space that the texts need around the graph.
QMargins LookupGraphPanel::Surroundings() const {
    const int line = fontMetrics().height();
    return {fontMetrics().horizontalAdvance(QStringLiteral("00000 ")), line,
            fontMetrics().horizontalAdvance(QStringLiteral("00")),
            2 * line + std::max(line, legend->sizeHint().height())};
}

void LookupGraphPanel::SetUpGraphLabels() {
    const QMargins margins = Surroundings();
    const QSize least = pctGraph->minimumSize().grownBy(margins);
    setMinimumSize(least);
    const QRect room = rect().marginsRemoved(margins);
    const double scale = std::min(room.width() / GraphWidth, room.height() / GraphHeight);
    QRect graph(0, 0, qRound(GraphWidth * scale), qRound(GraphHeight * scale));
    graph.moveCenter(room.center());
    pctGraph->setGeometry(graph);
    SetUpTempLabels(graph);
    SetUpRPMLabels(graph);
    legend->resize(legend->sizeHint());
    legend->move(graph.center().x() - legend->width() / 2,
                 graph.bottom() + 2 * fontMetrics().height());
}

void LookupGraphPanel::SetUpTempLabels(const QRect &graph) {
    QFont small = font();
    const double spacing = graph.width() / (temperatureLabels - 1.0);
    const double widest = QFontMetricsF(small).horizontalAdvance(QStringLiteral("000 "));
    small.setPointSizeF(small.pointSizeF() * std::min(1.0, spacing / widest));
    for (QLabel *label : lblTemp) {
        label->setFont(small);
        label->resize(label->sizeHint());
    }
    for (int label = 0; label < temperatureLabels; ++label) {
        int left = graph.left() + graph.width() * label / (temperatureLabels - 1);
        if (label > 0) {
            left -= lblTemp.back()->width() / 2;
        }
        if (label > 0 && celsiusPerLabel * label < 100) {
            left += Twips(twoDigitShift, *this);
        }
        At(lblTemp, label)->move(left, graph.bottom() + 2);
    }
    lblTempAxis->resize(lblTempAxis->sizeHint());
    lblTempAxis->move(graph.center().x() - lblTempAxis->width() / 2,
                      graph.bottom() + fontMetrics().height());
}

void LookupGraphPanel::SetUpRPMLabels(const QRect &graph) {
    const int right = graph.left() - fontMetrics().averageCharWidth() / 2;
    const double spacing = GraphRangeHeight / rpmLines * graph.height() / GraphHeight;
    const int height = lblTemp.front()->height();
    for (int label = firstRpmLabel; label <= lastRpmLabel; ++label) {
        auto *text = At(lblRPM, label);
        text->setFont(lblTemp.front()->font());
        const int line = graph.bottom() - qRound((lastRpmLabel - label) * spacing);
        text->setGeometry(0, line - height / 2, right, height);
    }
    lblRPMAxis->setFont(lblTemp.front()->font());
    lblRPMAxis->resize(lblRPMAxis->sizeHint());
    lblRPMAxis->move(right - lblRPMAxis->width(), graph.top() - lblRPMAxis->height());
}

void LookupGraphPanel::resizeEvent(QResizeEvent * /*event*/) {
    SetUpGraphLabels();
}

void LookupGraphPanel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) {
        SetUpGraphLabels();
    }
    QWidget::changeEvent(event);
}

} // namespace ztm
