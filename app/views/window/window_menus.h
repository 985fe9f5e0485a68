// The menu bar. Every command of the program stands here; what can't be done now is grey and says why.
#pragma once

#include "core/support/uuid.h"

#include <QObject>
#include <QTimer>

#include <optional>
#include <string>

class QAction;
class QKeySequence;
class QMenu;

namespace corvane {

class AppModel;
class MainWindow;
class NetworkCommands;

class WindowMenus : public QObject {
    Q_OBJECT

  public:
    WindowMenus(MainWindow& window, AppModel& model, NetworkCommands& commands);

  private:
    void makeFile(QMenu& menu);
    void makeEdit(QMenu& menu);
    void makeNetwork(QMenu& menu);
    void makeView(QMenu& menu);
    void makeWindow(QMenu& menu);
    void makeHelp(QMenu& menu);
    void refresh();
    void showAbout();

    template <typename Act>
    QAction* add(QMenu& menu, const char* name, const QString& text, const QKeySequence& keys, Act act);
    /// Grey with the reason when there is one.
    static void allow(QAction& action, const QString& reason);

    std::optional<std::string> service() const;
    std::optional<Uuid> global() const;
    /// The preset or global preset that the edit commands act on: why there is none, or nothing.
    QString whyNothingToEdit() const;
    QString whyNothingToApply() const;
    /// The planned VLAN that is selected.
    std::optional<Uuid> plan() const;
    /// The service that a new preset would be for: the one selected, or that of the planned VLAN.
    std::optional<std::string> presetService() const;
    void refreshSystem();

    MainWindow& window_;
    AppModel& model_;
    NetworkCommands& commands_;
    QTimer refreshSoon_;

    QAction *newPreset_, *fromCurrent_, *edit_, *duplicate_, *remove_;
    QAction *revert_, *newVLAN_, *editVLAN_, *deleteVLAN_, *setUpVLAN_;
    QAction *apply_, *temporary_, *hide_, *byState_, *byOrder_, *forget_, *touchID_;
    QMenu* hidden_;
};

} // namespace corvane
