// User input to a chart: mouse, wheel, keys and menu.

#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"
#include "ui/instruments/StripChartSaving.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Problems.h"

#include <QContextMenuEvent>
#include <QDateTime>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

using Part = StripChartPlace::Part;

constexpr int notch = QWheelEvent::DefaultDeltasPerStep;
constexpr double zoomStep = 1.25; // per notch of the wheel or press of a key
constexpr double panStep = 0.1;   // of the visible range
constexpr double cursorStep = 4;  // pixels

void SayNotSaved(const QString &problem, const QString &title) {
    TellProblem(problem);
    ShowMessage(problem, title, QMessageBox::Warning);
}

/// Proposed for a file; without a dot, so that it gets an extension.
QString DatedName() {
    return QObject::tr("Chart %1")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh-mm-ss")));
}

} // namespace

StripChartPlace StripChart::PlaceOf(QPointF point) const {
    return PlaceAt(point, PlotRect(), setup.right.has_value());
}

QCPAxis *StripChart::AxisOf(StripChartPlace place) const {
    return !place.IsValueAxis()           ? nullptr
           : place.part == Part::LeftAxis ? plot->yAxis
                                          : plot->yAxis2;
}

void StripChart::ShowPointer(QPointF point) {
    const StripChartPlace place = PlaceOf(point);
    setCursor(plot->Overlay().MarkAt(point - plot->pos()) != nullptr ? Qt::PointingHandCursor
              : MeasuringCursorAt(point)                             ? Qt::SizeHorCursor
              : place.part == Part::None || place.part == Part::Plot ? Qt::ArrowCursor
              : place.grip == StripChartPlace::Grip::Middle          ? Qt::OpenHandCursor
              : place.IsValueAxis()                                  ? Qt::SizeVerCursor
                                                                     : Qt::SizeHorCursor);
}

void StripChart::mousePressEvent(QMouseEvent *event) {
    const StripChartPlace place = PlaceOf(event->position());
    const auto *mark = plot->Overlay().MarkAt(event->position() - plot->pos());
    if (event->button() == Qt::LeftButton && mark != nullptr) {
        FitAxis(mark->rightAxis);
    } else if (const auto cursor = MeasuringCursorAt(event->position());
               event->button() == Qt::LeftButton && cursor) {
        heldCursor = cursor;
        heldFrom = cursors->Time(*cursor).value();
    } else if (event->button() == Qt::LeftButton && place.part != Part::None) {
        drag.emplace(place, event->position(), timeWindow, VisibleTo(), AxisOf(place));
    }
}

void StripChart::mouseMoveEvent(QMouseEvent *event) {
    if (heldCursor && event->buttons().testFlag(Qt::LeftButton)) {
        const QRectF rect = PlotRect();
        cursors->Set(*heldCursor,
                     CatchTimeAt(std::clamp(event->position().x(), rect.left(), rect.right())));
        return;
    }
    heldCursor.reset();
    if (drag && event->buttons().testFlag(Qt::LeftButton)) {
        if (drag->To(event->position(), PlotRect(), timeWindow)) {
            Redraw();
        }
        return;
    }
    drag.reset();
    ShowPointer(event->position());
    PutReadout(PlotRect().contains(event->position())
                   ? std::optional(event->position().x() - PlotRect().left())
                   : std::nullopt);
    RedrawCursor();
}

void StripChart::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        drag.reset();
        heldCursor.reset();
        ShowPointer(event->position());
    }
}

void StripChart::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    PutReadout({});
    RedrawCursor();
}

void StripChart::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        drag.reset();
        BackToLive();
    }
}

void StripChart::wheelEvent(QWheelEvent *event) {
    const StripChartPlace place = PlaceOf(event->position());
    const QPoint delta = event->angleDelta();
    const double turns = static_cast<double>(delta.y() != 0 ? delta.y() : delta.x()) / notch;
    const double factor = std::pow(zoomStep, -turns);
    const QPointF fraction = FractionOf(event->position(), PlotRect());
    if (QCPAxis *axis = AxisOf(place)) {
        ZoomValues(*axis, factor, fraction.y());
    } else if (place.part == Part::TimeAxis && IsLive()) {
        timeWindow.Zoom(factor);
    } else if (place.part != Part::None) {
        timeWindow.Zoom(factor, fraction.x());
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
            ZoomValues(*plot->yAxis, factor, 0.5);
            ZoomValues(*plot->yAxis2, factor, 0.5);
        } else {
            timeWindow.Zoom(factor);
        }
        break;
    }
    case Qt::Key_1:
    case Qt::Key_2:
        PutCursor(event->key() == Qt::Key_1 ? 0 : 1);
        break;
    case Qt::Key_Delete:
        if (cursors != nullptr) {
            cursors->Remove();
        }
        break;
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
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const bool forward = event.key() == Qt::Key_Right;
        const double sign = forward ? 1 : -1;
        control ? MoveCursor(sign * cursorStep)
        : shift ? StepCursor(forward)
                : timeWindow.Pan(sign * panStep * timeWindow.Span());
        return true;
    }
    case Qt::Key_PageUp:
        timeWindow.Pan(-timeWindow.Span());
        return true;
    case Qt::Key_PageDown:
        timeWindow.Pan(timeWindow.Span());
        return true;
    case Qt::Key_Up:
        PanValues(panStep);
        return true;
    case Qt::Key_Down:
        PanValues(-panStep);
        return true;
    case Qt::Key_Escape:
        if (drag) {
            drag->PutBack(timeWindow);
            drag.reset();
        } else if (heldCursor) {
            cursors->Set(*heldCursor, heldFrom);
            heldCursor.reset();
        } else if (cursorX) {
            PutReadout({});
        } else if (HasMeasuringCursor()) {
            cursors->Remove();
        } else {
            return false; // left to the dialog
        }
        return true;
    case Qt::Key_M:
        if (control || events.history == nullptr) {
            return false;
        }
        AskForMark();
        return true;
    case Qt::Key_F10:
        if (!shift) {
            return false;
        }
        [[fallthrough]];
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
    PutReadout(std::clamp(cursorX.value_or(width / 2) + pixels, 0.0, std::max(0.0, width - 1)));
}

