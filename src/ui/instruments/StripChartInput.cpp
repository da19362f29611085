#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double zoomStep = 1.25;      // per notch of the wheel or press of a key
constexpr double notch = 120;          // of a wheel, in eighths of a degree
constexpr double panStep = 0.1;        // of what is in sight
constexpr double cursorStep = 4;       // pixels
constexpr double gripPixels = 24;      // of the arrow at the end of an axis
constexpr double leastFraction = 0.05; // of an axis that a dragged end leaves

} // namespace

StripChart::Place StripChart::PlaceAt(QPointF point) const {
    const QRectF rect = PlotRect();
    const auto gripOf = [](double fromLower, double length) {
        const double grip = std::min(gripPixels, length / 4);
        return fromLower < grip            ? Grip::LowerEnd
               : fromLower > length - grip ? Grip::UpperEnd
                                           : Grip::Middle;
    };
    if (rect.contains(point)) {
        return {Part::Plot, Grip::Middle};
    }
    // The corners belong to the axis whose end is nearer, the value axes.
    const double fromBottom = rect.bottom() - point.y();
    const double fromLeft = point.x() - rect.left();
    if (fromLeft < 0 && fromBottom > -gripPixels / 2) {
        return {Part::LeftAxis, gripOf(fromBottom, rect.height())};
    }
    if (fromLeft > rect.width() && fromBottom > -gripPixels / 2 && setup.right) {
        return {Part::RightAxis, gripOf(fromBottom, rect.height())};
    }
    if (fromBottom < 0) {
        return {Part::TimeAxis, gripOf(fromLeft, rect.width())};
    }
    return {};
}

QCPAxis *StripChart::AxisOf(Part part) const {
    return part == Part::LeftAxis ? plot->yAxis : part == Part::RightAxis ? plot->yAxis2 : nullptr;
}

/// The point in fractions of the plot, from its lower left corner.
QPointF StripChart::FractionOf(QPointF point) const {
    const QRectF rect = PlotRect();
    return {(point.x() - rect.left()) / std::max(rect.width(), 1.0),
            (rect.bottom() - point.y()) / std::max(rect.height(), 1.0)};
}

void StripChart::ShowPointer(QPointF point) {
    const Place place = PlaceAt(point);
    const bool isTime = place.part == Part::TimeAxis;
    setCursor(place.part == Part::None || place.part == Part::Plot ? Qt::ArrowCursor
              : place.grip == Grip::Middle                         ? Qt::OpenHandCursor
              : isTime                                             ? Qt::SizeHorCursor
                                                                   : Qt::SizeVerCursor);
}

void StripChart::mousePressEvent(QMouseEvent *event) {
    const Place place = PlaceAt(event->position());
    if (event->button() != Qt::LeftButton || place.part == Part::None) {
        return;
    }
    drag = Drag{place, event->position(), false, VisibleTo(), windowSpan, 0, 0};
    if (const QCPAxis *axis = AxisOf(place.part)) {
        drag->lower = axis->range().lower;
        drag->upper = axis->range().upper;
    }
}

void StripChart::mouseMoveEvent(QMouseEvent *event) {
    if (drag && event->buttons().testFlag(Qt::LeftButton)) {
        DragTo(event->position());
        return;
    }
    drag.reset();
    ShowPointer(event->position());
    if (PlotRect().contains(event->position())) {
        cursorX = event->position().x() - PlotRect().left();
    } else {
        cursorX.reset();
    }
    RedrawCursor();
}

void StripChart::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        drag.reset();
        ShowPointer(event->position());
    }
}

void StripChart::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    cursorX.reset();
    RedrawCursor();
}

void StripChart::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        drag.reset();
        BackToLive();
    }
}

void StripChart::DragTo(QPointF point) {
    if (!drag->moved && (point - drag->start).manhattanLength() < 3) {
        return; // a click that trembles
    }
    drag->moved = true;
    if (AxisOf(drag->place.part) != nullptr) {
        DragValues(point);
    } else {
        DragTime(point);
    }
    Redraw();
}

