// One simulated Mac with a window of its own in a folder that goes away, and what it takes to picture it.
#pragma once

#include "app/model/app_model.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/main_window.h"
#include "app/views/window/password_dialog.h"
#include "hosttools/simulated/state.h"

#include <QPixmap>
#include <QTemporaryDir>

#include <functional>
#include <memory>

class QDialog;

namespace corvane::gallery {

class Stage {
  public:
    Stage();
    ~Stage();

    /// Before the start: what the network is like, and the library's file as it is found.
    void network(const std::function<void(simulated::State&)>& edit) const;
    void libraryFile(const std::string& bytes) const;

    /// What the model will stand on, changed before it does.
    void prepareHost(std::function<void(Host&)> change) { prepare_ = std::move(change); }
    void start(QSize size);
    AppModel& model() { return *model_; }
    MainWindow& window() { return *window_; }
    QString path(const QString& relative) const { return folder_.filePath(relative); }
    /// Starts with the example library and shows this page.
    void open(const SidebarItem& item, QSize size = {1080, 720});
    /// Opens a sheet, lets `use` fill it in, and pictures it over the window.
    QPixmap sheet(const std::function<void(NetworkCommands&)>& open,
                  const std::function<void(QDialog&)>& use = {});
    /// Lets a new reading of the network arrive and every fade end.
    void settle();
    /// Only lets time pass.
    static void pass(int milliseconds);
    /// Does something once the next modal dialog stands, which it has to answer.
    void whenAsked(std::function<void(QWidget& dialog)> act);
    Uuid presetNamed(const std::string& name) const;
    Uuid globalNamed(const std::string& name) const;

    /// The window with the dialogs that lie over it, at `scale` pixels a unit.
    QPixmap picture(qreal scale = 1) const;
    static QPixmap pictureOf(QWidget& widget, qreal scale = 1);

  private:
    QTemporaryDir folder_;
    std::unique_ptr<Host> host_;
    std::function<void(Host&)> prepare_;
    std::unique_ptr<PasswordDialog> prompt_;
    AlertBox alerts_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<MainWindow> window_;
};

/// The library that most screens show.
PresetLibrary exampleLibrary();

} // namespace corvane::gallery
