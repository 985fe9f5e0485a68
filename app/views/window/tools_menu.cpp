#include "app/views/window/tools_menu.h"

#include "app/model/app_model.h"
#include "app/views/tools/ping/ping_commands.h"
#include "app/views/tools/ping/ping_panel.h"
#include "app/views/tools/router/router_actions.h"
#include "app/views/tools/router/router_page.h"
#include "app/views/tools/tool_presentation.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/main_window.h"

#include <QMenu>

namespace corvane {

using namespace Qt::StringLiterals;

ToolsMenu::ToolsMenu(QMenu& menu, MainWindow& window, AppModel& model)
    : QObject(&window), window_(window), model_(model) {
    int key = Qt::Key_3;
    for (const Tool tool : allTools) {
        auto* action =
            menu.addAction(symbols::icon(toolSign(tool)), u"&%1"_s.arg(toolTitle(tool)), this, [this, tool] {
                model_.select(SidebarItem::tool(tool));
                window_.detail().focusPage();
            });
        action->setObjectName(u"tool-"_s + toolKey(tool));
        action->setShortcut(QKeyCombination(Qt::CTRL, static_cast<Qt::Key>(key++)));
        action->setIconVisibleInMenu(false);
    }
    menu.addSeparator();
    showPing_ = menu.addAction(u"Show Ping &Monitor Below"_s, this,
                               [this] { model_.setShowPing(showPing_->isChecked()); });
    showPing_->setObjectName(u"showPing"_s);
    showPing_->setCheckable(true);
    showPing_->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_M);
    pausePing_ =
        menu.addAction(u"Pa&use Pings"_s, this, [this] { model_.setPingPaused(pausePing_->isChecked()); });
    pausePing_->setObjectName(u"pausePing"_s);
    pausePing_->setCheckable(true);
    pausePing_->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_P);
    makePing(menu);
    makeRouter(menu);
    connect(&model_, &AppModel::pingChanged, this, &ToolsMenu::refresh);
    connect(&model_, &AppModel::selectionChanged, this, &ToolsMenu::refresh);
    refresh();
}

void ToolsMenu::makePing(QMenu& menu) {
    auto* commands = new PingCommands(model_, &window_);
    menu.addSeparator();
    const auto add = [&](const char* name, const QString& text, void (PingCommands::*act)()) {
        auto* action = menu.addAction(text, commands, act);
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };
    add("newPingGroup", u"&New Ping Group…"_s, &PingCommands::newGroup);
    add("addPingHosts", u"&Add Hosts to Ping…"_s, &PingCommands::addHosts)
        ->setShortcut(PingCommands::addHostsKeys());
    add("sweepSubnet", u"&Sweep a Subnet…"_s, &PingCommands::sweep);
    connect(commands, &PingCommands::hostMade, this, [this](const Uuid& host) {
        if (auto* panel = window_.findChild<PingPanel*>()) panel->chooseHost(host);
    });
    auto* host = menu.addMenu(u"Ping &Host"_s);
    host->setObjectName(u"pingHost"_s);
    const auto fill = [this, host] {
        host->clear();
        auto* panel = window_.findChild<PingPanel*>();
        if (panel && panel->isVisible()) panel->fillHostMenu(*host);
        if (host->isEmpty()) host->addAction(u"The ping monitor isn’t shown"_s)->setEnabled(false);
    };
    fill(); // a Mac doesn't open an empty menu
    connect(host, &QMenu::aboutToShow, this, fill);
}

void ToolsMenu::makeRouter(QMenu& menu) {
    menu.addSeparator();
    auto* commands = menu.addMenu(u"&Router Outputs and Sources"_s);
    commands->setObjectName(u"routerCommands"_s);
    commands->setToolTipsVisible(true);
    const auto fill = [this, commands] {
        commands->clear();
        const auto* page = window_.findChild<RouterPage*>();
        if (page && page->isVisible())
            page->actions().fillMenu(*commands);
        else
            commands->addAction(u"The video router isn’t shown"_s)->setEnabled(false);
    };
    fill(); // a Mac doesn't open an empty menu
    connect(commands, &QMenu::aboutToShow, this, fill);
}

void ToolsMenu::refresh() {
    showPing_->setChecked(model_.showPing());
    // On its own page it is shown anyway.
    showPing_->setEnabled(model_.selection() != SidebarItem::tool(Tool::ping));
    pausePing_->setChecked(model_.pingPaused());
    pausePing_->setEnabled(model_.showPing());
}

} // namespace corvane
