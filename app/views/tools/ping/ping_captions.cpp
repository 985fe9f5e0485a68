#include "app/views/tools/ping/ping_captions.h"

#include "app/views/tools/ping/ping_list.h"

#include <QEvent>
#include <QPainter>

namespace corvane {

PingCaptions::PingCaptions(const PingList& list, QWidget* parent) : QWidget(parent), list_(list) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    list.viewport()->installEventFilter(this);
}

QSize PingCaptions::sizeHint() const {
    return {200, QFontMetrics(theme::caption(font())).height() + 2 * theme::xs + 2};
}

bool PingCaptions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) update();
    return QWidget::eventFilter(watched, event);
}

void PingCaptions::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect row(0, 0, list_.viewport()->width(), height() - 1);
    const PingColumns at = PingColumns::fit(row, list_.font());
    painter.fillRect(0, height() - 1, width(), 1, theme::hairline(palette()));
    const QFont small = theme::caption(font());
    painter.setFont(small);
    painter.setPen(theme::secondaryText(palette()));
    const auto caption = [&](const QRect& column, const QString& text) {
        if (column.isEmpty()) return;
        painter.drawText(column, Qt::AlignLeft | Qt::AlignVCenter,
                         QFontMetrics(small).elidedText(text, Qt::ElideRight, column.width()));
    };
    caption(at.name, tr("Name"));
    caption(at.host.adjusted(theme::xs, 0, 0, 0), tr("Address"));
    caption(at.status, tr("Answer"));
    caption(at.history, tr("Last 30"));
    if (at.routeForm != PingColumns::RouteForm::sign) caption(at.route, tr("Route"));
}

} // namespace corvane
