#include "app/views/widgets/draft_bar.h"

#include "app/views/widgets/display_text.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace corvane {

using namespace Qt::StringLiterals;

DraftBar::DraftBar(const QString& what, QWidget* parent)
    : QWidget(parent), what_(what), sign_(new QLabel(this)), words_(new QLabel(this)),
      revert_(new QPushButton(tr("Revert"), this)), apply_(new QPushButton(tr("Apply"), this)) {
    words_->setTextFormat(Qt::PlainText);
    words_->setObjectName(u"draftState"_s);
    revert_->setObjectName(u"revert"_s);
    apply_->setObjectName(u"apply"_s);
    revert_->setAccessibleName(tr("Revert %1").arg(what));
    apply_->setAccessibleName(tr("Apply %1").arg(what));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::s);
    layout->addWidget(sign_);
    layout->addWidget(words_, 1);
    layout->addWidget(revert_);
    layout->addWidget(apply_);
    connect(revert_, &QPushButton::clicked, this, &DraftBar::revertAsked);
    connect(apply_, &QPushButton::clicked, this, &DraftBar::applyAsked);
    drawSign();
    setState(State::reading);
}

void DraftBar::setState(State state, const QString& whyNot) {
    QString words, toApply, toRevert;
    switch (state) {
    case State::reading:
        words = tr("Reading what the system has…");
        toApply = toRevert = words;
        break;
    case State::inForce:
        words = tr("As the system has it");
        toApply = tr("There is nothing to apply: this is what the system has.");
        toRevert = tr("There is nothing to take back: this is what the system has.");
        break;
    case State::applied:
        words = tr("Applied, reading it back…");
        toApply = toRevert = words;
        break;
    case State::differs:
        words = tr("Not applied yet");
        toApply = whyNot;
        break;
    }
    const bool changed = state != state_ || toApply != whyNotApply_ || words_->text().isEmpty();
    if (!changed) return;
    state_ = state;
    whyNotApply_ = toApply;
    whyNotRevert_ = toRevert;
    words_->setText(words);
    words_->setAccessibleName(words);
    revert_->setEnabled(toRevert.isEmpty());
    apply_->setEnabled(toApply.isEmpty());
    revert_->setToolTip(plainTip(toRevert.isEmpty() ? tr("Takes back what the system has now") : toRevert));
    apply_->setToolTip(plainTip(toApply.isEmpty() ? tr("Puts this on the system now") : toApply));
    revert_->setAccessibleDescription(toRevert);
    apply_->setAccessibleDescription(toApply);
    drawSign();
    emit stateChanged();
}

QString DraftBar::text() const {
    return words_->text();
}

void DraftBar::drawSign() {
    const bool differs = state_ == State::differs;
    const bool waits = state_ == State::reading || state_ == State::applied;
    const int side = words_->fontMetrics().height() - 2;
    sign_->setFixedWidth(side);
    sign_->setPixmap(waits ? QPixmap()
                           : symbols::icon(differs ? symbols::Symbol::pencil : symbols::Symbol::check,
                                           differs ? theme::Tone::attention : theme::Tone::good)
                                 .pixmap(QSize(side, side), devicePixelRatioF()));
    QPalette tinted = palette();
    tinted.setColor(QPalette::WindowText,
                    differs ? palette().color(QPalette::WindowText) : theme::secondaryText(palette()));
    if (tinted != words_->palette()) words_->setPalette(tinted);
}

void DraftBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) drawSign();
}

} // namespace corvane
