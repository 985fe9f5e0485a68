#include "app/views/window/detail_area.h"

#include "app/model/app_model.h"
#include "app/views/network/global_page.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/planned_vlan_page.h"
#include "app/views/network/service_order_page.h"
#include "app/views/network/service_page.h"
#include "app/views/tools/ping/ping_panel.h"
#include "app/views/tools/router/router_page.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/window/overlay_pill.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace corvane {

using namespace Qt::StringLiterals;

/// How long a change may take before it is said, and how often is looked whether a dialog asks.
constexpr int busyMilliseconds = 120;
/// What a page keeps of the height, below what height it scrolls rather than being squeezed, and what the
/// ping monitor below it takes at first.
constexpr int smallestPage = 240, squeezedPage = 400, firstPing = 220;

DetailArea::DetailArea(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), model_(model), commands_(commands), split_(new QSplitter(Qt::Vertical, this)),
      pages_(new QScrollArea(split_)), stack_(new QStackedWidget), banner_(new OverlayPill(this)),
      busy_(new OverlayPill(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    split_->setObjectName(u"detailSplit"_s);
    split_->setChildrenCollapsible(false);
    // A page that has less room than it needs scrolls; it is never squeezed.
    pages_->setObjectName(u"pages"_s);
    pages_->setFrameShape(QFrame::NoFrame);
    pages_->setWidgetResizable(true);
    pages_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pages_->setFocusPolicy(Qt::NoFocus);
    pages_->setMinimumHeight(smallestPage);
    stack_->setMinimumHeight(squeezedPage);
    pages_->setWidget(stack_);
    layout->addWidget(split_);
    banner_->setObjectName(u"banner"_s);
    busy_->setObjectName(u"busy"_s);
    connect(&model_, &AppModel::selectionChanged, this, &DetailArea::showPage);
    connect(&model_, &AppModel::pingChanged, this, &DetailArea::showPing);
    connect(&model_, &AppModel::refreshed, this, [this] {
        if (stack_->currentWidget() == nothing_) showPage();
    });
    connect(&model_, &AppModel::bannerChanged, this, &DetailArea::showBanner);
    connect(&model_, &AppModel::busyChanged, this, &DetailArea::showBanner);
    busyWatch_.setInterval(busyMilliseconds);
    connect(&busyWatch_, &QTimer::timeout, this, &DetailArea::showBusy);
    showPage();
    showPing();
    showBanner();
}

void DetailArea::showPage() {
    const auto& item = model_.selection();
    const auto id = item ? Uuid::parse(item->key().toStdString()) : std::nullopt;
    const auto made = [this](auto*& page, auto make) {
        if (!page) {
            page = make();
            stack_->addWidget(page);
        }
        return page;
    };
    if (item && item->kind() == SidebarItem::Kind::service) {
        made(servicePage_, [this] {
            return new ServicePage(model_, commands_, this);
        })->setService(item->key().toStdString());
        stack_->setCurrentWidget(servicePage_);
    } else if (id && item->kind() == SidebarItem::Kind::global && model_.global(*id)) {
        made(globalPage_, [this] { return new GlobalPage(model_, commands_, this); })->setGlobal(*id);
        stack_->setCurrentWidget(globalPage_);
    } else if (id && item->kind() == SidebarItem::Kind::plannedVLAN) {
        made(planPage_, [this] { return new PlannedVLANPage(model_, commands_, this); })->setPlan(*id);
        stack_->setCurrentWidget(planPage_);
    } else if (item && item->kind() == SidebarItem::Kind::serviceOrder) {
        stack_->setCurrentWidget(
            made(orderPage_, [this] { return new ServiceOrderPage(model_, commands_, this); }));
    } else if (item == SidebarItem::tool(Tool::videohub)) {
        stack_->setCurrentWidget(made(routerPage_, [this] { return new RouterPage(model_, this); }));
    } else if (item == SidebarItem::tool(Tool::ping)) {
        // The monitor itself takes the whole place.
    } else {
        showNothing();
    }
    showPing();
}

void DetailArea::showPing() {
    const bool alone = model_.selection() == SidebarItem::tool(Tool::ping);
    const bool shown = alone || model_.showPing();
    if (shown && !pingPanel_) {
        pingPanel_ = new PingPanel(model_, split_);
        split_->addWidget(pingPanel_);
        split_->setStretchFactor(0, 1);
        split_->setStretchFactor(1, 0);
        split_->setSizes({qMax(smallestPage, height() - firstPing), firstPing});
    }
    pages_->setVisible(!alone);
    if (!pingPanel_) return;
    pingPanel_->setDocked(!alone);
    pingPanel_->setVisible(shown);
}

void DetailArea::showNothing() {
    if (!nothing_) {
        nothing_ = new EmptyState(this);
        auto* again = nothing_->addAction(u"Read Again"_s);
        connect(again, &QPushButton::clicked, &model_, &AppModel::refresh);
        stack_->addWidget(nothing_);
    }
    auto* again = nothing_->findChild<QPushButton*>();
    const bool read = model_.lastRefresh().isValid();
    again->setVisible(read && model_.services().empty());
    if (!read) {
        nothing_->setTexts(u"Reading the network services…"_s,
                           u"They appear here in a moment, with their settings and presets."_s);
    } else if (model_.services().empty()) {
        nothing_->setTexts(u"No network services found"_s,
                           u"The system's network tools list none. Wendrel looks again every few seconds."_s);
    } else {
        nothing_->setTexts(
            u"Nothing selected"_s,
            u"Choose a network service in the sidebar to see its settings and switch its presets."_s);
    }
    stack_->setCurrentWidget(nothing_);
}

void DetailArea::showBanner() {
    if (const auto& banner = model_.banner()) {
        banner_->show(banner->text, banner->isError ? theme::Tone::bad : theme::Tone::good);
    } else {
        banner_->fadeOut();
    }
    // What was done is said in the place where "Applying…" stood.
    showBusy();
}

void DetailArea::showBusy() {
    if (!model_.busy()) {
        busyWatch_.stop();
        busy_->fadeOut();
        return;
    }
    // While a dialog asks, nothing is being applied yet.
    if (!busyWatch_.isActive())
        busyWatch_.start();
    else if (QApplication::activeModalWidget())
        busy_->fadeOut();
    else
        busy_->showRunning(u"Applying…"_s);
}

void DetailArea::focusPage() {
    QWidget* page = stack_->isVisible() ? stack_->currentWidget() : pingPanel_;
    if (!page) return;
    if (page->focusWidget() && page->focusWidget() != page) {
        page->focusWidget()->setFocus(Qt::TabFocusReason);
        return;
    }
    for (auto* child : page->findChildren<QWidget*>()) {
        const bool takes = child->focusPolicy() & Qt::TabFocus;
        if (takes && child->isVisible() && child->isEnabled()) {
            child->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace corvane
