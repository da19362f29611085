#include "ui/instruments/ValueSlider.h"

#include "ui/instruments/InstrumentAccess.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace ztm {
namespace {

// Lengths are in text line heights.
constexpr double handleWidth = 1.5;
constexpr double handleHeight = 0.75;
constexpr double trackThickness = 0.3;
constexpr double bandHeight = 1.3;
constexpr double gap = 0.25;
constexpr double tickLength = 0.4;
constexpr double smallTickLength = 0.2;
constexpr double usualHeight = 18;
constexpr double leastHeight = 12;

constexpr double ringWidth = 2; // of the focus, in pixels

QString TextOf(double number) {
    return QString::number(number, 'g', 10);
}

/// The font, made smaller if the widest of the texts would not fit.
QFont FontThatFits(QFont font, const QStringList &texts, double room) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (const QString &text : texts) {
        widest = std::max(widest, metrics.horizontalAdvance(text));
    }
    if (widest > room) {
        const int pixels = QFontInfo(font).pixelSize();
        font.setPixelSize(std::max(1, static_cast<int>(pixels * room / widest)));
    }
    return font;
}

/// The middle of the pixel that a one-pixel line falls on.
double Sharp(double position) {
    return std::floor(position) + 0.5;
}

} // namespace

ValueSlider::ValueSlider(QWidget *parent) : QWidget(parent) {
    MakeInstrumentsAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true); // to see that a button was released elsewhere
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    UpdateFace();
}

QSize ValueSlider::sizeHint() const {
    const double line = QFontMetricsF(font()).height();
    double widest = 0;
    for (const double number : face.marks.numbered) {
        widest = std::max(widest, QFontMetricsF(font()).horizontalAdvance(TextOf(number)));
    }
    const double marks = (handleWidth + 3 * gap + tickLength) * line + 2 * ringWidth;
    return {qCeil(marks + widest), qCeil(usualHeight * line)};
}

QSize ValueSlider::minimumSizeHint() const {
    const double line = QFontMetricsF(font()).height();
    return {qCeil(2 * handleWidth * line), qCeil(leastHeight * line)};
}

void ValueSlider::SetValue(double newValue) {
    if (std::isnan(newValue) || Clamped(newValue) == value) {
        return;
    }
    value = Clamped(newValue);
    update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, value);
        QAccessible::updateAccessibility(&event);
    }
}

void ValueSlider::SetMinimum(double end) {
    SetRange(end, std::max(end, maximum));
}

void ValueSlider::SetMaximum(double end) {
    SetRange(std::min(end, minimum), end);
}

void ValueSlider::SetRange(double from, double to) {
    if (!std::isfinite(from) || !std::isfinite(to)) {
        return;
    }
    minimum = from;
    maximum = to;
    SetValue(value);
    UpdateFace();
    updateGeometry();
    update();
}

void ValueSlider::SetSteps(double small, double large) {
    smallStep = small;
    largeStep = large;
}

void ValueSlider::SetCaption(const QString &text) {
    caption = text;
    setAccessibleName(text);
    UpdateFace();
    update();
}

QString ValueSlider::ValueText() const {
    return TextOf(value);
}

void ValueSlider::MoveTo(double newValue) {
    const double before = value;
    SetValue(newValue);
    if (value != before) {
        emit ValueChanged(value);
    }
}

QPointF ValueSlider::HandlePosition(double ofValue) const {
    const double share = maximum > minimum ? (Clamped(ofValue) - minimum) / (maximum - minimum) : 0;
    return {face.track.center().x(), face.track.bottom() - share * face.track.height()};
}

/// The value at a height, with no more decimals than a pixel is worth.
double ValueSlider::ValueAt(double y) const {
    const double length = face.track.height();
    const double share = length > 0 ? (face.track.bottom() - y) / length : 0;
    const double any = minimum + (maximum - minimum) * share;
    const double decimals = std::ceil(1 - std::log10((maximum - minimum) / length));
    const double perUnit = std::pow(10, std::max(0.0, decimals));
    return Clamped(std::isfinite(perUnit) ? std::round(any * perUnit) / perUnit : any);
}

QRectF ValueSlider::HandleRect() const {
    QRectF rect(QPointF(), face.handle);
    rect.moveCenter(HandlePosition(value));
    return rect;
}

void ValueSlider::DragTo(const QPointF &position) {
    // A click on the handle is not a move.
    if (moved || position != pressed) {
        moved = true;
        MoveTo(ValueAt(position.y() - held));
    }
}

void ValueSlider::Release() {
    dragged = false;
    emit Released();
}

bool ValueSlider::event(QEvent *event) {
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        update();
        break;
    case QEvent::Hide:
        dragged = false;
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void ValueSlider::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) {
        UpdateFace();
        updateGeometry();
    } else if (event->type() == QEvent::EnabledChange) {
        dragged = false;
    }
    QWidget::changeEvent(event);
}

void ValueSlider::resizeEvent(QResizeEvent * /*event*/) {
    UpdateFace();
}

void ValueSlider::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const bool onHandle = HandleRect().contains(event->position());
    dragged = true;
    moved = !onHandle;
    start = value;
    pressed = event->position();
    // A handle grabbed off its middle keeps its distance from the mouse, so that it does not jump.
    // Within a pixel it counts as the middle.
    held = onHandle ? pressed.y() - HandlePosition(value).y() : 0;
    if (std::abs(held) <= 1) {
        held = 0;
    }
    DragTo(pressed);
}

