#include "app/views/widgets/row_delegate.h"

#include "app/views/widgets/focus_ring.h"
#include "app/views/widgets/symbols.h"

#include <QAbstractItemView>

namespace corvane {

namespace {

constexpr int padX = theme::m, padY = 9, lineGap = 2;

const Row& rowOf(const QModelIndex& index) {
    return static_cast<const RowModel*>(index.model())->row(index);
}

QFont strong(QFont font) {
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const Row& row = rowOf(index);
    int height = QFontMetrics(strong(option.font)).height();
    if (!row.detail.isEmpty()) height += lineGap + QFontMetrics(theme::tabular(option.font)).height();
    const int noticeHeight = QFontMetrics(theme::caption(option.font)).height() + lineGap + 1;
    height += static_cast<int>(row.notices.size()) * noticeHeight;
    return {200, std::max(height, button_.height()) + 2 * padY};
}

void RowDelegate::updateEditorGeometry(QWidget* button, const QStyleOptionViewItem& option,
                                       const QModelIndex&) const {
    const QSize size = button->sizeHint();
    const QRect& row = option.rect;
    button->setGeometry(row.right() - padX - size.width() + 1, row.top() + padY, size.width(), size.height());
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    const Row& row = rowOf(index);
    const QPalette& palette = option.palette;
    const QRect bounds = option.rect;
    painter->save();
    if (index.row() > 0) {
        painter->fillRect(QRect(bounds.left() + padX, bounds.top(), bounds.width() - 2 * padX, 1),
                          theme::hairline(palette));
    }
    const QRectF plate = QRectF(bounds).adjusted(4, 3, -4, -2);
    const bool selected = option.state & QStyle::State_Selected;
    if (selected || (option.state & QStyle::State_MouseOver)) {
        paintTint(*painter, plate, 6, selected ? 0.16F : 0.06F, palette);
    }
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    if (view && view->hasFocus() && view->currentIndex() == index)
        paintFocusRing(*painter, plate, 6, palette);

    const QFont titleFont = strong(option.font), captionFont = theme::caption(option.font);
    const QFontMetrics titleMetrics(titleFont);
    int left = bounds.left() + padX, top = bounds.top() + padY;
    const int right = bounds.right() - padX - (button_.isEmpty() ? 0 : button_.width() + theme::m);

    const int titleHeight = titleMetrics.height();
    int titleLeft = left;
    if (row.state) {
        const QRectF dot(left, top + (titleHeight - 12) / 2.0, 12, 12);
        symbols::paintState(*painter, dot, *row.state, palette);
        titleLeft += 12 + theme::s;
    }
    int titleRight = right;
    if (!row.mark.isEmpty()) {
        const QFontMetrics metrics(captionFont);
        const QColor good = theme::tone(theme::Tone::good, palette);
        const int textWidth = metrics.horizontalAdvance(row.mark);
        const int side = metrics.height() - 3;
        painter->setFont(captionFont);
        painter->setPen(good);
        painter->drawText(QRect(right - textWidth, top, textWidth, titleHeight),
                          Qt::AlignVCenter | Qt::AlignRight, row.mark);
        const QRectF check(right - textWidth - theme::xs - side, top + (titleHeight - side) / 2.0, side,
                           side);
        symbols::paint(*painter, check, row.markSign, good);
        titleRight = static_cast<int>(check.left()) - theme::s;
    }
    painter->setFont(titleFont);
    painter->setPen(palette.color(QPalette::WindowText));
    const int titleRoom = std::max(0, titleRight - titleLeft);
    painter->drawText(QRect(titleLeft, top, titleRoom, titleHeight), Qt::AlignVCenter | Qt::AlignLeft,
                      titleMetrics.elidedText(row.title, Qt::ElideRight, titleRoom));
    top += titleHeight;
    left = titleLeft;

    if (!row.detail.isEmpty()) {
        const QFont detailFont = theme::tabular(option.font);
        const QFontMetrics metrics(detailFont);
        top += lineGap;
        painter->setFont(detailFont);
        painter->setPen(theme::secondaryText(palette));
        painter->drawText(QRect(left, top, right - left, metrics.height()), Qt::AlignVCenter | Qt::AlignLeft,
                          metrics.elidedText(row.detail, Qt::ElideRight, right - left));
        top += metrics.height();
    }

    const QFontMetrics metrics(captionFont);
    painter->setFont(captionFont);
    for (const Notice& notice : row.notices) {
        top += lineGap + 1;
        int textLeft = left;
        if (notice.kind != Notice::Kind::hint) {
            const int side = metrics.height() - 2;
            paintNoticeMark(*painter, QRectF(left, top + 1, side, side), notice.kind, palette);
            textLeft += side + theme::xs + 1;
        }
        painter->setPen(notice.kind == Notice::Kind::hint ? theme::secondaryText(palette)
                                                          : palette.color(QPalette::WindowText));
        painter->drawText(QRect(textLeft, top, right - textLeft, metrics.height()),
                          Qt::AlignVCenter | Qt::AlignLeft,
                          metrics.elidedText(notice.text, Qt::ElideRight, right - textLeft));
        top += metrics.height();
    }
    painter->restore();
}

} // namespace corvane
