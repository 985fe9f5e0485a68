#include "app/views/tools/router/router_page.h"

#include "app/clients/videohub_client.h"
#include "app/model/app_model.h"
#include "app/views/tools/router/router_desk.h"
#include "app/views/tools/router/router_presentation.h"
#include "app/views/tools/tool_presentation.h"
#include "app/views/widgets/connection_bar.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/widgets/theme.h"

#include <QStackedWidget>
#include <QVBoxLayout>

namespace corvane {

namespace {

using Kind = ConnectionStatus::Kind;

QString age(qint64 seconds) {
    if (seconds < 120) return RouterPage::tr("%1 s").arg(seconds);
    if (seconds < 7200) return RouterPage::tr("%1 min").arg(seconds / 60);
    return RouterPage::tr("%1 h").arg(seconds / 3600);
}

} // namespace

RouterPage::RouterPage(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model),
      bar_(new ConnectionBar(toolTitle(Tool::videohub), tr("Blackmagic Videohub · TCP 9990"), this)),
      body_(new QStackedWidget(this)), message_(new EmptyState), desk_(new RouterDesk(model.videohub())) {
    setAccessibleName(toolTitle(Tool::videohub));
    body_->addWidget(message_);
    body_->addWidget(desk_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::m);
    layout->setSpacing(theme::xs + 2);
    layout->addWidget(bar_);
    layout->addWidget(body_, 1);

    connect(bar_, &ConnectionBar::connectAsked, this, [this](const QString& host) {
        awaited_ = true;
        model_.setVideohubHost(host);
        model_.videohub().connect(host);
    });
    connect(bar_, &ConnectionBar::disconnectAsked, this, [this] { model_.videohub().disconnect(); });
    // A dump comes as many blocks.
    folded_.setSingleShot(true);
    folded_.setInterval(0);
    connect(&folded_, &QTimer::timeout, this, &RouterPage::refresh);
    const auto later = [this] { folded_.start(); };
    connect(&model_.videohub(), &VideohubClient::statusChanged, this, later);
    connect(&model_.videohub(), &VideohubClient::stateChanged, this, later);
    connect(&model_, &AppModel::toolHostsChanged, this, later);
    connect(desk_, &RouterDesk::refreshNeeded, this, later);
    ages_.setInterval(1000);
    connect(&ages_, &QTimer::timeout, this, &RouterPage::refresh);
    refresh();
}

const RouterActions& RouterPage::actions() const {
    return desk_->actions();
}

bool RouterPage::deskIsKnown() const {
    const auto& client = model_.videohub();
    const bool lost = !client.status().isConnected();
    const bool silent = !client.state().present && client.state().outputs().empty();
    return shownHost_ == client.host() && client.status().kind() != Kind::idle && (lost || silent);
}

QString RouterPage::lostSince() const {
    const QString ago = age((silence_ + lost_.elapsed()) / 1000);
    return model_.videohub().status().isConnected()
               ? tr("Waiting for the router’s state. This is what it said %1 ago.").arg(ago)
               : tr("Not connected. This is what the router said %1 ago.").arg(ago);
}

void RouterPage::refresh() {
    const auto& client = model_.videohub();
    const auto& status = client.status();
    bar_->setHost(status.kind() == Kind::idle ? model_.videohubHost().value_or(QString()) : client.host());
    bar_->setStatus(status, client.host());
    bar_->setDetail(status.isConnected() ? routerDetail(client.state()) : QString());

    const auto message = routerMessage(status, client.state());
    const bool live = !message, stale = !live && !shownHost_.isEmpty() && deskIsKnown();
    if (live) {
        shownHost_ = client.host();
        desk_->showLive();
        body_->setCurrentWidget(desk_);
        const bool waits = std::exchange(awaited_, false) && bar_->host() == client.host();
        if (waits && bar_->isAncestorOf(focusWidget())) desk_->focusOutputs();
    } else if (stale) {
        if (!ages_.isActive()) {
            lost_.start();
            silence_ = client.silence();
        }
        desk_->showStale(lostSince());
    } else {
        shownHost_.clear();
        desk_->clear();
        message_->setTexts(message->title, message->purpose);
        body_->setCurrentWidget(message_);
    }
    if (stale && !ages_.isActive())
        ages_.start();
    else if (!stale)
        ages_.stop();
}

} // namespace corvane
