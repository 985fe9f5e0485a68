#include "app/views/widgets/notice.h"

#include "app/views/widgets/symbols.h"

#include <QEvent>
#include <QPainter>

namespace corvane {

namespace {

constexpr int lineGap = 2;
constexpr int wrapping = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextWrapAnywhere;

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

QRect NoticeLines::textRect(const Notice& notice, int top, int width) const {
    const int indent = notice.kind == Notice::Kind::hint ? 0 : fontMetrics().height() + theme::xs;
    const QRect room(indent, top, std::max(1, width - indent), 10'000);
    return fontMetrics().boundingRect(room, wrapping, notice.text);
}

int NoticeLines::heightForWidth(int width) const {
    int height = 0;
    for (const Notice& notice : notices_) {
        if (height > 0) height += lineGap;
        height += textRect(notice, 0, width).height();
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
        const QRect rect = textRect(notice, top, width());
        painter.setPen(notice.kind == Notice::Kind::hint ? theme::secondaryText(palette())
                                                         : palette().color(QPalette::WindowText));
        painter.drawText(QRect(rect.left(), top, width() - rect.left(), rect.height()), wrapping,
                         notice.text);
        top += rect.height() + lineGap;
    }
}

void NoticeLines::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace corvane
