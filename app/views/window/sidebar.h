// The sidebar: services, global presets, planned VLANs and tools. Arrow keys walk and select, Enter opens,
// typing letters finds a name, the context-menu key offers what the row allows.
#pragma once

#include "app/views/window/sidebar_rows.h"

#include <QTimer>
#include <QTreeView>

class QMenu;

namespace corvane {

class AppModel;
class NetworkCommands;
class SidebarModel;

class Sidebar : public QTreeView {
    Q_OBJECT

  public:
    Sidebar(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    const SidebarModel& rows() const { return *rows_; }
    /// What the row at the current index allows.
    void fillContextMenu(QMenu& menu, const QModelIndex& index);

  signals:
    /// Enter on a row: the keyboard goes on to its page.
    void opened();

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}

  private:
    void refresh();
    void showSelection();
    void activate(const QModelIndex& index);
    void fillServiceMenu(QMenu& menu, const std::string& name);
    void fillPlanMenu(QMenu& menu, const Uuid& id);
    void fillGlobalMenu(QMenu& menu, const Uuid& id);
    void fillListMenu(QMenu& menu);

    AppModel& model_;
    NetworkCommands& commands_;
    SidebarModel* rows_;
    QTimer refreshSoon_, toolsSoon_;
    bool refreshing_ = false;
};

} // namespace corvane
