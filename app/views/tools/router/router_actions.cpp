#include "app/views/tools/router/router_actions.h"

#include "app/views/widgets/display_text.h"

#include <QAbstractButton>
#include <QActionGroup>
#include <QMenu>
#include <QWidget>

namespace corvane {

RouterActions::RouterActions(QWidget* page) : QObject(page) {
    const auto make = [&](const char* name, const QString& text, const QKeySequence& keys = {}) {
        auto* action = new QAction(text, this);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        // A key held down is one press: the second one of “Force Release” is meant.
        action->setAutoRepeat(false);
        return action;
    };
    take = make("take", tr("&Take"));
    take->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    directTake = make("directTake", tr("&Direct Take"), Qt::CTRL | Qt::SHIFT | Qt::Key_D);
    directTake->setCheckable(true);
    lock = make("lock", tr("&Lock Output"), Qt::CTRL | Qt::Key_L);
    release = make("release", tr("&Release Output"), Qt::CTRL | Qt::Key_U);
    force = make("force", tr("&Force Release…"), Qt::CTRL | Qt::SHIFT | Qt::Key_U);
    renameOutput = make("renameOutput", tr("Rena&me Output"), Qt::Key_F2);
    renameSource = make("renameSource", tr("Rename &Source"), Qt::Key_F2);
    findOutput = make("findOutput", tr("Find &Output"), Qt::CTRL | Qt::Key_F);
    findSource = make("findSource", tr("Find So&urce"), Qt::CTRL | Qt::SHIFT | Qt::Key_F);
    showAll = make("showAll", tr("Show &All Outputs"));
    showLocked = make("showLocked", tr("Show Lo&cked Outputs"));
    showUses = make("showUses", tr("Show Outputs &with This Source"));
    auto* shown = new QActionGroup(this);
    for (QAction* action : {showAll, showLocked, showUses}) {
        action->setCheckable(true);
        shown->addAction(action);
    }
    showAll->setChecked(true);
    for (QAction* action : {take, renameOutput, renameSource}) action->setShortcutContext(Qt::WidgetShortcut);
    page->addActions({directTake, lock, release, force, findOutput, findSource});
}

void RouterActions::bindToOutputs(QWidget* list) const {
    list->addActions({take, renameOutput});
}

void RouterActions::bindToSources(QWidget* list) const {
    list->addActions({take, renameSource});
}

void RouterActions::fillMenu(QMenu& menu) const {
    // A menu bar may take the keys of its commands from text fields: there these have none.
    const auto addKeyless = [&menu](QAction* action) {
        auto* copy = menu.addAction(action->text(), action, &QAction::trigger);
        const auto same = [copy, action] {
            copy->setEnabled(action->isEnabled());
            copy->setToolTip(action->toolTip());
            copy->setStatusTip(action->statusTip());
        };
        connect(action, &QAction::changed, copy, same);
        same();
    };
    addKeyless(take);
    menu.addActions({directTake});
    menu.addSeparator();
    menu.addActions({lock, release, force});
    menu.addSeparator();
    addKeyless(renameOutput);
    addKeyless(renameSource);
    menu.addSeparator();
    menu.addActions({findOutput, findSource});
    menu.addSeparator();
    menu.addActions({showAll, showLocked, showUses});
}

void RouterActions::offer(QAction* action, const QString& whyNot, const QString& what) {
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    action->setEnabled(whyNot.isEmpty());
    action->setToolTip(plainTip(!whyNot.isEmpty() ? whyNot
                                : keys.isEmpty()  ? what
                                                  : QStringLiteral("%1 (%2)").arg(what, keys)));
    action->setStatusTip(whyNot);
}

void RouterActions::follow(QAbstractButton* button, QAction* action) {
    const auto same = [button, action] {
        button->setEnabled(action->isEnabled());
        button->setToolTip(action->toolTip());
        button->setAccessibleDescription(action->statusTip());
        if (button->isCheckable()) button->setChecked(action->isChecked());
    };
    connect(action, &QAction::changed, button, same);
    connect(button, &QAbstractButton::clicked, action, &QAction::trigger);
    same();
}

} // namespace corvane
