#include "app/model/app_model.h"

#include "app/clients/ping_monitor.h"
#include "app/clients/subnet_sweep.h"
#include "app/clients/videohub_client.h"
#include "app/model/client_activity.h"
#include "app/model/library_editor.h"
#include "app/model/library_store.h"
#include "app/model/library_transfer.h"
#include "app/model/ping_control.h"
#include "app/model/privileged_flow.h"
#include "app/model/refresher.h"
#include "app/model/route_store.h"
#include "app/model/settings_migration.h"
#include "app/model/sidebar_state.h"
#include "app/model/vlan_changes.h"

#include <QDir>

#include <algorithm>

namespace corvane {

namespace {

constexpr const char* requireTouchIDKey = "requireTouchID";

template <typename Record>
const Record* find(const std::vector<Record>& records, const Uuid& id) {
    const auto found =
        std::find_if(records.begin(), records.end(), [&](const Record& record) { return record.id == id; });
    return found == records.end() ? nullptr : &*found;
}

} // namespace

AppModel::AppModel(Host& host, PasswordPrompt& prompt, Alerts& alerts, QObject* parent)
    : QObject(parent), host_(host), alerts_(alerts) {
    const auto folder = SettingsMigration::settleFolder(host.applicationSupport);
    folderProblem_ = folder.problem;
    SettingsMigration::copyOlderDefaults(*host.defaults);

    sidebar_ = std::make_unique<SidebarState>(*host.defaults);
    store_ = std::make_unique<LibraryStore>(QDir(folder.path).filePath(QStringLiteral("presets.json")));
    editor_ = std::make_unique<LibraryEditor>(store_->load());
    transfer_ = std::make_unique<LibraryTransfer>();
    flow_ = std::make_unique<PrivilegedFlow>(host, prompt, alerts);
    refresher_ = std::make_unique<Refresher>(*host.shell);
    routes_ = std::make_unique<RouteStore>(*host.shell);
    vlanChanges_ = std::make_unique<VLANChanges>(*this, *editor_, *flow_, alerts);

    connect(&banner_, &BannerState::changed, this, &AppModel::bannerChanged);
    connect(sidebar_.get(), &SidebarState::selectionChanged, this, &AppModel::selectionChanged);
    connect(sidebar_.get(), &SidebarState::changed, this, &AppModel::sidebarChanged);
    connect(editor_.get(), &LibraryEditor::changed, this, &AppModel::libraryEdited);
    connect(store_.get(), &LibraryStore::problemChanged, this, &AppModel::storeStateChanged);
    connect(store_.get(), &LibraryStore::failed, this, &AppModel::flashError);
    connect(flow_.get(), &PrivilegedFlow::busyChanged, this, &AppModel::busyChanged);
    connect(flow_.get(), &PrivilegedFlow::passwordStateChanged, this, &AppModel::passwordStateChanged);
    connect(flow_.get(), &PrivilegedFlow::passwordForgotten, this,
            [this] { flash(QStringLiteral("Saved password removed from the keychain.")); });
    connect(flow_.get(), &PrivilegedFlow::keychainFailed, this, [this](const QString& sentence) {
        banner_.showAfterwards({sentence, true});
    });
    connect(flow_.get(), &PrivilegedFlow::succeeded, this, [this](const QString& text) {
        flash(text);
        refresher_->refreshAfterChange();
    });
    // Some of the commands may have run.
    connect(flow_.get(), &PrivilegedFlow::failed, refresher_.get(), &Refresher::refreshAfterChange);
    connect(routes_.get(), &RouteStore::changed, this, &AppModel::routesChanged);
    connect(routes_.get(), &RouteStore::loaded, this, &AppModel::routesLoaded);
    connect(vlanChanges_.get(), &VLANChanges::serviceReplaced, routes_.get(), &RouteStore::forget);
    connect(refresher_.get(), &Refresher::finished, this, &AppModel::publish);

    sidebar_->load();
    makeTools();
    flow_->lookForSavedPassword();
    flow_->gate().setEnabled(host.defaults->value(requireTouchIDKey).toBool());
    refresher_->start();
}

AppModel::~AppModel() {
    store_->disconnect(this);
    store_->flush();
}

const Host& AppModel::host() const {
    return host_;
}

// The library.

const PresetLibrary& AppModel::library() const {
    return editor_->library();
}

const NetworkPreset* AppModel::preset(const Uuid& id) const {
    return find(library().presets, id);
}

const GlobalPreset* AppModel::global(const Uuid& id) const {
    return find(library().globals, id);
}

std::vector<NetworkPreset> AppModel::presetsOf(const std::string& service) const {
    std::vector<NetworkPreset> presets;
    for (const NetworkPreset& preset : library().presets)
        if (preset.service == service) presets.push_back(preset);
    return presets;
}

QUndoStack& AppModel::undoStack() {
    return editor_->undoStack();
}
void AppModel::addPreset(const NetworkPreset& preset) {
    editor_->addPreset(preset);
}
void AppModel::updatePreset(const NetworkPreset& preset) {
    editor_->updatePreset(preset);
}
void AppModel::deletePreset(const Uuid& id) {
    editor_->deletePreset(id);
}
Uuid AppModel::duplicatePreset(const Uuid& id) {
    return editor_->duplicatePreset(id);
}
void AppModel::movePreset(const Uuid& id, const std::optional<Uuid>& before) {
    editor_->movePreset(id, before);
}
void AppModel::addGlobal(const GlobalPreset& global) {
    editor_->addGlobal(global);
}
void AppModel::updateGlobal(const GlobalPreset& global) {
    editor_->updateGlobal(global);
}
void AppModel::deleteGlobal(const Uuid& id) {
    editor_->deleteGlobal(id);
}
Uuid AppModel::duplicateGlobal(const Uuid& id) {
    return editor_->duplicateGlobal(id);
}
void AppModel::moveGlobal(const Uuid& id, const std::optional<Uuid>& before) {
    editor_->moveGlobal(id, before);
}

NetworkPreset AppModel::presetFromCurrent(const std::string& name) const {
    const ServiceInfo* info = service(name);
    return NetworkPreset::fromConfig(name, info && info->config ? *info->config : CurrentConfig());
}

std::string AppModel::encodedLibrary() const {
    return library().encoded();
}

void AppModel::exportPresets(const QString& file) {
    transfer_->exportTo(file, editor_->snapshot(), [this](const LibraryTransfer::Message& message) {
        banner_.show({message.text, message.isError});
    });
}

void AppModel::importPresets(const QString& file) {
    transfer_->importFrom(file, [this](const std::optional<PresetLibrary>& imported, const QString& error) {
        if (!imported) return flashError(error);
        const auto before = editor_->snapshot();
        editor_->import(*imported);
        flash(LibraryTransfer::importedText(*imported, *before, library()));
    });
}

void AppModel::libraryEdited() {
    store_->save(editor_->snapshot());
    ping_->follow(editor_->snapshot());
    emit libraryChanged();
    // What is selected may be gone now; what is to be selected once it appears comes by itself.
    const auto item = selection();
    const bool isRecord =
        item && (item->kind() == SidebarItem::Kind::global || item->kind() == SidebarItem::Kind::plannedVLAN);
    if (!isRecord) return;
    const auto id = Uuid::parse(item->key().toStdString());
    const bool exists = id && (global(*id) || plannedVLAN(*id));
    if (!exists && !pendingSelection()) select(defaultService());
}

QString AppModel::storePath() const {
    return store_->path();
}

QString AppModel::loadProblem() const {
    return QStringList{folderProblem_, store_->loadProblem()}.join(QLatin1Char(' ')).trimmed();
}

QString AppModel::saveProblem() const {
    return store_->saveProblem();
}

void AppModel::flush() {
    store_->flush();
}

// The machine's network state.

const std::vector<ServiceInfo>& AppModel::services() const {
    return network_.services;
}

const ServiceInfo* AppModel::service(const std::string& name) const {
    const auto found = std::find_if(network_.services.begin(), network_.services.end(),
                                    [&](const ServiceInfo& info) { return info.name == name; });
    return found == network_.services.end() ? nullptr : &*found;
}

const std::vector<std::string>& AppModel::serviceOrder() const {
    return network_.serviceOrder;
}
const std::optional<std::string>& AppModel::internetDevice() const {
    return network_.internetDevice;
}
QDateTime AppModel::lastRefresh() const {
    return lastRefresh_;
}
void AppModel::refresh() {
    refresher_->refresh();
}
std::optional<SidebarItem> AppModel::defaultService() const {
    return sidebar_->defaultService(network_);
}

void AppModel::publish(const NetworkSnapshot& snapshot) {
    const bool first = !lastRefresh_.isValid();
    const bool vlansDiffer =
        first || snapshot.vlans != network_.vlans || snapshot.vlanCapable != network_.vlanCapable;
    const bool differs = first || snapshot != network_;
    lastRefresh_ = QDateTime::currentDateTime();
    if (differs) {
        network_ = snapshot;
        emit servicesChanged();
    }
    if (vlansDiffer) emit vlansChanged();
    if (tempAddresses_.compare(network_.services)) emit tempAliasesChanged();
    sidebar_->settleSelection(network_);
    emit refreshed();
}

// Selection and sidebar.

const std::optional<SidebarItem>& AppModel::selection() const {
    return sidebar_->selection();
}
void AppModel::select(const std::optional<SidebarItem>& item) {
    sidebar_->select(item);
    if (item == SidebarItem::tool(Tool::ping)) setShowPing(true);
}

void AppModel::setPendingSelection(const std::optional<std::string>& service) {
    sidebar_->setPendingSelection(service);
    if (lastRefresh_.isValid()) sidebar_->settleSelection(network_);
}

const std::optional<std::string>& AppModel::pendingSelection() const {
    return sidebar_->pendingSelection();
}
bool AppModel::isHidden(const std::string& service) const {
    return sidebar_->isHidden(service);
}
void AppModel::setHidden(const std::string& service, bool hidden) {
    sidebar_->setHidden(service, hidden);
}
const QSet<QString>& AppModel::hiddenServices() const {
    return sidebar_->hiddenServices();
}
bool AppModel::isExpanded(const QString& group) const {
    return sidebar_->isExpanded(group);
}
void AppModel::setExpanded(const QString& group, bool expanded) {
    sidebar_->setExpanded(group, expanded);
}
bool AppModel::sortsByState() const {
    return sidebar_->sortsByState();
}
void AppModel::setSortsByState(bool byState) {
    sidebar_->setSortsByState(byState);
}
std::vector<ServiceInfo> AppModel::visibleServices() const {
    return sidebar_->visibleServices(network_);
}

// Banner.

const std::optional<AppModel::Banner>& AppModel::banner() const {
    return banner_.current();
}
void AppModel::flash(const QString& text) {
    banner_.show({text, false});
}
void AppModel::flashError(const QString& text) {
    banner_.show({text, true});
}

// The saved password.

bool AppModel::busy() const {
    return flow_->busy();
}
bool AppModel::hasSavedPassword() const {
    return flow_->hasSavedPassword();
}
void AppModel::forgetSavedPassword() {
    flow_->forgetSavedPassword();
}
bool AppModel::requireTouchID() const {
    return flow_->gate().enabled();
}

void AppModel::setRequireTouchID(bool require) {
    if (require == requireTouchID()) return;
    flow_->gate().setEnabled(require);
    host_.defaults->setValue(requireTouchIDKey, require);
    emit passwordStateChanged();
}

bool AppModel::touchIDAvailable() const {
    return host_.ownerCheck->available();
}

} // namespace corvane