/// The value or time under the pointer goes with it: all of the axis moves, or the end at hand
/// while the other stays.
void StripChart::DragValues(QPointF point) {
    const double was = FractionOf(drag->start).y();
    const double now = FractionOf(point).y();
    const double span = drag->upper - drag->lower;
    QCPAxis *axis = AxisOf(drag->place.part);
    if (drag->place.grip == Grip::UpperEnd) {
        const double zoomed = ValueSpan(span * was / std::max(now, leastFraction));
        axis->setRange(drag->lower, drag->lower + zoomed);
    } else if (drag->place.grip == Grip::LowerEnd) {
        const double zoomed = ValueSpan(span * (1 - was) / std::max(1 - now, leastFraction));
        axis->setRange(drag->upper - zoomed, drag->upper);
    } else {
        axis->setRange(QCPRange(drag->lower, drag->upper) + span * (was - now));
    }
}

void StripChart::DragTime(QPointF point) {
    const double was = FractionOf(drag->start).x();
    const double now = FractionOf(point).x();
    const double start = drag->end - drag->span;
    if (drag->place.grip == Grip::UpperEnd) {
        const double span = drag->span * was / std::max(now, leastFraction);
        SetWindow(start + span, span);
    } else if (drag->place.grip == Grip::LowerEnd) {
        SetWindow(drag->end, drag->span * (1 - was) / std::max(1 - now, leastFraction));
    } else {
        live = false;
        SetWindow(drag->end + (was - now) * drag->span, drag->span);
    }
}

void StripChart::wheelEvent(QWheelEvent *event) {
    const Place place = PlaceAt(event->position());
    const QPoint delta = event->angleDelta();
    const double turns = (delta.y() != 0 ? delta.y() : delta.x()) / notch;
    const double factor = std::pow(zoomStep, -turns);
    const QPointF fraction = FractionOf(event->position());
    if (QCPAxis *axis = AxisOf(place.part)) {
        ZoomValues(axis, factor, fraction.y());
    } else if (place.part == Part::TimeAxis && live) {
        ZoomTime(factor);
    } else if (place.part != Part::None) {
        ZoomTimeAt(factor, fraction.x());
    }
    event->accept();
    Redraw();
}

void StripChart::keyPressEvent(QKeyEvent *event) {
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus: {
        const double factor = event->key() == Qt::Key_Minus ? zoomStep : 1 / zoomStep;
        if (control) {
            ZoomValues(plot->yAxis, factor, 0.5);
            ZoomValues(plot->yAxis2, factor, 0.5);
        } else {
            ZoomTime(factor);
        }
        break;
    }
    case Qt::Key_Home:
        Fit();
        break;
    case Qt::Key_End:
        BackToLive();
        break;
    default:
        if (!MoveByKey(*event)) {
            QWidget::keyPressEvent(event);
            return;
        }
    }
    Redraw();
}

bool StripChart::MoveByKey(const QKeyEvent &event) {
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    switch (event.key()) {
    case Qt::Key_Left:
        control ? MoveCursor(-cursorStep) : PanTime(-panStep * windowSpan);
        return true;
    case Qt::Key_Right:
        control ? MoveCursor(cursorStep) : PanTime(panStep * windowSpan);
        return true;
    case Qt::Key_PageUp:
        PanTime(-windowSpan);
        return true;
    case Qt::Key_PageDown:
        PanTime(windowSpan);
        return true;
    case Qt::Key_Up:
        PanValues(panStep);
        return true;
    case Qt::Key_Down:
        PanValues(-panStep);
        return true;
    case Qt::Key_Escape:
        if (!cursorX) {
            return false; // for the dialog around
        }
        cursorX.reset();
        return true;
    case Qt::Key_Menu: {
        QContextMenuEvent request(QContextMenuEvent::Keyboard, rect().center(),
                                  mapToGlobal(rect().center()));
        contextMenuEvent(&request);
        return true;
    }
    default:
        return false;
    }
}

void StripChart::MoveCursor(double pixels) {
    const double width = PlotRect().width();
    cursorX = std::clamp(cursorX.value_or(width / 2) + pixels, 0.0, std::max(0.0, width - 1));
}

void StripChart::focusInEvent(QFocusEvent *event) {
    QWidget::focusInEvent(event);
    DescribeLastValues();
    update();
}

void StripChart::focusOutEvent(QFocusEvent *event) {
    QWidget::focusOutEvent(event);
    update();
}

} // namespace ztm
