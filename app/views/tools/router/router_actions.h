// The commands of the router's page, for its buttons, its context menus and the menu bar.
#pragma once

#include <QAction>
#include <QObject>

class QAbstractButton;
class QMenu;
class QWidget;

namespace corvane {

class RouterActions : public QObject {
    Q_OBJECT

  public:
    /// Their shortcuts work while the keyboard is within `page`.
    explicit RouterActions(QWidget* page);

    QAction *take, *directTake;
    QAction *lock, *release, *force;
    QAction *renameOutput, *renameSource;
    QAction *findOutput, *findSource;
    QAction *showAll, *showLocked, *showUses;

    /// Return and F2 act in that list alone: a text field keeps them for itself.
    void bindToOutputs(QWidget* list) const;
    void bindToSources(QWidget* list) const;
    /// For the menu bar.
    void fillMenu(QMenu& menu) const;
    /// Can be used, or says why not.
    static void offer(QAction* action, const QString& whyNot, const QString& what);
    /// The button does what the action does, and can be used when it can.
    static void follow(QAbstractButton* button, QAction* action);
};

} // namespace corvane
