// The program's one window: the sidebar, the page of what is selected, the lasting notices.
#pragma once

#include "app/views/network/network_commands.h"

#include <QMainWindow>

class QSplitter;

namespace corvane {

class AppModel;
class DetailArea;
class NoticeStrip;
class Sidebar;
class WindowMenus;

class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(AppModel& model, QWidget* parent = nullptr);
    ~MainWindow() override;

    NetworkCommands& commands() { return commands_; }
    Sidebar& sidebar() { return *sidebar_; }
    DetailArea& detail() { return *detail_; }
    NoticeStrip& notices() { return *notices_; }
    /// Shown, not minimised, in front.
    void present();
    /// Keeps place and sizes in the settings; also done whenever the window closes.
    void savePlace();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void restorePlace();

    AppModel& model_;
    NetworkCommands commands_;
    QSplitter* splitter_;
    Sidebar* sidebar_;
    DetailArea* detail_;
    NoticeStrip* notices_;
    WindowMenus* menus_;
};

} // namespace corvane
