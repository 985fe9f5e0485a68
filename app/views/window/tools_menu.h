// The menu of the tools: each one's page, and what is wanted of them from anywhere.
#pragma once

#include <QObject>

class QAction;
class QMenu;

namespace corvane {

class AppModel;
class MainWindow;

class ToolsMenu : public QObject {
    Q_OBJECT

  public:
    ToolsMenu(QMenu& menu, MainWindow& window, AppModel& model);

  private:
    void makePing(QMenu& menu);
    void makeRouter(QMenu& menu);
    void refresh();

    MainWindow& window_;
    AppModel& model_;
    QAction *showPing_, *pausePing_;
};

} // namespace corvane
