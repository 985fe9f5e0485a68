// What the user can ask for around services and presets: opens the editors and sheets, then hands their
// results to the model. Menus, context menus and pages all call these, so that each act exists once.
#pragma once

#include "app/model/app_model.h"
#include "app/views/widgets/draft_bar.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QDialog;

namespace corvane {

class PlannedVLANPage;

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
    /// The draft that menu commands act on: the one at the foot of the shown page; null without one.
    DraftBar* currentDraft() const { return draft_; }
    void setCurrentDraft(DraftBar* draft);
    /// Whether the change was made; false, and said so, while another change runs.
    bool applyServiceOrder(const std::vector<std::string>& order);
    bool applyRoutes(const std::vector<StaticRoute>& routes, const std::string& service);

    /// On this service's adapter where it can carry one, else on an adapter to choose.
    void newVLAN(const std::optional<std::string>& service = std::nullopt);
    /// Of the VLAN that is this service.
    void editVLAN(const std::string& service);
    /// Asks first, and what becomes of its presets.
    void deleteVLAN(const std::string& service);
    /// The page on which a plan stands open, null without one: what its fields say is the plan.
    void setPlanPage(PlannedVLANPage* page);
    void setUpPlannedVLAN(const Uuid& plan);
    /// Why a planned VLAN can't be created now; empty when it can.
    QString setUpRefusal(const Uuid& plan) const;
    void deletePlannedVLAN(const Uuid& plan);
    void exportPresets();
    void importPresets();

  signals:
    void currentPresetChanged();
    /// Another draft, or the state of the current one.
    void currentDraftChanged();
    /// Another page of a plan, or the reason why its plan can't be set up.
    void planPageChanged();

  private:
    /// False, and said so, while another change runs.
    bool free();
    /// Opens as a sheet of the window: nothing waits for it.
    void openSheet(QDialog* sheet);
    /// Once the sheet that asked has gone.
    void soon(std::function<void()> act);
    void editPreset(const NetworkPreset& preset, bool isNew);
    void editGlobal(const GlobalPreset& global, bool isNew);
    AppModel& model_;
    QPointer<QWidget> window_;
    std::optional<Uuid> currentPreset_;
    QPointer<DraftBar> draft_;
    QPointer<PlannedVLANPage> planPage_;
};

} // namespace corvane
