// The ring around what has the keyboard focus, and the tint behind what is selected or pointed at.
#pragma once

#include "app/views/widgets/theme.h"

#include <QPainter>

namespace corvane {

/// Just inside the rectangle.
inline void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme::tone(theme::Tone::accent, palette), 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.8, 0.8, -0.8, -0.8), radius, radius);
    painter.restore();
}

inline void paintTint(QPainter& painter, const QRectF& rect, qreal radius, float strength,
                      const QPalette& palette) {
    QColor tint = theme::tone(theme::Tone::accent, palette);
    tint.setAlphaF(strength);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

} // namespace corvane