void ValueSlider::mouseMoveEvent(QMouseEvent *event) {
    if (!dragged) {
        return;
    }
    if ((event->buttons() & Qt::LeftButton) != 0) {
        DragTo(event->position());
    } else {
        Release(); // the button was released elsewhere
    }
}

void ValueSlider::mouseReleaseEvent(QMouseEvent *event) {
    if (dragged && event->button() == Qt::LeftButton) {
        DragTo(event->position());
        Release();
    }
}

void ValueSlider::wheelEvent(QWheelEvent *event) {
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    if (const int steps = wheel.Take(*event); steps != 0) {
        MoveTo(value + steps * smallStep);
    }
}

void ValueSlider::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        MoveTo(value + smallStep);
        break;
    case Qt::Key_Down:
    case Qt::Key_Left:
        MoveTo(value - smallStep);
        break;
    case Qt::Key_PageUp:
        MoveTo(value + largeStep);
        break;
    case Qt::Key_PageDown:
        MoveTo(value - largeStep);
        break;
    case Qt::Key_Home:
        MoveTo(minimum);
        break;
    case Qt::Key_End:
        MoveTo(maximum);
        break;
    case Qt::Key_Escape:
        if (dragged) {
            MoveTo(start);
            Release();
            break;
        }
        [[fallthrough]];
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}

void ValueSlider::UpdateFace() {
    const double line = QFontMetricsF(font()).height();
    face.marks = MarksFor(minimum, maximum);
    face.bandHeight = bandHeight * line;
    face.handle = {handleWidth * line, handleHeight * line};
    const double fromBand = face.handle.height() / 2 + ringWidth;
    const double top = face.bandHeight + fromBand;
    const double bottom = height() - face.bandHeight - fromBand;
    const double middle = Sharp(ringWidth + face.handle.width() / 2);
    face.track = {QPointF(middle, top), QPointF(middle, std::max(top, bottom))};
    face.ticksLeft = middle + face.handle.width() / 2 + gap * line;

    QStringList numbers;
    for (const double number : face.marks.numbered) {
        numbers += TextOf(number);
    }
    const double numbersLeft = face.ticksLeft + (tickLength + gap) * line;
    face.numberFont = FontThatFits(font(), numbers, width() - numbersLeft - gap * line);
    QFont bold = font();
    bold.setBold(true);
    face.captionFont = FontThatFits(bold, {caption}, width());
}

void ValueSlider::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawText(painter, 0, caption);
    DrawScale(painter);
    DrawTrack(painter);
    DrawHandle(painter);
    DrawText(painter, height() - face.bandHeight, ValueText());
}

void ValueSlider::DrawText(QPainter &painter, double top, const QString &text) const {
    painter.setFont(face.captionFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(0, top, width(), face.bandHeight), Qt::AlignCenter, text);
}

void ValueSlider::DrawScale(QPainter &painter) const {
    const double line = QFontMetricsF(font()).height();
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setFont(face.numberFont);
    const auto drawTick = [&](double y, double length) {
        painter.drawLine(QPointF(face.ticksLeft, y), QPointF(face.ticksLeft + length * line, y));
    };
    for (const double number : face.marks.small) {
        drawTick(Sharp(HandlePosition(number).y()), smallTickLength);
    }
    const double numbersLeft = face.ticksLeft + (tickLength + gap) * line;
    for (const double number : face.marks.numbered) {
        const double y = Sharp(HandlePosition(number).y());
        drawTick(y, tickLength);
        painter.drawText(QRectF(numbersLeft, y - line, width() - numbersLeft, 2 * line),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, TextOf(number));
    }
}

/// The track, filled up to the handle.
void ValueSlider::DrawTrack(QPainter &painter) const {
    const double half = trackThickness * QFontMetricsF(font()).height() / 2;
    QColor empty = palette().color(QPalette::WindowText);
    empty.setAlphaF(0.25F);
    QRectF groove = face.track.adjusted(-half, -half, half, half);
    painter.setPen(Qt::NoPen);
    painter.setBrush(empty);
    painter.drawRoundedRect(groove, half, half);
    groove.setTop(HandlePosition(value).y());
    painter.setBrush(isEnabled() ? palette().color(QPalette::Highlight) : empty);
    painter.drawRoundedRect(groove, half, half);
}

void ValueSlider::DrawHandle(QPainter &painter) const {
    const QRectF handle = HandleRect();
    constexpr double corner = 3;
    painter.setPen(Qt::NoPen);
    if (hasFocus()) {
        painter.setBrush(palette().color(QPalette::Highlight));
        painter.drawRoundedRect(handle.adjusted(-ringWidth, -ringWidth, ringWidth, ringWidth),
                                corner + ringWidth, corner + ringWidth);
    }
    const QColor ink = palette().color(QPalette::WindowText);
    painter.setPen(ink);
    painter.setBrush(palette().color(QPalette::Button));
    painter.drawRoundedRect(handle.adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    // The line that points at the scale.
    const double y = handle.center().y();
    painter.drawLine(QPointF(handle.left() + corner, y), QPointF(handle.right() - corner, y));
}

} // namespace ztm
