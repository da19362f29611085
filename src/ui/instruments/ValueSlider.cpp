#include "ui/instruments/ValueSlider.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>

#include <array>
#include <cmath>

namespace ztm {
namespace {

constexpr int smallStep = 1;
constexpr int largeStep = 10;
constexpr int fewestScaleNumbers = 4;

/// A round distance at which a few numbers fit into the range.
double ScaleStep(double range) {
    const double power = std::pow(10, std::floor(std::log10(range)));
    for (const double step : {power, power / 2, power / 4, power / 5}) {
        if (range / step >= fewestScaleNumbers) {
            return step;
        }
    }
    return power / 10;
}

/// The slider, with access to where the style puts its handle.
class Track final : public QSlider {
public:
    using QSlider::QSlider;

    QPoint HandleAt(int position) const {
        QStyleOptionSlider option;
        initStyleOption(&option);
        option.sliderPosition = position;
        return style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this)
            .center();
    }
};

} // namespace

ValueSlider::ValueSlider(QWidget *parent)
    : QWidget(parent)
    , captionLabel(new QLabel(this))
    , slider(new Track(Qt::Vertical, this))
    , valueLabel(new QLabel(this)) {
    slider->setRange(0, 100);
    SetSteps(smallStep, largeStep);
    setFocusProxy(slider);
    connect(this, &QObject::objectNameChanged, slider,
            [this](const QString &name) { slider->setObjectName(name + QStringLiteral("Track")); });
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(captionLabel);
    layout->addWidget(slider, 1, Qt::AlignLeft);
    layout->addWidget(valueLabel);
    connect(slider, &QSlider::valueChanged, this, [this] {
        ShowValue();
        emit ValueChanged(Value());
    });
    connect(slider, &QSlider::sliderReleased, this, &ValueSlider::Released);
    ShowValue();
}

double ValueSlider::Value() const {
    return slider->value();
}

void ValueSlider::SetValue(double value) {
    if (std::isnan(value)) {
        return;
    }
    const QSignalBlocker programOnly(slider);
    slider->setValue(qRound(std::clamp(value, Minimum(), Maximum())));
    ShowValue();
}

double ValueSlider::Minimum() const {
    return slider->minimum();
}

void ValueSlider::SetMinimum(double value) {
    const QSignalBlocker programOnly(slider);
    slider->setMinimum(qRound(value));
    FitScale();
}

double ValueSlider::Maximum() const {
    return slider->maximum();
}

void ValueSlider::SetMaximum(double value) {
    const QSignalBlocker programOnly(slider);
    slider->setMaximum(qRound(value));
    FitScale();
}

void ValueSlider::SetSteps(int small, int large) {
    slider->setSingleStep(small);
    slider->setPageStep(large);
}

QString ValueSlider::Caption() const {
    return captionLabel->text();
}

void ValueSlider::SetCaption(const QString &text) {
    captionLabel->setText(text);
    slider->setAccessibleName(text);
}

QPointF ValueSlider::HandlePosition(double value) const {
    const int position = qRound(std::clamp(value, Minimum(), Maximum()));
    return slider->mapTo(this, static_cast<const Track *>(slider)->HandleAt(position));
}

void ValueSlider::ShowValue() {
    valueLabel->setText(QString::number(slider->value()));
    update();
}

void ValueSlider::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ToolTipChange) {
        slider->setToolTip(toolTip());
    }
    QWidget::changeEvent(event);
}

void ValueSlider::FitScale() {
    const int numbers = std::max(fontMetrics().horizontalAdvance(QString::number(Minimum())),
                                 fontMetrics().horizontalAdvance(QString::number(Maximum())));
    setMinimumWidth(slider->sizeHint().width() + fontMetrics().height() + numbers);
    ShowValue();
}

/// The scale: a tick and a number for the lower end and for the round numbers above it.
void ValueSlider::paintEvent(QPaintEvent * /*event*/) {
    const double range = Maximum() - Minimum();
    if (!(range > 0)) {
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const int left = slider->geometry().right() + 2;
    const int tickLength = fontMetrics().height() / 3;
    const auto paintNumber = [&](double value) {
        const int y = qRound(HandlePosition(value).y());
        painter.drawLine(left, y, left + tickLength, y);
        const QRect box(left + tickLength * 2, y - fontMetrics().height(), width(),
                        2 * fontMetrics().height());
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, QString::number(value));
    };
    const double step = ScaleStep(range);
    paintNumber(Minimum());
    for (double value = std::ceil((Minimum() + step / 2) / step) * step; value <= Maximum();
         value += step) {
        paintNumber(value);
    }
}

} // namespace ztm
