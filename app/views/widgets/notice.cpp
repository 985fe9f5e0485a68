#include "app/views/widgets/notice.h"

#include "app/views/widgets/symbols.h"

#include <QEvent>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

namespace corvane {

namespace {

constexpr int lineGap = 2;

/// Broken between words, and inside a word that is wider than the room. The height it takes.
int layOut(QTextLayout& layout, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += line.height();
    }
    layout.endLayout();
    return qCeil(height);
}

} // namespace

QString Notice::spoken() const {
    switch (kind) {
    case Kind::error:
        return QStringLiteral("Error: ") + text;
    case Kind::warning:
        return QStringLiteral("Warning: ") + text;
    case Kind::advice:
        return QStringLiteral("Note: ") + text;
    case Kind::hint:
        break;
    }
    return text;
}

QColor noticeColour(Notice::Kind kind, const QPalette& palette) {
    switch (kind) {
    case Notice::Kind::error:
        return theme::tone(theme::Tone::bad, palette);
    case Notice::Kind::warning:
        return theme::tone(theme::Tone::attention, palette);
    case Notice::Kind::advice:
        return theme::tone(theme::Tone::accent, palette);
    case Notice::Kind::hint:
        break;
    }
    return theme::secondaryText(palette);
}

void paintNoticeMark(QPainter& painter, const QRectF& square, Notice::Kind kind, const QPalette& palette) {
    using symbols::Symbol;
    if (kind == Notice::Kind::hint) return;
    const Symbol symbol = kind == Notice::Kind::error     ? Symbol::error
                          : kind == Notice::Kind::warning ? Symbol::warning
                                                          : Symbol::info;
    symbols::paint(painter, square, symbol, noticeColour(kind, palette));
}

NoticeLines::NoticeLines(Room room, QWidget* parent) : QWidget(parent), room_(room) {
    setFont(theme::caption(font()));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setVisible(room == Room::oneLineAtLeast);
}

void NoticeLines::setNotices(std::vector<Notice> notices) {
    if (notices == notices_) return;
    notices_ = std::move(notices);
    QStringList spoken;
    for (const Notice& notice : notices_) spoken << notice.spoken();
    setAccessibleName(spoken.join(QLatin1Char(' ')));
    if (room_ == Room::onlyWhatIsNeeded) setVisible(!notices_.empty());
    updateGeometry();
    update();
}

int NoticeLines::indentOf(const Notice& notice) const {
    return notice.kind == Notice::Kind::hint ? 0 : fontMetrics().height() + theme::xs;
}

int NoticeLines::heightForWidth(int width) const {
    int height = 0;
    for (const Notice& notice : notices_) {
        if (height > 0) height += lineGap;
        QTextLayout layout(notice.text, font());
        height += layOut(layout, std::max(1, width - indentOf(notice)));
    }
    return room_ == Room::oneLineAtLeast ? std::max(height, fontMetrics().height()) : height;
}

QSize NoticeLines::sizeHint() const {
    const int width = std::max(240, this->width());
    return {width, heightForWidth(width)};
}

QSize NoticeLines::minimumSizeHint() const {
    return {80, room_ == Room::oneLineAtLeast ? fontMetrics().height() : 0};
}

void NoticeLines::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int markSide = fontMetrics().height() - 2;
    int top = 0;
    for (const Notice& notice : notices_) {
        paintNoticeMark(painter, QRectF(0, top + 1, markSide, markSide), notice.kind, palette());
        painter.setPen(notice.kind == Notice::Kind::hint ? theme::secondaryText(palette())
                                                         : palette().color(QPalette::WindowText));
        QTextLayout layout(notice.text, font());
        const int height = layOut(layout, std::max(1, width() - indentOf(notice)));
        layout.draw(&painter, QPointF(indentOf(notice), top));
        top += height + lineGap;
    }
}

void NoticeLines::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace corvane
