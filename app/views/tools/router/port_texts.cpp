#include "app/views/tools/router/port_texts.h"

#include "app/views/widgets/theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace corvane {

namespace {

/// More than stand on any screen.
constexpr qsizetype mostTexts = 4096;

} // namespace

void PortTexts::setFont(const QFont& font) {
    if (height_ > 0 && (font.isCopyOf(font_) || font == font_)) return;
    font_ = font;
    fonts_ = {font, theme::tabular(font), theme::caption(font), font};
    fonts_[slanted].setItalic(true);
    const QFontMetrics metrics(font);
    height_ = metrics.height();
    average_ = metrics.averageCharWidth();
    digit_ = QFontMetrics(fonts_[number]).horizontalAdvance(QLatin1Char('8'));
    laidOut_.clear();
}

const QStaticText& PortTexts::laidOut(const QString& text, Style style, int room) {
    if (laidOut_.size() >= mostTexts) laidOut_.clear();
    QStaticText& entry = laidOut_[{text, style, room}];
    if (!entry.text().isEmpty() || text.isEmpty()) return entry;
    entry.setTextFormat(Qt::PlainText);
    entry.setText(text);
    entry.prepare({}, fonts_[style]);
    if (room >= 0 && entry.size().width() > room) {
        entry.setText(QFontMetrics(fonts_[style]).elidedText(text, Qt::ElideRight, room));
        entry.prepare({}, fonts_[style]);
    }
    return entry;
}

int PortTexts::width(const QString& text, Style style) {
    return qCeil(laidOut(text, style, -1).size().width());
}

void PortTexts::draw(QPainter& painter, const QRect& room, const QString& text, Style style,
                     const QColor& colour, Qt::Alignment side) {
    if (text.isEmpty() || room.width() <= 0) return;
    const QStaticText& shown = laidOut(text, style, room.width());
    const QSizeF size = shown.size();
    const qreal left = side & Qt::AlignRight ? room.left() + room.width() - size.width() : room.left();
    painter.setFont(fonts_[style]);
    painter.setPen(colour);
    painter.drawStaticText(QPointF(left, qRound(room.top() + (room.height() - size.height()) / 2)), shown);
}

} // namespace corvane
