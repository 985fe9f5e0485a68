// The one model of the application: the library, the machine's network state, the selection, the banner and
// every privileged change. All of it belongs to the main thread; one signal a section that a view shows.
#pragma once

#include "app/model/banner_state.h"
#include "app/model/dialogs.h"
#include "app/model/network_reader.h"
#include "app/model/sidebar_item.h"
#include "app/model/temp_addresses.h"
#include "app/model/vlan_support.h"
#include "core/diagnostics/ping.h"
#include "core/netconfig/apply_plan.h"
#include "core/netconfig/preset_library.h"
#include "core/netconfig/static_route.h"
#include "platform/host.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QUndoStack;

namespace corvane {

class ClientActivity;
class LibraryEditor;
class LibraryStore;
class LibraryTransfer;
class PingControl;
class PingMonitor;
class PrivilegedFlow;
class Refresher;
class RouteStore;
class SidebarState;
class SubnetSweep;
class VLANChanges;
class VideohubClient;

class AppModel : public QObject {
    Q_OBJECT

  public:
    using Banner = corvane::Banner;
    using TempAlias = corvane::TempAlias;
    using VLANSupport = corvane::VLANSupport;

    /// Settles the support folder, moves older settings, loads the library, starts the refresh. The host and
    /// the two dialog givers outlive the model.
    AppModel(Host& host, PasswordPrompt& prompt, Alerts& alerts, QObject* parent = nullptr);
    ~AppModel() override;

    const Host& host() const;

    // The library.
    const PresetLibrary& library() const;
    const NetworkPreset* preset(const Uuid& id) const;
    const GlobalPreset* global(const Uuid& id) const;
    std::vector<NetworkPreset> presetsOf(const std::string& service) const;
    /// Every edit is one step of this stack.
    QUndoStack& undoStack();
    void addPreset(const NetworkPreset& preset);
    void updatePreset(const NetworkPreset& preset);
    void deletePreset(const Uuid& id);
    /// The copy's id; its name ends " copy".
    Uuid duplicatePreset(const Uuid& id);
    /// Before another preset of the same service, or to its end.
    void movePreset(const Uuid& id, const std::optional<Uuid>& before);
    void addGlobal(const GlobalPreset& global);
    void updateGlobal(const GlobalPreset& global);
    void deleteGlobal(const Uuid& id);
    Uuid duplicateGlobal(const Uuid& id);
    void moveGlobal(const Uuid& id, const std::optional<Uuid>& before);
    /// Named after the service, with its current settings and a fresh id; not added.
    NetworkPreset presetFromCurrent(const std::string& service) const;
    std::string encodedLibrary() const;
    /// Banner: "Exported 3 presets", or why not.
    void exportPresets(const QString& file);
    /// Merges; banner: "Imported 3 presets and 1 global", or why not.
    void importPresets(const QString& file);
    QString storePath() const;
    /// Why the stored library couldn't be read at start; empty when it could.
    QString loadProblem() const;
    /// Why the newest state isn't on disk; empty when it is (or is being written).
    QString saveProblem() const;
    /// Waits until everything is written; for the end of the program.
    void flush();

    // The machine's network state.
    const std::vector<ServiceInfo>& services() const;
    const ServiceInfo* service(const std::string& name) const;
    const std::vector<std::string>& serviceOrder() const;
    const std::optional<std::string>& internetDevice() const;
    /// The service whose device carries the default route.
    std::optional<std::string> internetService() const;
    const std::vector<VLANInfo>& vlans() const;
    /// The VLAN that is this service; null for any other service.
    const VLANInfo* vlan(const std::string& service) const;
    /// Devices that can carry VLANs.
    const std::set<std::string>& vlanCapable() const;
    VLANSupport vlanSupport(const std::string& service) const;
    /// Reads the service's static routes off the main thread; routesChanged when that changed something.
    void loadRoutes(const std::string& service);
    /// Nothing until they were read.
    std::optional<std::vector<StaticRoute>> routes(const std::string& service) const;
    /// When the services were last read; invalid before the first time.
    QDateTime lastRefresh() const;
    void refresh();
    /// The first connected service that isn't hidden, else the first one.
    std::optional<SidebarItem> defaultService() const;

    // Selection and what the sidebar shows.
    const std::optional<SidebarItem>& selection() const;
    void select(const std::optional<SidebarItem>& item);
    /// Selects that service once it appears.
    void setPendingSelection(const std::optional<std::string>& service);
    const std::optional<std::string>& pendingSelection() const;
    bool isHidden(const std::string& service) const;
    void setHidden(const std::string& service, bool hidden);
    const QSet<QString>& hiddenServices() const;
    bool isExpanded(const QString& group) const;
    void setExpanded(const QString& group, bool expanded);
    /// Services in the sidebar by LinkState rank, or in the user's service order.
    bool sortsByState() const;
    void setSortsByState(bool byState);
    /// The services in sidebar order, hidden ones left out.
    std::vector<ServiceInfo> visibleServices() const;

    // Banner.
    const std::optional<Banner>& banner() const;
    void flash(const QString& text);
    void flashError(const QString& text);

