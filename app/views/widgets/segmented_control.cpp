#include "app/views/widgets/segmented_control.h"

#include "app/views/widgets/focus_ring.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>

namespace corvane {

SegmentedControl::SegmentedControl(const QString& caption, const QStringList& choices, QWidget* parent)
    : QWidget(parent), caption_(caption), choices_(choices) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleDescription(tr("Left and right arrow keys choose"));
    setCurrent(0);
}

void SegmentedControl::setCurrent(int index) {
    current_ = std::clamp(index, 0, static_cast<int>(choices_.size()) - 1);
    setAccessibleName(caption_ + QStringLiteral(": ") + choices_.value(current_));
    update();
}

void SegmentedControl::choose(int index) {
    if (index == current_ || index < 0 || index >= choices_.size()) return;
    setCurrent(index);
    QAccessibleEvent said(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&said);
    emit chosen(index);
}

QSize SegmentedControl::sizeHint() const {
    int widest = 0;
    for (const QString& choice : choices_) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(choice));
    }
    return {static_cast<int>(choices_.size()) * (widest + 2 * theme::l) + 4,
            fontMetrics().height() + 2 * theme::xs + 4};
}

QRect SegmentedControl::segment(int index) const {
    const int count = static_cast<int>(choices_.size());
    const int inner = width() - 4;
    const int left = 2 + inner * index / count, right = 2 + inner * (index + 1) / count;
    return {left, 2, right - left, height() - 4};
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(theme::hairline(palette()));
    painter.setBrush(palette().color(QPalette::AlternateBase));
    painter.drawRoundedRect(track, 6, 6);
    for (int i = 0; i < choices_.size(); ++i) {
        const bool on = i == current_;
        if (on) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(palette().color(QPalette::Highlight));
            painter.drawRoundedRect(segment(i), 4.5, 4.5);
        }
        painter.setPen(on ? palette().color(QPalette::HighlightedText)
                          : palette().color(QPalette::ButtonText));
        painter.drawText(segment(i), Qt::AlignCenter, choices_[i]);
    }
    if (hasFocus()) paintFocusRing(painter, rect(), 6, palette());
}

void SegmentedControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    for (int i = 0; i < choices_.size(); ++i) {
        if (segment(i).contains(event->position().toPoint())) choose(i);
    }
}

void SegmentedControl::keyPressEvent(QKeyEvent* event) {
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        choose(current_ + ((event->key() == Qt::Key_Right) != mirrored ? 1 : -1));
    } else if (event->key() == Qt::Key_Space) {
        choose((current_ + 1) % static_cast<int>(choices_.size()));
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace corvane
