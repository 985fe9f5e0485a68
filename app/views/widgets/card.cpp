#include "app/views/widgets/card.h"

#include "app/views/widgets/theme.h"

#include <QPainter>

namespace corvane {

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme::hairline(palette()));
    painter.setBrush(theme::card(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace corvane
