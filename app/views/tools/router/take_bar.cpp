#include "app/views/tools/router/take_bar.h"

#include "app/views/tools/router/router_actions.h"
#include "app/views/tools/router/router_presentation.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/notice.h"
#include "app/views/widgets/theme.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

TakeBar::TakeBar(const RouterActions& actions, QWidget* parent)
    : QWidget(parent), plan_(new ElidedLabel(ElidedLabel::Weight::primary, this)),
      refusal_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)), force_(new QPushButton(this)) {
    plan_->setObjectName(QStringLiteral("plan"));
    refusal_->setObjectName(QStringLiteral("refusal"));
    Videohub::State refused;
    refused.lastReply = "NAK";
    const QFontMetrics metrics = refusal_->fontMetrics();
    refusal_->setFixedWidth(metrics.horizontalAdvance(refusalText(refused)) + metrics.height() + theme::s);

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
    words->setSpacing(theme::m);
    words->addWidget(plan_, 1);
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

void TakeBar::setPlan(const QString& text) {
    plan_->setText(text);
}

void TakeBar::setRefusal(const QString& text) {
    refusal_->setNotices(text.isEmpty() ? std::vector<Notice>()
                                        : std::vector{Notice{Notice::Kind::error, text}});
}

void TakeBar::setArmed(bool armed) {
    force_->setText(armed ? tr("Press Again") : tr("&Force Release"));
}

} // namespace corvane
