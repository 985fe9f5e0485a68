#include "app/views/window/overlay_pill.h"

#include "app/views/widgets/symbols.h"

#include <QAccessible>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QStyle>
#include <QTimerEvent>

#include <algorithm>

namespace corvane {
namespace {

constexpr int widest = 640;
constexpr int padding = theme::m;
constexpr int signSize = 16;
constexpr int tickMilliseconds = 33;
/// How much of its way the running bar goes in one tick.
constexpr double step = 0.018;
constexpr int textFlags = Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignVCenter;

} // namespace

OverlayPill::OverlayPill(QWidget* ground)
    : QWidget(ground), effect_(new QGraphicsOpacityEffect(this)),
      animation_(new QPropertyAnimation(effect_, "opacity", this)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    effect_->setOpacity(0);
    setGraphicsEffect(effect_);
    ground->installEventFilter(this);
    connect(animation_, &QPropertyAnimation::finished, this, [this] {
        // The effect draws through a picture; text is sharper without it.
        effect_->setEnabled(!up_);
        if (!up_) hide();
    });
    hide();
}

void OverlayPill::show(const QString& text, theme::Tone tone) {
    present(text, tone, false);
}
void OverlayPill::showRunning(const QString& text) {
    present(text, theme::Tone::accent, true);
}

void OverlayPill::present(const QString& text, theme::Tone tone, bool running) {
    if (up_ && text == text_ && tone == tone_ && running == running_) return;
    text_ = text;
    tone_ = tone;
    running_ = running;
    setAccessibleName(text);
    if (ticker_) killTimer(ticker_);
    ticker_ = running ? startTimer(tickMilliseconds) : 0;
    phase_ = 0;
    place();
    QWidget::show();
    raise();
    if (!up_) fade(true);
    update();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void OverlayPill::fadeOut() {
    if (!up_) return;
    if (ticker_) killTimer(ticker_);
    ticker_ = 0;
    fade(false);
}

void OverlayPill::fade(bool in) {
    up_ = in;
    effect_->setEnabled(true);
    animation_->stop();
    // Zero where the desktop wants no animations.
    const int duration = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this);
    animation_->setDuration(std::min(duration, in ? 150 : 250));
    animation_->setStartValue(effect_->opacity());
    animation_->setEndValue(in ? 1.0 : 0.0);
    animation_->start();
}

QSize OverlayPill::sizeHint() const {
    const int ground = parentWidget() ? parentWidget()->width() : widest;
    const int most =
        std::max(160, std::min(widest, ground - 2 * theme::xl)) - 2 * padding - signSize - theme::s;
    const QRect words = fontMetrics().boundingRect(QRect(0, 0, most, 2000), textFlags, text_);
    return {words.width() + 2 * padding + signSize + theme::s + 2,
            std::max(words.height(), signSize) + 2 * theme::s + 2};
}

void OverlayPill::place() {
    const QSize size = sizeHint();
    const int left = (parentWidget()->width() - size.width()) / 2;
    setGeometry(left, theme::m, size.width(), size.height());
}

bool OverlayPill::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && up_) place();
    if (event->type() == QEvent::ChildAdded && up_) raise();
    return QWidget::eventFilter(watched, event);
}

void OverlayPill::timerEvent(QTimerEvent* event) {
    if (event->timerId() != ticker_) return;
    phase_ += step;
    if (phase_ >= 1) phase_ -= 1;
    update(0, height() - 5, width(), 5);
}

void OverlayPill::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = theme::tone(tone_, palette());
    const QRectF box = QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75);
    QColor tint = colour;
    tint.setAlphaF(0.10F);
    QPainterPath shape;
    shape.addRoundedRect(box, 8, 8);
    painter.fillPath(shape, theme::card(palette()));
    painter.fillPath(shape, tint);
    painter.setPen(QPen(colour, 1.2));
    painter.drawPath(shape);

    const QRectF sign(padding, (height() - signSize) / 2.0, signSize, signSize);
    if (running_)
        symbols::paintState(painter, sign, LinkState::Kind::noAddress, colour);
    else
        symbols::paint(painter, sign, isError() ? symbols::Symbol::error : symbols::Symbol::check, colour);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect words = rect().adjusted(padding + signSize + theme::s, 0, -padding + 1, 0);
    painter.drawText(words, textFlags, text_);
    if (!running_) return;
    painter.setClipPath(shape);
    const double length = width() * 0.35;
    const double left = phase_ * (width() + length) - length;
    painter.fillRect(QRectF(left, height() - 3.5, length, 2.5), colour);
}

} // namespace corvane
