#include "app/views/widgets/elided_label.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"

#include <QEvent>
#include <QPainter>

namespace corvane {

ElidedLabel::ElidedLabel(Weight weight, QWidget* parent) : QWidget(parent), weight_(weight) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text) {
    const QString line = oneLine(text);
    if (line == text_) return;
    text_ = line;
    setAccessibleName(text_);
    updateGeometry();
    describe();
    update();
}

void ElidedLabel::describe() {
    const bool cut = fontMetrics().horizontalAdvance(text_) > contentsRect().width();
    setToolTip(cut ? plainTip(text_) : QString());
}

QSize ElidedLabel::sizeHint() const {
    const QMargins around = contentsMargins();
    return QSize(fontMetrics().horizontalAdvance(text_) + 1, fontMetrics().height()).grownBy(around);
}

QSize ElidedLabel::minimumSizeHint() const {
    const QSize full = sizeHint();
    return {std::min(full.width(), fontMetrics().averageCharWidth() * 6), full.height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(weight_ == Weight::primary ? palette().color(QPalette::WindowText)
                                              : theme::secondaryText(palette()));
    painter.drawText(contentsRect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text_, Qt::ElideRight, contentsRect().width()));
}

void ElidedLabel::resizeEvent(QResizeEvent*) {
    describe();
}

void ElidedLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace corvane
