// How the states of a host are drawn.
#include "app/views/tools/ping/ping_row.h"

#include <QPainter>
#include <QPainterPath>

namespace corvane {

/// Of a state that says nothing about the host.
static constexpr float quietOpacity = 0.4F;

theme::Tone toneOf(PingRow::Sign sign) {
    switch (sign) {
    case PingRow::Sign::reply:
        return theme::Tone::good;
    case PingRow::Sign::timeout:
        return theme::Tone::bad;
    case PingRow::Sign::unresolved:
        return theme::Tone::attention;
    case PingRow::Sign::paused:
    case PingRow::Sign::waiting:
        break;
    }
    return theme::Tone::neutral;
}

void paintPingSign(QPainter& painter, const QRectF& box, PingRow::Sign sign, const QPalette& palette) {
    QColor colour = theme::tone(toneOf(sign), palette);
    if (toneOf(sign) == theme::Tone::neutral) colour.setAlphaF(quietOpacity);
    const qreal side = std::min(box.width(), box.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.center());
    painter.scale(side / 12, side / 12);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    switch (sign) {
    case PingRow::Sign::reply:
        painter.drawEllipse(QPointF(), 5, 5);
        break;
    case PingRow::Sign::timeout: {
        QPainterPath disc, cross;
        disc.addEllipse(QPointF(), 6, 6);
        cross.addRect(-3.4, -0.8, 6.8, 1.6);
        cross.addRect(-0.8, -3.4, 1.6, 6.8);
        cross.setFillRule(Qt::WindingFill);
        painter.rotate(45);
        painter.drawPath(disc.subtracted(cross));
        break;
    }
    case PingRow::Sign::unresolved:
        painter.rotate(45);
        painter.drawRoundedRect(QRectF(-4.1, -4.1, 8.2, 8.2), 0.8, 0.8);
        break;
    case PingRow::Sign::waiting:
        painter.setPen(QPen(colour, 1.8));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QPointF(), 4.4, 4.4);
        break;
    case PingRow::Sign::paused:
        painter.drawRoundedRect(QRectF(-4, -4.8, 2.8, 9.6), 0.8, 0.8);
        painter.drawRoundedRect(QRectF(1.2, -4.8, 2.8, 9.6), 0.8, 0.8);
        break;
    }
    painter.restore();
}

} // namespace corvane