    // Changes to the system. Each returns true when the change was made; they run a nested event loop while
    // they ask and while the script runs, and refuse to start while another change runs.
    bool apply(const NetworkPreset& preset);
    bool apply(const GlobalPreset& global);
    bool run(const ApplyPlan& plan);
    bool runPrivileged(const std::vector<NetworkSetup::Command>& commands, const QString& purpose,
                       const QString& success, const QString& failure);
    bool isActive(const NetworkPreset& preset) const;
    /// All of its members are active and there is at least one.
    bool isActive(const GlobalPreset& global) const;
    bool addTempAlias(const std::string& service, const std::string& device, const std::string& ip,
                      const std::string& mask);
    bool removeTempAlias(const TempAlias& alias);
    const std::vector<TempAlias>& tempAliases() const;
    bool busy() const;

    // Service order and static routes. What can't be set is told by an alert and nothing runs.
    /// The whole list of services, first the one that is to carry internet.
    bool applyServiceOrder(const std::vector<std::string>& order);
    /// Replaces the service's routes, then reads them back.
    bool applyRoutes(const std::vector<StaticRoute>& routes, const std::string& service);

    // VLANs. What VLAN::validate finds is told by an alert and nothing runs.
    /// Its service is selected once it appears.
    bool createVLAN(const std::string& name, const std::string& parentDevice, long tag);
    /// Re-creates it with its addressing; presets follow a rename. When that fails half-way and the VLAN is
    /// gone, it is kept as a planned one and an alert says so.
    bool editVLAN(const VLANInfo& old, const std::string& name, const std::string& parentDevice, long tag);
    bool deleteVLAN(const VLANInfo& vlan, bool deletePresets);
    const PlannedVLAN* plannedVLAN(const Uuid& id) const;
    void addPlannedVLAN(const PlannedVLAN& vlan);
    /// Its presets follow a rename.
    void updatePlannedVLAN(const PlannedVLAN& vlan);
    void deletePlannedVLAN(const Uuid& id);
    /// Creates it and removes the plan.
    bool setUpPlannedVLAN(const Uuid& id, const std::string& parentDevice);

    // The ping monitor. It runs while it is shown and not paused.
    PingMonitor& pinger();
    bool showPing() const;
    void setShowPing(bool show);
    bool pingPaused() const;
    void setPingPaused(bool paused);
    /// Nothing when no group is chosen, or it is gone.
    std::optional<Uuid> activePingGroup() const;
    void setActivePingGroup(const std::optional<Uuid>& group);
    const PingGroup* pingGroup(const Uuid& id) const;
    void addPingGroup(const PingGroup& group);
    void renamePingGroup(const Uuid& id, const std::string& name);
    void deletePingGroup(const Uuid& id);
    Uuid duplicatePingGroup(const Uuid& id);
    void movePingGroup(const Uuid& id, const std::optional<Uuid>& before);
    /// At the end of the group, as one step.
    void addPingTargets(const Uuid& group, const std::vector<PingTarget>& targets);
    void updatePingTarget(const Uuid& group, const PingTarget& target);
    void deletePingTarget(const Uuid& group, const Uuid& id);
    void movePingTarget(const Uuid& group, const Uuid& id, const std::optional<Uuid>& before);
    /// The addresses that this machine's interfaces hold, in the order of the services.
    std::vector<Ping::LocalInterface> localInterfaces() const;
    SubnetSweep& sweep();

    // Device clients, and the hosts last used with them.
    VideohubClient& videohub();
    const std::optional<QString>& videohubHost() const;
    void setVideohubHost(const QString& host);

    // The saved password.
    bool hasSavedPassword() const;
    void forgetSavedPassword();
    bool requireTouchID() const;
    void setRequireTouchID(bool require);
    /// Whether this machine can check its owner at all.
    bool touchIDAvailable() const;

  signals:
    void servicesChanged();
    /// VLANs, or the devices that can carry them.
    void vlansChanged();
    void routesChanged();
    /// A service's static routes were read, whether that changed anything or not.
    void routesLoaded(const std::string& service);
    /// A refresh ended, whether it changed anything or not.
    void refreshed();
    void libraryChanged();
    /// loadProblem or saveProblem changed.
    void storeStateChanged();
    void selectionChanged();
    /// Hidden services, expanded groups or the sort order.
    void sidebarChanged();
    void bannerChanged();
    void busyChanged();
    void passwordStateChanged();
    void tempAliasesChanged();
    /// Shown, paused or active group of the ping monitor.
    void pingChanged();
    /// A tool's last-used host.
    void toolHostsChanged();

  private:
    void makeTools();
    void publish(const NetworkSnapshot& snapshot);
    void libraryEdited();
    /// Says which of these presets can't be applied from here; whether there were any.
    bool tellRemote(const std::vector<NetworkPreset>& presets);

    Host& host_;
    Alerts& alerts_;
    QString folderProblem_;
    NetworkSnapshot network_;
    QDateTime lastRefresh_;
    BannerState banner_;
    TempAddresses tempAddresses_;
    std::unique_ptr<SidebarState> sidebar_;
    std::unique_ptr<LibraryStore> store_;
    std::unique_ptr<LibraryEditor> editor_;
    std::unique_ptr<LibraryTransfer> transfer_;
    std::unique_ptr<PrivilegedFlow> flow_;
    std::unique_ptr<Refresher> refresher_;
    std::unique_ptr<RouteStore> routes_;
    std::unique_ptr<VLANChanges> vlanChanges_;
    std::unique_ptr<ClientActivity> activity_;
    std::unique_ptr<PingMonitor> pinger_;
    std::unique_ptr<PingControl> ping_;
    std::unique_ptr<SubnetSweep> sweep_;
    std::unique_ptr<VideohubClient> videohub_;
    std::optional<QString> videohubHost_;
};

} // namespace corvane
