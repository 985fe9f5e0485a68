// What the user can ask for around services and presets: opens the editors and sheets, then hands their
// results to the model. Menus, context menus and pages all call these, so that each act exists once.
#pragma once

#include "app/model/app_model.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <optional>
#include <string>

namespace corvane {

class NetworkCommands : public QObject {
    Q_OBJECT

  public:
    /// Sheets are opened over `window`.
    NetworkCommands(AppModel& model, QWidget* window);

    /// The preset that menu commands act on: the one selected on the shown service's page.
    const std::optional<Uuid>& currentPreset() const { return currentPreset_; }
    void setCurrentPreset(const std::optional<Uuid>& preset);

    void newPreset(const std::string& service);
    /// The editor filled with the service's current settings.
    void newPresetFromCurrent(const std::string& service);
    /// Why a service has no current settings to take over; empty when it has.
    QString currentSettingsRefusal(const std::string& service) const;
    void editPreset(const Uuid& preset);
    void duplicatePreset(const Uuid& preset);
    void deletePreset(const Uuid& preset);
    void applyPreset(const Uuid& preset);
    void newGlobal();
    void editGlobal(const Uuid& global);
    void duplicateGlobal(const Uuid& global);
    void deleteGlobal(const Uuid& global);
    void applyGlobal(const Uuid& global);
    void addTemporaryAddress(const std::string& service);
    void removeTemporaryAddress(const AppModel::TempAlias& alias);
    void exportPresets();
    void importPresets();

  signals:
    void currentPresetChanged();

  private:
    /// False, and said so, while another change runs.
    bool free();
    void editPreset(const NetworkPreset& preset, bool isNew);
    void editGlobal(const GlobalPreset& global, bool isNew);
    AppModel& model_;
    QPointer<QWidget> window_;
    std::optional<Uuid> currentPreset_;
};

} // namespace corvane
