#include "app/views/tools/ping/ping_row_delegate.h"

#include "app/views/tools/ping/history_bar.h"
#include "app/views/tools/ping/ping_list.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/focus_ring.h"
#include "app/views/widgets/symbols.h"

namespace corvane {

namespace {

void drawText(QPainter& painter, const QRect& box, const QFont& font, const QColor& colour,
              const QString& text, Qt::TextElideMode elide = Qt::ElideRight) {
    if (box.width() <= 0) return;
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(font).elidedText(text, elide, box.width()));
}

QRect middle(const QRect& cell, int side) {
    return {cell.left(), cell.top() + (cell.height() - side) / 2, side, side};
}

} // namespace

QSize PingRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {200, option.fontMetrics.height() + 2 * (dense_ ? 5 : 9)};
}

void PingRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const auto* list = static_cast<const PingList*>(option.widget);
    if (!list || !list->needsPainting(option.rect)) return;
    const PingRow& row = list->rowModel().row(index);
    const QPalette& palette = option.palette;
    const QColor text = palette.color(QPalette::WindowText), quiet = theme::secondaryText(palette);
    const PingColumns at = PingColumns::fit(option.rect, option.font);
    painter->save();

    if (index.row() > 0) {
        painter->fillRect(option.rect.left() + theme::m, option.rect.top(),
                          option.rect.width() - 2 * theme::m, 1, theme::hairline(palette));
    }
    const QRectF plate = QRectF(option.rect).adjusted(4, 2, -4, -1);
    const bool selected = option.state & QStyle::State_Selected;
    if (selected || (option.state & QStyle::State_MouseOver))
        paintTint(*painter, plate, 5, selected ? 0.16F : 0.06F, palette);
    if (list->hasFocus() && list->currentIndex() == index) paintFocusRing(*painter, plate, 5, palette);

    paintPingSign(*painter, at.sign, row.sign, palette);
    QFont nameFont = option.font;
    nameFont.setWeight(QFont::Medium);
    const QFont figures = theme::tabular(option.font);
    if (!row.name.isEmpty())
        drawText(*painter, at.name, nameFont, text, row.name);
    else if (at.host.isEmpty())
        drawText(*painter, at.name, figures, text, row.host, Qt::ElideMiddle);
    else
        drawText(*painter, at.name, nameFont, quiet, absent);

    if (!at.host.isEmpty()) {
        const QRect inner = at.host.adjusted(theme::xs, 0, -theme::xs, 0);
        const QString host = row.host.isEmpty() ? absent : row.host;
        if (list->pointsAtHost(index) && !row.host.isEmpty()) {
            const int width = std::min(inner.width(), QFontMetrics(figures).horizontalAdvance(host));
            paintTint(*painter,
                      QRectF(at.host.left(), at.host.top() + 3, width + 2 * theme::xs, at.host.height() - 5),
                      4, 0.14F, palette);
        }
        if (list->showsCopied(index)) {
            const QFont small = theme::caption(option.font);
            const QColor good = theme::tone(theme::Tone::good, palette);
            const QRect mark = middle(inner, 11);
            symbols::paint(*painter, mark, symbols::Symbol::check, good);
            drawText(*painter, inner.adjusted(mark.width() + theme::xs, 0, 0, 0), small, good,
                     PingList::tr("Copied"));
        } else {
            drawText(*painter, inner, figures, row.host.isEmpty() ? quiet : text, host, Qt::ElideMiddle);
        }
    }

    const bool quietState = row.sign == PingRow::Sign::paused || row.sign == PingRow::Sign::waiting;
    drawText(*painter, at.status, figures, quietState ? quiet : text, row.status);
    if (!at.history.isEmpty()) HistoryBar::paint(*painter, at.history, row.history, palette);
    if (!at.route.isEmpty()) {
        const QFont small = theme::caption(option.font);
        const bool warns = row.route.kind() == PingRow::Route::Kind::noLocalSubnet;
        QRect words = at.route;
        if (warns) {
            symbols::paint(*painter, middle(at.route, PingColumns::routeSignSide), symbols::Symbol::warning,
                           theme::tone(theme::Tone::attention, palette));
            words.setLeft(words.left() + PingColumns::routeSignSide + theme::xs);
        }
        using Form = PingColumns::RouteForm;
        if (at.routeForm == Form::words || (!warns && at.routeForm == Form::name))
            drawText(*painter, words, small, quiet, row.route.label());
    }
    painter->restore();
}

} // namespace corvane
