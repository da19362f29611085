#pragma once

#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QPaintEvent>
#include <QTest>
#include <QWheelEvent>

namespace ztm::test {

/// A turn of the wheel over a point, of which 120 are a notch.
inline void TurnWheel(QWidget &widget, QPointF at, int angle) {
    QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

/// An event of the mouse, to a fraction of a pixel.
inline void SendMouse(QWidget &widget, QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// The rest of a drag: a move to each of the points, and the release there.
inline void MoveAndRelease(QWidget &widget, QPoint press, const std::vector<QPoint> &moves,
                           Qt::MouseButton button = Qt::LeftButton) {
    for (const QPoint &move : moves) {
        QTest::mouseMove(&widget, move);
    }
    QTest::mouseRelease(&widget, button, {}, moves.empty() ? press : moves.back());
}

/// What the screen shows of a window: only what has been painted in time.
inline QImage OnScreen(const QWidget &window) {
    const auto &device = dynamic_cast<const QImage &>(*window.backingStore()->paintDevice());
    return device.copy().convertToFormat(QImage::Format_RGB32);
}

/// A window painted as a whole.
inline QImage PaintedAnew(QWidget &window) {
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// Counts what a widget is asked to paint.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject &widget) { widget.installEventFilter(this); }

    int paints = 0;
    int pixels = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            ++paints;
            const QRect rect = static_cast<QPaintEvent *>(event)->rect();
            pixels += rect.width() * rect.height();
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace ztm::test
