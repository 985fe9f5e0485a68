#include "app/views/widgets/copy_label.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/focus_ring.h"
#include "app/views/widgets/symbols.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

#include <chrono>

namespace corvane {

namespace {

constexpr auto signStands = std::chrono::milliseconds(1200);

} // namespace

CopyLabel::CopyLabel(const QString& caption, QWidget* parent) : QAbstractButton(parent), caption_(caption) {
    setFont(theme::tabular(font()));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    copied_.setSingleShot(true);
    copied_.setInterval(signStands);
    connect(&copied_, &QTimer::timeout, this, [this] {
        describe();
        update();
    });
    connect(this, &QAbstractButton::clicked, this, &CopyLabel::copy);
    describe();
}

void CopyLabel::setValue(const QString& value) {
    if (value == value_ && display_.isEmpty()) return;
    value_ = value;
    display_.clear();
    tip_.clear();
    copied_.stop();
    describe();
    updateGeometry();
    update();
}

void CopyLabel::setDisplay(const QString& display, const QString& tip) {
    display_ = display;
    tip_ = tip;
    describe();
    updateGeometry();
    update();
}

void CopyLabel::describe() {
    const QString shown = !display_.isEmpty() ? display_ : value_;
    setText(copyable() ? withoutMnemonics(shown) : absent);
    setShortcut({}); // QAbstractButton makes one of an ampersand in the text
    setAccessibleName(caption_ + QStringLiteral(": ") +
                      (copyable() ? (tip_.isEmpty() ? shown : tip_) : QStringLiteral("none")));
    setAccessibleDescription(copied_.isActive() ? tr("Copied")
                             : copyable()       ? tr("Press to copy")
                                                : QString());
    setFocusPolicy(copyable() ? Qt::TabFocus : Qt::NoFocus);
    setCursor(copyable() ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setToolTip(copyable() ? plainTip(tip_.isEmpty() ? tr("Click to copy %1").arg(value_)
                                                    : tip_ + QLatin1Char('\n') + tr("Click to copy"))
                          : QString());
}

void CopyLabel::copy() {
    if (!copyable()) return;
    QGuiApplication::clipboard()->setText(value_);
    copied_.start();
    describe();
    QAccessibleEvent said(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&said);
    update();
}

QSize CopyLabel::sizeHint() const {
    const QString shown = copyable() ? (display_.isEmpty() ? value_ : display_) : absent;
    return {fontMetrics().horizontalAdvance(shown) + 2 * padX + 1, fontMetrics().height() + 2 * padY};
}

QSize CopyLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * 8), sizeHint().height()};
}

bool CopyLabel::hitButton(const QPoint& point) const {
    return copyable() && QRect(0, 0, std::min(width(), sizeHint().width()), height()).contains(point);
}

void CopyLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect chip(0, 0, std::min(width(), sizeHint().width()), height());
    const QRect inner = chip.adjusted(padX, 0, -padX, 0);
    if (copyable() && (underMouse() || isDown()))
        paintTint(painter, chip, 4, isDown() ? 0.22F : 0.12F, palette());
    if (hasFocus()) paintFocusRing(painter, QRectF(chip), 4, palette());

    const QString shown = copyable() ? (display_.isEmpty() ? value_ : display_) : absent;
    painter.setPen(copyable() ? palette().color(QPalette::WindowText) : theme::secondaryText(palette()));
    const QFont caption = theme::caption(font());
    const QString sign = tr("Copied");
    const int signWidth = QFontMetrics(caption).horizontalAdvance(sign) + height() / 2 + 2 * theme::xs;
    const bool beside = width() - chip.right() > signWidth + theme::xs;
    if (!copied_.isActive() || beside) {
        painter.drawText(inner, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(shown, Qt::ElideMiddle, inner.width()));
    }
    if (copied_.isActive()) {
        const int left = beside ? chip.right() + theme::xs : padX;
        const qreal side = height() * 0.5;
        painter.setFont(caption);
        symbols::paint(painter, QRectF(left, (height() - side) / 2, side, side), symbols::Symbol::check,
                       theme::tone(theme::Tone::good, palette()));
        painter.setPen(theme::tone(theme::Tone::good, palette()));
        const int textLeft = left + static_cast<int>(side) + 3;
        painter.drawText(QRect(textLeft, 0, width() - textLeft, height()), Qt::AlignLeft | Qt::AlignVCenter,
                         sign);
    }
}

void CopyLabel::keyPressEvent(QKeyEvent* event) {
    if (copyable() && (event->matches(QKeySequence::Copy) || event->key() == Qt::Key_Return ||
                       event->key() == Qt::Key_Enter)) {
        copy();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

bool CopyLabel::event(QEvent* event) {
    // The copy shortcut of a menu must not take the key from the focused value.
    if (event->type() == QEvent::ShortcutOverride && copyable() &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) update();
    return QAbstractButton::event(event);
}

void CopyLabel::contextMenuEvent(QContextMenuEvent* event) {
    if (!copyable()) return;
    QMenu menu(this);
    menu.addAction(tr("Copy %1").arg(caption_), this, &CopyLabel::copy);
    menu.exec(event->globalPos());
}

} // namespace corvane
