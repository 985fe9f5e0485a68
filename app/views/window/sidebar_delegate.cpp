#include "app/views/window/sidebar_delegate.h"
#include "app/views/tools/tool_presentation.h"

#include "app/views/widgets/symbols.h"
#include "app/views/widgets/theme.h"
#include "app/views/window/sidebar_model.h"

#include <QPainter>

namespace corvane {
namespace {

constexpr int side = theme::s;
constexpr int signSize = 13;

QFont headingFont(const QFont& font) {
    QFont heading = theme::caption(font);
    heading.setWeight(QFont::DemiBold);
    return heading;
}

QFont nameFont(QFont font) {
    font.setWeight(QFont::Medium);
    return font;
}

void paintHeading(QPainter& painter, const QStyleOptionViewItem& option, const SidebarGroup& group,
                  bool current) {
    const QColor colour = theme::secondaryText(option.palette);
    const QFont font = headingFont(option.font);
    QRect line = option.rect.adjusted(side + theme::xs, 0, -side, -theme::xs);
    line.setTop(line.bottom() - QFontMetrics(font).height() - 1);
    painter.setFont(font);
    painter.setPen(colour);
    const QRect words =
        painter.fontMetrics().boundingRect(line, Qt::AlignLeft | Qt::AlignVCenter, group.title);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, group.title);
    const bool open = option.state & QStyle::State_Open;
    const QRectF chevron(words.right() + theme::xs, line.center().y() - 4, 9, 9);
    symbols::paint(painter, chevron, open ? symbols::Symbol::chevronDown : symbols::Symbol::chevronRight,
                   colour);
    if (!current) return;
    painter.setPen(QPen(option.palette.color(QPalette::Highlight), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(line).adjusted(-4, -1, 4, 3), 4, 4);
}

void paintSign(QPainter& painter, const QRectF& box, const SidebarRow& row, const QPalette& palette) {
    const QColor quiet = theme::tone(theme::Tone::neutral, palette);
    switch (row.sign) {
    case SidebarRow::Sign::state:
        symbols::paintState(painter, box, row.state, palette);
        break;
    case SidebarRow::Sign::globalPreset:
        symbols::paint(painter, box, symbols::Symbol::globalPreset, quiet);
        break;
    case SidebarRow::Sign::vlan:
        symbols::paint(painter, box, symbols::Symbol::vlan, quiet);
        break;
    case SidebarRow::Sign::order:
        symbols::paint(painter, box, symbols::Symbol::order, quiet);
        break;
    case SidebarRow::Sign::tool:
        if (row.tool) symbols::paint(painter, box, toolSign(*row.tool), quiet);
        break;
    case SidebarRow::Sign::missing:
        symbols::paintState(painter, box, LinkState::Kind::adapterMissing, palette);
        break;
    case SidebarRow::Sign::none:
        symbols::paint(painter, box, symbols::Symbol::plus, theme::tone(theme::Tone::accent, palette));
        break;
    }
}

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, bool current) {
    const QRectF box = QRectF(option.rect).adjusted(side - 2.5, 1.5, -(side - 2.5), -1.5);
    QColor tint = option.palette.color(QPalette::Highlight);
    const bool selected = option.state & QStyle::State_Selected;
    if (selected) {
        tint.setAlphaF(theme::isDark(option.palette) ? 0.42F : 0.17F);
    } else if (option.state & QStyle::State_MouseOver) {
        tint = option.palette.color(QPalette::WindowText);
        tint.setAlphaF(0.05F);
    } else {
        tint = Qt::transparent;
    }
    painter.setPen(current ? QPen(theme::tone(theme::Tone::accent, option.palette), 1.5) : QPen(Qt::NoPen));
    painter.setBrush(tint);
    painter.drawRoundedRect(box, 6, 6);
}

} // namespace

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given,
                            const QModelIndex& index) const {
    const auto* model = qobject_cast<const SidebarModel*>(index.model());
    if (!model) return;
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // The focus ring is drawn while the list has the keyboard.
    const bool current =
        (option.state & QStyle::State_HasFocus) && option.widget && option.widget->hasFocus();
    if (const auto* group = model->heading(index)) {
        paintHeading(*painter, option, *group, current);
    } else if (const auto* row = model->row(index)) {
        paintGround(*painter, option, current);
        const QRect inner = option.rect.adjusted(side + theme::s, 5, -(side + theme::s), -5);
        const QFont name = nameFont(option.font), detail = theme::tabular(theme::caption(option.font));
        const int nameHeight = QFontMetrics(name).height();
        QRect text = inner.adjusted(signSize + theme::s, 0, 0, 0);
        if (row->internet || row->active) text.setRight(text.right() - 20);
        paintSign(*painter,
                  QRectF(inner.left(), inner.top() + (nameHeight - signSize) / 2.0, signSize, signSize), *row,
                  option.palette);
        const QRectF mark(inner.right() - 13, inner.top() + (nameHeight - 13) / 2.0, 13, 13);
        if (row->active) {
            symbols::paint(*painter, mark, symbols::Symbol::check,
                           theme::tone(theme::Tone::good, option.palette));
        } else if (row->internet) {
            symbols::paint(*painter, mark, symbols::Symbol::globe, theme::secondaryText(option.palette));
        }
        painter->setFont(name);
        painter->setPen(row->item ? option.palette.color(QPalette::WindowText)
                                  : theme::tone(theme::Tone::accent, option.palette));
        painter->drawText(text, Qt::AlignLeft | Qt::AlignTop,
                          painter->fontMetrics().elidedText(row->title, Qt::ElideRight, text.width()));
        text.setRight(inner.right());
        painter->setFont(detail);
        painter->setPen(theme::secondaryText(option.palette));
        painter->drawText(text, Qt::AlignLeft | Qt::AlignBottom,
                          painter->fontMetrics().elidedText(row->detail, Qt::ElideRight, text.width()));
    }
    painter->restore();
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int caption = QFontMetrics(theme::caption(option.font)).height();
    if (!index.parent().isValid())
        return {80, caption + (index.row() == 0 ? theme::m : theme::l + theme::xs)};
    return {80, QFontMetrics(nameFont(option.font)).height() + caption + 12};
}

} // namespace corvane
