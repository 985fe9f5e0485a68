#include "app/views/widgets/address_row.h"

#include "app/views/widgets/copy_label.h"

#include <QEvent>

namespace corvane {

namespace {

constexpr int gap = 8;
/// Labels beyond this are never made; the rest is counted.
constexpr qsizetype mostLabels = 12;

} // namespace

AddressRow::AddressRow(const QString& caption, QWidget* parent)
    : QWidget(parent), caption_(caption), labels_{new CopyLabel(caption, this)},
      rest_(new CopyLabel(caption, this)) {
    rest_->hide();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void AddressRow::setValues(const QStringList& values) {
    if (values == values_) return;
    values_ = values;
    const auto wanted = static_cast<std::size_t>(std::clamp<qsizetype>(values.size(), 1, mostLabels));
    while (labels_.size() > wanted) {
        delete labels_.back();
        labels_.pop_back();
    }
    while (labels_.size() < wanted) {
        auto* label = new CopyLabel(caption_, this);
        QWidget::setTabOrder(labels_.back(), label);
        labels_.push_back(label);
    }
    QWidget::setTabOrder(labels_.back(), rest_);
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i]->setValue(values.value(static_cast<qsizetype>(i)));
    }
    updateGeometry();
    place();
}

void AddressRow::place() {
    const QString last = tr("+%1").arg(values_.size());
    const int restWidth = fontMetrics().horizontalAdvance(last) + 3 * gap;
    int left = 0;
    qsizetype shown = 0;
    for (CopyLabel* label : labels_) {
        const QSize size = label->sizeHint();
        const bool isLast = shown + 1 >= values_.size();
        const bool fits = left + size.width() + (isLast ? 0 : restWidth) <= width() || shown == 0;
        if (!fits) break;
        // The last one gets the rest of the row, where it can show that it was copied.
        label->setGeometry(left, 0, isLast ? std::max(width() - left, 1) : std::min(size.width(), width()),
                           height());
        label->show();
        left += size.width() + gap;
        ++shown;
    }
    for (auto i = static_cast<std::size_t>(shown); i < labels_.size(); ++i) labels_[i]->hide();

    const QStringList hidden = values_.mid(shown);
    rest_->setVisible(shown > 0 && !hidden.isEmpty());
    if (rest_->isHidden()) return;
    rest_->setValue(hidden.join(QStringLiteral(", ")));
    rest_->setDisplay(tr("+%1").arg(hidden.size()), hidden.join(QLatin1Char('\n')));
    rest_->setGeometry(left, 0, std::max(rest_->sizeHint().width(), width() - left), height());
}

QSize AddressRow::sizeHint() const {
    int width = 0;
    for (const CopyLabel* label : labels_) width += label->sizeHint().width() + gap;
    return {width, labels_.front()->sizeHint().height()};
}

QSize AddressRow::minimumSizeHint() const {
    return {60, labels_.front()->sizeHint().height()};
}

void AddressRow::resizeEvent(QResizeEvent*) {
    place();
}

void AddressRow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace corvane
