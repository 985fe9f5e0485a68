#include "app/views/widgets/empty_state.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvane {

namespace {

/// A line that the eye finds its way back from.
constexpr int purposeWidth = 400;

} // namespace

EmptyState::EmptyState(QWidget* parent)
    : QWidget(parent), title_(new QLabel(this)), purpose_(new QLabel(this)), actions_(new QHBoxLayout) {
    QFont strong = font();
    strong.setWeight(QFont::DemiBold);
    title_->setFont(strong);
    for (QLabel* label : {title_, purpose_}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
    }
    purpose_->setFixedWidth(purposeWidth);

    actions_->setSpacing(theme::s);
    actions_->addStretch();
    actions_->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::s);
    layout->addStretch();
    layout->addWidget(title_);
    layout->addWidget(purpose_, 0, Qt::AlignHCenter);
    layout->addSpacing(theme::xs);
    layout->addLayout(actions_);
    layout->addStretch();
}

void EmptyState::setTexts(const QString& title, const QString& purpose) {
    title_->setText(oneLine(title));
    purpose_->setText(purpose);
    purpose_->setFixedHeight(purpose_->heightForWidth(purposeWidth));
    setAccessibleName(title_->text());
    setAccessibleDescription(purpose);
}

QPushButton* EmptyState::addAction(const QString& text) {
    auto* button = new QPushButton(text, this);
    actions_->insertWidget(actions_->count() - 1, button);
    return button;
}

} // namespace corvane
