// Hiding services, bringing them back, and the order of the rest: said once for the menu bar and the context
// menus.
#pragma once

#include <QString>

#include <string>

class QMenu;

namespace corvane {

class AppModel;

namespace visibility {

/// The name as a menu shows it: on one line, of a bearable length, without mnemonics.
QString menuName(const std::string& name);
/// Hides or shows; where the shown page would vanish from the list, another service is selected.
void setHidden(AppModel& model, const std::string& service, bool hidden);
/// One entry a hidden service to show it again, and one for all of them.
void fillHiddenMenu(QMenu& menu, AppModel& model);
/// "Sort by State" and "Sort by Service Order", of which one is checked.
void addSortActions(QMenu& menu, AppModel& model);

} // namespace visibility
} // namespace corvane
