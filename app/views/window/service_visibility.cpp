#include "app/views/window/service_visibility.h"

#include "app/model/app_model.h"
#include "app/views/widgets/display_text.h"
#include "app/views/window/sidebar_rows.h"

#include <QActionGroup>
#include <QMenu>

#include <algorithm>

namespace corvane::visibility {

using namespace Qt::StringLiterals;

QString menuName(const std::string& name) {
    constexpr int longest = 60;
    QString shown = oneLine(name);
    if (shown.size() > longest) shown = shown.left(longest - 1) + u'…';
    return withoutMnemonics(shown);
}

void setHidden(AppModel& model, const std::string& service, bool hidden) {
    // What is hidden stays out of the way: its group begins closed.
    if (hidden && model.hiddenServices().isEmpty()) {
        model.setExpanded(SidebarGroup::name(SidebarGroup::Id::hidden), false);
    }
    model.setHidden(service, hidden);
    if (!hidden) return;
    if (model.selection() == SidebarItem::service(service)) model.select(model.defaultService());
    model.flash(inQuotes(service) + u" is hidden. Network › Hidden Services brings it back."_s);
}

void fillHiddenMenu(QMenu& menu, AppModel& model) {
    auto names = model.hiddenServices().values();
    std::sort(names.begin(), names.end(),
              [](const QString& a, const QString& b) { return a.localeAwareCompare(b) < 0; });
    menu.setEnabled(!names.isEmpty());
    for (const auto& name : names) {
        menu.addAction(u"Show “%1”"_s.arg(menuName(name.toStdString())), &model,
                       [&model, name] { model.setHidden(name.toStdString(), false); });
    }
    if (names.size() < 2) return;
    menu.addSeparator();
    menu.addAction(u"Show All"_s, &model, [&model, names] {
        for (const auto& name : names) model.setHidden(name.toStdString(), false);
    });
}

void addSortActions(QMenu& menu, AppModel& model) {
    auto* group = new QActionGroup(&menu);
    const auto add = [&](const QString& text, bool byState) {
        auto* action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(model.sortsByState() == byState);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, &model,
                         [&model, byState] { model.setSortsByState(byState); });
    };
    add(u"Sort by State"_s, true);
    add(u"Sort by Service Order"_s, false);
}

} // namespace corvane::visibility
