// The menu-bar (tray) menu: each service's state and address at a glance, its presets to apply, the global
// presets.
#pragma once

#include "app/views/network/network_commands.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace corvane {

class AppModel;
class MainWindow;

/// Drawn anew each time that it is about to show.
class TrayMenu : public QMenu {
    Q_OBJECT

  public:
    TrayMenu(AppModel& model, NetworkCommands& commands);
    void refresh();

  signals:
    void openAsked();

  private:
    void addService(const ServiceInfo& service);
    void addGlobals();

    AppModel& model_;
    NetworkCommands& commands_;
};

class Tray : public QObject {
    Q_OBJECT

  public:
    Tray(AppModel& model, MainWindow& window);
    ~Tray() override;
    /// False where the desktop has no tray.
    bool isShown() const { return icon_.isVisible(); }

  private:
    void refreshTip();

    AppModel& model_;
    TrayMenu menu_;
    QSystemTrayIcon icon_;
};

} // namespace corvane
