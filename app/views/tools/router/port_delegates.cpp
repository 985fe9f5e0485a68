#include "app/views/tools/router/port_delegates.h"

#include "app/views/tools/router/port_list.h"
#include "app/views/tools/router/router_presentation.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/focus_ring.h"
#include "app/views/widgets/symbols.h"

#include <QLineEdit>
#include <QPainter>

namespace corvane {

namespace {

/// More than any router keeps of a label.
constexpr int mostCharacters = 128;
constexpr int padX = theme::s, linePad = 5, keyPad = 7, keyGap = 2, keyRadius = 5;
/// An output's line has room for the lock in words from this width on, in average characters.
constexpr int wordyCharacters = 70;
const QString arrowText = QStringLiteral("←");

const PortList& listOf(const QStyleOptionViewItem& option) {
    return *static_cast<const PortList*>(option.widget);
}

template <typename Row>
const Row& rowOf(const QModelIndex& index) {
    const auto* filter = static_cast<const QSortFilterProxyModel*>(index.model());
    return static_cast<const PortRows<Row>*>(filter->sourceModel())->row(index.data(portRole).toInt());
}

/// Of the sign at a key's right end, with the gap in front.
int signWidth(const PortTexts& texts) {
    return texts.height() - 5 + theme::xs;
}

/// The columns of an output's line.
struct Columns {
    QRect number, name, arrow, sourceNumber, source, lockSign, lockWords;
};

Columns columnsOf(const QStyleOptionViewItem& option, PortTexts& texts) {
    const QRect& row = option.rect;
    const int digits = listOf(option).numberDigits() * texts.digit();
    const int sign = texts.height() - 3;
    const int words =
        row.width() >= texts.average() * wordyCharacters
            ? texts.width(lockText(Videohub::Lock::lockedByOther), PortTexts::caption) + theme::xs
            : 0;
    int left = row.left() + padX;
    const auto take = [&](int width, int gap) {
        const QRect column(left, row.top(), std::max(0, width), row.height());
        left += std::max(0, width) + gap;
        return column;
    };
    const int arrow = texts.width(arrowText, PortTexts::plain);
    const int fixed = digits + theme::s + arrow + theme::xs + digits + theme::s + theme::s + sign +
                      (words ? words + theme::xs : 0);
    const int names = row.width() - 2 * padX - fixed - theme::s;
    Columns columns;
    columns.number = take(digits, theme::s);
    columns.name = take(names / 2, theme::s);
    columns.arrow = take(arrow, theme::xs);
    columns.sourceNumber = take(digits, theme::s);
    columns.source = take(names - names / 2, theme::s);
    columns.lockSign = take(sign, theme::xs);
    columns.lockWords = take(words, 0);
    return columns;
}

/// The text, and behind it what it is to become.
void drawChanging(PortTexts& texts, QPainter& painter, const QRect& room, const QString& text,
                  const std::optional<QString>& pending, const QColor& colour, const QColor& faint) {
    if (!pending) return texts.draw(painter, room, text, PortTexts::plain, colour);
    const int now = std::min(texts.width(text, PortTexts::plain), room.width() * 2 / 5);
    texts.draw(painter, QRect(room.left(), room.top(), now + 1, room.height()), text, PortTexts::plain,
               colour);
    texts.draw(painter, room.adjusted(now + theme::xs, 0, 0, 0), QStringLiteral("→ ") + *pending + u'…',
               PortTexts::slanted, faint);
}

QRectF keyOf(const QRect& cell) {
    return QRectF(cell).adjusted(keyGap, keyGap, -keyGap, -keyGap);
}

void drawKey(QPainter& painter, const QRectF& key, const QPen& edge, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    painter.setBrush(palette.color(QPalette::Button));
    painter.drawRoundedRect(key.adjusted(0.5, 0.5, -0.5, -0.5), keyRadius, keyRadius);
    painter.restore();
}

/// Whether the list has the keyboard, and this row in it.
bool hasKeyboard(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const auto& list = listOf(option);
    return list.hasFocus() && list.currentIndex() == index;
}

/// Closed while this computer holds it, with a bar while another client does, open and faint while only asked
/// for.
void drawLock(QPainter& painter, const QRect& column, const OutputRow& row, const QPalette& palette) {
    using symbols::Symbol;
    const bool unlocked = row.lock == Videohub::Lock::unlocked, mine = row.lock == Videohub::Lock::owned;
    if (unlocked && !row.lockPending) return;
    const qreal side = column.width();
    const QRectF box(column.left(), column.center().y() + 0.5 - side / 2, side, side);
    const theme::Tone tone = row.lockPending ? theme::Tone::neutral
                             : mine          ? theme::Tone::accent
                                             : theme::Tone::attention;
    symbols::paint(painter, box,
                   unlocked ? Symbol::lockOpen
                   : mine   ? Symbol::lock
                            : Symbol::lockBarred,
                   theme::tone(tone, palette));
}

} // namespace

QWidget* PortDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
    auto* edit = new QLineEdit(parent);
    edit->setMaxLength(mostCharacters);
    edit->setAccessibleName(tr("Name of %1").arg(index.data(Qt::DisplayRole).toString()));
    edit->setPlaceholderText(tr("No label"));
    return edit;
}

void PortDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    // What the router reports meanwhile doesn't touch what is being written.
    auto* edit = static_cast<QLineEdit*>(editor);
    if (!edit->isModified()) edit->setText(index.data(Qt::EditRole).toString());
}

void PortDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    const auto* edit = static_cast<QLineEdit*>(editor);
    if (edit->isModified()) model->setData(index, edit->text(), Qt::EditRole);
}

void PortDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
    const QRect name = nameRect(option);
    editor->setGeometry(name.left() - 6, option.rect.top() + 1, name.width() + 10, option.rect.height() - 2);
}

QSize OutputDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {240, texts(option).height() + 2 * linePad};
}

QRect OutputDelegate::nameRect(const QStyleOptionViewItem& option) const {
    return columnsOf(option, texts(option)).name;
}

void OutputDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    const auto& row = rowOf<OutputRow>(index);
    const QPalette& palette = option.palette;
    const QColor text = palette.color(QPalette::WindowText), faint = theme::secondaryText(palette);
    PortTexts& texts = this->texts(option);
    const Columns columns = columnsOf(option, texts);
    const QRectF plate = QRectF(option.rect).adjusted(3, 0.5, -3, -0.5);
    const bool chosen = option.state & QStyle::State_Selected;
    if (chosen || (option.state & QStyle::State_MouseOver))
        paintTint(*painter, plate, keyRadius, chosen ? 0.20F : 0.06F, palette);
    if (hasKeyboard(option, index)) paintFocusRing(*painter, plate, keyRadius, palette);

    const auto number = [&](const QRect& column, int value) {
        texts.draw(*painter, column, QString::number(value), PortTexts::number, faint, Qt::AlignRight);
    };
    number(columns.number, row.number());
    drawChanging(texts, *painter, columns.name, row.name, row.namePending, text, faint);
    const QColor now = stale_ ? faint : text;
    texts.draw(*painter, columns.arrow, arrowText, PortTexts::plain, faint);
    if (row.source) number(columns.sourceNumber, *row.source + 1);
    const auto pending = row.sourcePending ? std::optional(row.sourcePendingName) : std::nullopt;
    drawChanging(texts, *painter, columns.source, row.source ? row.sourceName : absent, pending, now, faint);
    drawLock(*painter, columns.lockSign, row, palette);
    texts.draw(*painter, columns.lockWords, lockText(row.lock), PortTexts::caption, now);
}

QSize SourceDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {std::max(1, listOf(option).gridSize().width()), texts(option).height() + 2 * (keyPad + keyGap)};
}

QRect SourceDelegate::nameRect(const QStyleOptionViewItem& option) const {
    const PortTexts& texts = this->texts(option);
    const int digits = listOf(option).numberDigits() * texts.digit();
    return option.rect.adjusted(keyGap + padX - 2 + digits + theme::s, 0,
                                -keyGap - padX + 2 - signWidth(texts), 0);
}

void SourceDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    const auto& row = rowOf<SourceRow>(index);
    const QPalette& palette = option.palette;
    const QColor text = palette.color(QPalette::WindowText), faint = theme::secondaryText(palette);
    PortTexts& texts = this->texts(option);
    const QRectF key = keyOf(option.rect);
    const bool current = row.isCurrent && !stale_;
    const QColor accent = theme::tone(theme::Tone::accent, palette);
    const QColor next = theme::tone(theme::Tone::attention, palette);
    if (row.isPreselected)
        drawKey(*painter, key, QPen(next, 1.8), palette);
    else if (current)
        drawKey(*painter, key, accent, palette);
    else
        painter->drawPixmap(option.rect.topLeft(),
                            plainKey(option.rect.size(), painter->device()->devicePixelRatioF(), palette));
    if (current) paintTint(*painter, key, keyRadius, 0.24F, palette);
    if (option.state & QStyle::State_MouseOver) paintTint(*painter, key, keyRadius, 0.08F, palette);
    if (hasKeyboard(option, index)) {
        paintFocusRing(*painter, row.isPreselected ? key.adjusted(3, 3, -3, -3) : key, keyRadius - 1,
                       palette);
    }

    const QRect name = nameRect(option);
    const int digits = listOf(option).numberDigits() * texts.digit();
    texts.draw(*painter, QRect(name.left() - theme::s - digits, name.top(), digits, name.height()),
               QString::number(row.number()), PortTexts::number, faint, Qt::AlignRight);
    const bool signedKey = current || row.isPreselected;
    const QRect room = signedKey ? name : name.adjusted(0, 0, signWidth(texts), 0);
    drawChanging(texts, *painter, room, row.name, row.namePending, text, faint);
    if (signedKey) {
        const qreal side = texts.height() - 5;
        const QRectF sign(key.right() - padX - side + 2, key.center().y() - side / 2, side, side);
        symbols::paint(*painter, sign, current ? symbols::Symbol::check : symbols::Symbol::chevronRight,
                       row.isPreselected ? next : accent);
    }
}

const QPixmap& SourceDelegate::plainKey(QSize cell, qreal scale, const QPalette& palette) const {
    const QSize pixels = (QSizeF(cell) * scale).toSize();
    if (plainKey_.size() == pixels && plainKeyPalette_ == palette.cacheKey()) return plainKey_;
    plainKeyPalette_ = palette.cacheKey();
    plainKey_ = QPixmap(pixels);
    plainKey_.setDevicePixelRatio(scale);
    plainKey_.fill(Qt::transparent);
    QPainter painter(&plainKey_);
    drawKey(painter, keyOf(QRect(QPoint(), cell)), theme::hairline(palette), palette);
    return plainKey_;
}

} // namespace corvane
