// What the user can ask for around ping groups and their hosts: opens the sheets, then hands their results to
// the model. The panel and the menus call these, so that each act exists once.
#pragma once

#include "core/diagnostics/ping_group.h"

#include <QKeySequence>
#include <QObject>
#include <QPointer>
#include <QWidget>

class QDialog;

namespace corvane {

class AppModel;

class PingCommands : public QObject {
    Q_OBJECT

  public:
    /// Sheets are opened over `window`.
    PingCommands(AppModel& model, QWidget* window);

    /// The group that is shown; null when there is none.
    const PingGroup* group() const;

    void newGroup();
    /// A group of the routers and DNS servers of the connected services.
    void newGroupFromCurrent();
    /// Why there is nothing to make such a group of; empty when there is.
    QString currentRefusal() const;
    void renameGroup();
    void duplicateGroup();
    void deleteGroup();
    /// One place up or down among the groups.
    void moveGroup(int step);
    bool canMoveGroup(int step) const;

    /// To the shown group; makes a new group when there is none.
    void addHosts();
    /// From anywhere in the window. Not every keyboard has the Insert key that the list takes as well.
    static QKeySequence addHostsKeys() { return Qt::CTRL | Qt::SHIFT | Qt::Key_H; }
    void sweep();
    void editHost(const Uuid& host);
    /// The copy stands below the host.
    void duplicateHost(const Uuid& host);
    void deleteHost(const Uuid& host);

  signals:
    /// A host that was made here: worth choosing.
    void hostMade(const corvane::Uuid& host);

  private:
    void show(const Uuid& group);
    void openSheet(QDialog* sheet);
    void add(const Uuid& group, std::vector<PingTarget> targets);
    void addGroup(const PingGroup& group);
    void makeGroup(const std::string& name, std::vector<PingTarget> targets);

    AppModel& model_;
    QPointer<QWidget> window_;
};

} // namespace corvane
