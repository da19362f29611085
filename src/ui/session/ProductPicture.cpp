#include "ui/session/ProductPicture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace ztm {
namespace {

// The emblem is drawn in a square of 100 units around the origin.
constexpr double emblemUnits = 100;
constexpr double chipHalf = 30;
constexpr int pinsPerSide = 5;

constexpr QColor boardTop(16, 78, 92);
constexpr QColor boardBottom(11, 44, 66);
constexpr QColor copper(214, 170, 96);
constexpr QColor chipBody(28, 32, 38);
constexpr QColor warm(255, 140, 66);
constexpr QColor cool(120, 210, 235);

void DrawPins(QPainter &painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(copper);
    for (int side = 0; side < 4; ++side) {
        for (int pin = 0; pin < pinsPerSide; ++pin) {
            const double along = (pin - (pinsPerSide - 1) / 2.0) * 11;
            painter.drawRect(QRectF(along - 2, -chipHalf - 8, 4, 10));
        }
        painter.rotate(90);
    }
}

void DrawBody(QPainter &painter) {
    painter.setPen(QPen(QColor(70, 78, 88), 1.2));
    painter.setBrush(chipBody);
    painter.drawRoundedRect(QRectF(-chipHalf, -chipHalf, 2 * chipHalf, 2 * chipHalf), 4, 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(70, 78, 88));
    painter.drawEllipse(QPointF(-chipHalf + 6, -chipHalf + 6), 2, 2);
}

void DrawCurve(QPainter &painter) {
    QPainterPath curve;
    curve.moveTo(-24, 2);
    curve.cubicTo(-14, 2, -14, -18, -4, -18);
    curve.cubicTo(6, -18, 8, -9, 24, -9);
    QLinearGradient heat(0, 2, 0, -18);
    heat.setColorAt(0, cool);
    heat.setColorAt(1, warm);
    painter.strokePath(curve, QPen(QBrush(heat), 2.6, Qt::SolidLine, Qt::RoundCap));
}

void DrawFan(QPainter &painter) {
    painter.save();
    painter.translate(12, 14);
    painter.setPen(Qt::NoPen);
    painter.setBrush(cool);
    for (int blade = 0; blade < 5; ++blade) {
        QPainterPath path;
        path.moveTo(0, 0);
        path.cubicTo(-1, -6, 1, -11, 6, -11);
        path.cubicTo(8, -7, 5, -3, 0, 0);
        painter.drawPath(path);
        painter.rotate(72);
    }
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(), 2.2, 2.2);
    painter.restore();
}

} // namespace

ProductPicture::ProductPicture(QWidget *parent) : QWidget(parent) {
    setAccessibleName(tr("Picture of a temperature monitor chip with a fan"));
}

QSize ProductPicture::sizeHint() const {
    const int side = 22 * fontMetrics().height();
    return {side, side};
}

QIcon ProductPicture::Icon() {
    constexpr int iconPixels = 128;
    ProductPicture picture;
    picture.setAttribute(Qt::WA_TranslucentBackground);
    picture.resize(iconPixels, iconPixels);
    return picture.grab();
}

void ProductPicture::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient board(0, 0, 0, height());
    board.setColorAt(0, boardTop);
    board.setColorAt(1, boardBottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(board);
    painter.drawRoundedRect(rect(), 8, 8);

    painter.translate(rect().toRectF().center());
    const double scale = 0.92 * qMin(width(), height()) / emblemUnits;
    painter.scale(scale, scale);
    DrawPins(painter);
    DrawBody(painter);
    DrawCurve(painter);
    DrawFan(painter);
}

} // namespace ztm
