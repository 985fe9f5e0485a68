#include "app/views/tools/router/take_bar.h"

#include "app/views/tools/router/router_actions.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/notice.h"
#include "app/views/widgets/symbols.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

TakeBar::TakeBar(const RouterActions& actions, QWidget* parent)
    : QWidget(parent), sign_(new QLabel(this)), plan_(new ElidedLabel(ElidedLabel::Weight::primary, this)),
      refusal_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)), force_(new QPushButton(this)) {
    plan_->setObjectName(QStringLiteral("plan"));
    refusal_->setObjectName(QStringLiteral("refusal"));
    sign_->hide();
    drawSign();

    auto* lock = new QPushButton(tr("&Lock"), this);
    auto* release = new QPushButton(tr("&Release"), this);
    auto* directTake = new QCheckBox(tr("Direct take"), this);
    auto* take = new QPushButton(tr("Take"), this);
    QFont strong = take->font();
    strong.setWeight(QFont::DemiBold);
    take->setFont(strong);
    take->setMinimumWidth(take->sizeHint().width() + theme::xl);
    // Both texts fit, so that its neighbours stay where they are.
    int widest = 0;
    for (const bool armed : {true, false}) {
        setArmed(armed);
        widest = std::max(widest, force_->sizeHint().width());
    }
    force_->setFixedWidth(widest);
    RouterActions::follow(lock, actions.lock);
    RouterActions::follow(release, actions.release);
    RouterActions::follow(force_, actions.force);
    RouterActions::follow(directTake, actions.directTake);
    RouterActions::follow(take, actions.take);

    auto* words = new QHBoxLayout;
    words->setSpacing(theme::xs + 2);
    words->addWidget(sign_);
    words->addWidget(plan_, 1);
    words->addSpacing(theme::s);
    words->addWidget(refusal_, 0, Qt::AlignVCenter);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme::s);
    for (QPushButton* button : {lock, release, force_, take}) {
        button->setAutoDefault(false);
        if (button != take) buttons->addWidget(button);
    }
    buttons->addStretch();
    buttons->addWidget(directTake);
    buttons->addSpacing(theme::xs);
    buttons->addWidget(take);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::xs + 2);
    layout->addLayout(words);
    layout->addLayout(buttons);
}

void TakeBar::setPlan(const QString& text, bool warns) {
    sign_->setVisible(warns);
    plan_->setText(text);
}

void TakeBar::setTrouble(const QString& text, bool quietly) {
    const bool said = !text.isEmpty();
    const QFontMetrics metrics = refusal_->fontMetrics();
    refusal_->setFixedWidth(said ? metrics.horizontalAdvance(text) + metrics.height() + theme::s : 0);
    const auto kind = quietly ? Notice::Kind::hint : Notice::Kind::error;
    refusal_->setNotices(said ? std::vector{Notice{kind, text}} : std::vector<Notice>());
}

void TakeBar::drawSign() {
    const int side = fontMetrics().height() - 2;
    sign_->setPixmap(symbols::icon(symbols::Symbol::warning, theme::Tone::attention)
                         .pixmap(QSize(side, side), devicePixelRatioF()));
}

void TakeBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) drawSign();
}

void TakeBar::setArmed(bool armed) {
    force_->setText(armed ? tr("Press Again") : tr("&Force Release"));
}

} // namespace corvane