/// The tooltip explains the axes; over the plot it would cover the traces.
bool StripChart::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip) {
        const auto part = PlaceOf(static_cast<QHelpEvent *>(event)->pos()).part;
        if (part == Part::Plot || part == Part::None) {
            QToolTip::hideText();
            event->ignore();
            return true;
        }
    }
    return QWidget::event(event);
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

void StripChart::contextMenuEvent(QContextMenuEvent *event) {
    if (menu) {
        return; // requested twice, by key and by the window system
    }
    drag.reset();
    menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    FillMenu(*menu);
    menu->popup(event->globalPos());
    event->accept();
}

void StripChart::FillMenu(QMenu &target) {
    const auto add = [&](const QString &text, const QKeySequence &key, auto handler) {
        QAction *action = target.addAction(text, this, handler);
        action->setShortcut(key); // shown only: keyPressEvent acts on it
        action->setShortcutContext(Qt::WidgetShortcut);
        return action;
    };
    const bool any = !history.IsEmpty();
    add(tr("&Fit Values"), Qt::Key_Home, &StripChart::Fit)->setEnabled(any);
    target.addAction(tr("Show &Whole History"), this, &StripChart::ShowWholeHistory)
        ->setEnabled(any);
    target.addAction(tr("&Original Scales"), this, &StripChart::RestoreScales);
    add(setup.recorded ? tr("Go to &End") : tr("Back to &Live"), Qt::Key_End,
        &StripChart::BackToLive)
        ->setEnabled(!IsLive());
    target.addSeparator();
    if (cursors != nullptr) {
        add(tr("Cursor &A"), Qt::Key_1, [this] { PutCursor(0); })->setEnabled(any);
        add(tr("Cursor &B"), Qt::Key_2, [this] { PutCursor(1); })->setEnabled(any);
        add(tr("&Remove Cursors"), Qt::Key_Delete, [this] {
            cursors->Remove();
        })->setEnabled(HasMeasuringCursor());
        target.addSeparator();
    }
    target.addAction(tr("&Copy Picture"), this, &StripChart::CopyPicture);
    target.addAction(tr("&Save Picture..."), this, &StripChart::AskAndSavePicture);
    target
        .addAction(
            tr("Save &Visible Range..."), this,
            [this] { AskAndSaveRange(tr("Save Visible Range"), &StripChart::SaveVisibleRange); })
        ->setEnabled(any);
    if (cursors != nullptr) {
        target
            .addAction(tr("Save S&pan between Cursors..."), this,
                       [this] {
                           AskAndSaveRange(tr("Save Span between Cursors"),
                                           &StripChart::SaveMeasuredSpan);
                       })
            ->setEnabled(any && cursors->Between());
    }
    if (!setup.recorded) {
        target.addSeparator();
        target.addAction(tr("Clear &History..."), this, &StripChart::ClearWanted)->setEnabled(any);
    }
    if (events.history != nullptr) {
        target.addSeparator();
        add(tr("Add &Mark..."), Qt::Key_M, &StripChart::AskForMark);
        target.addAction(tr("&Events..."), this, &StripChart::EventsWanted);
    }
    target.addSeparator();
    target.addAction(tr("Open Lo&g..."), this, &StripChart::OpenLogRequested);
}

void StripChart::AskAndSavePicture() {
    const QString path = AskExportFile(this, tr("Save Picture"), PictureKinds(), DatedName());
    if (!path.isEmpty() && !SavePicture(path)) {
        SayNotSaved(tr("The picture could not be saved as\n%1").arg(path), tr("Save Picture"));
    }
}

void StripChart::AskAndSaveRange(const QString &title,
                                 bool (StripChart::*save)(const QString &) const) {
    const QString path =
        AskExportFile(this, title, tr("Tab-separated text (*.txt *.tsv)"), DatedName());
    if (!path.isEmpty() && !(this->*save)(path)) {
        SayNotSaved(tr("The values could not be saved as\n%1").arg(path), title);
    }
}

} // namespace ztm
