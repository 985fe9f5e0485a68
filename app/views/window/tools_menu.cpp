#include "app/views/window/tools_menu.h"

#include "app/model/app_model.h"
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
    connect(&model_, &AppModel::pingChanged, this, &ToolsMenu::refresh);
    connect(&model_, &AppModel::selectionChanged, this, &ToolsMenu::refresh);
    refresh();
}

void ToolsMenu::refresh() {
    showPing_->setChecked(model_.showPing());
    // On its own page it is shown anyway.
    showPing_->setEnabled(model_.selection() != SidebarItem::tool(Tool::ping));
    pausePing_->setChecked(model_.pingPaused());
    pausePing_->setEnabled(model_.showPing());
}

} // namespace corvane
