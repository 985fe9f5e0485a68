// AppModel's tools: the ping monitor with its groups, and the device clients.
#include "app/clients/ping_monitor.h"
#include "app/clients/subnet_sweep.h"
#include "app/clients/videohub_client.h"
#include "app/model/app_model.h"
#include "app/model/client_activity.h"
#include "app/model/library_editor.h"
#include "app/model/ping_control.h"

#include <algorithm>

namespace corvane {

static constexpr const char* videohubHostKey = "videohub.host";

void AppModel::makeTools() {
    activity_ = std::make_unique<ClientActivity>(*host_.activity);
    pinger_ = std::make_unique<PingMonitor>(*host_.tools);
    ping_ = std::make_unique<PingControl>(*host_.defaults, *pinger_);
    sweep_ = std::make_unique<SubnetSweep>(*host_.echoSockets);
    videohub_ = std::make_unique<VideohubClient>();

    connect(ping_.get(), &PingControl::changed, this, &AppModel::pingChanged);
    connect(pinger_.get(), &PingMonitor::targetsChanged, this,
            [this] { activity_->setActive("ping", pinger_->isRunning()); });
    connect(sweep_.get(), &SubnetSweep::runningChanged, this,
            [this] { activity_->setActive("sweep", sweep_->isRunning()); });
    connect(videohub_.get(), &VideohubClient::statusChanged, this, [this] {
        activity_->setActive("videohub", videohub_->status() != LineConnection::Status::idle());
    });

    ping_->load(editor_->snapshot());
    const QString host = host_.defaults->value(videohubHostKey).toString();
    if (!host.isEmpty()) videohubHost_ = host;
}

// Ping monitor.

PingMonitor& AppModel::pinger() {
    return *pinger_;
}
SubnetSweep& AppModel::sweep() {
    return *sweep_;
}
bool AppModel::showPing() const {
    return ping_->shown();
}
void AppModel::setShowPing(bool show) {
    ping_->setShown(show);
}
bool AppModel::pingPaused() const {
    return ping_->paused();
}
void AppModel::setPingPaused(bool paused) {
    ping_->setPaused(paused);
}
std::optional<Uuid> AppModel::activePingGroup() const {
    return ping_->activeGroup();
}
void AppModel::setActivePingGroup(const std::optional<Uuid>& group) {
    ping_->setActiveGroup(group);
}

const PingGroup* AppModel::pingGroup(const Uuid& id) const {
    const auto& groups = library().pingGroups;
    const auto found =
        std::find_if(groups.begin(), groups.end(), [&](const PingGroup& group) { return group.id == id; });
    return found == groups.end() ? nullptr : &*found;
}

void AppModel::addPingGroup(const PingGroup& group) {
    editor_->addPingGroup(group);
}
void AppModel::renamePingGroup(const Uuid& id, const std::string& name) {
    editor_->renamePingGroup(id, name);
}
void AppModel::deletePingGroup(const Uuid& id) {
    editor_->deletePingGroup(id);
}
Uuid AppModel::duplicatePingGroup(const Uuid& id) {
    return editor_->duplicatePingGroup(id);
}
void AppModel::movePingGroup(const Uuid& id, const std::optional<Uuid>& before) {
    editor_->movePingGroup(id, before);
}
void AppModel::addPingTargets(const Uuid& group, const std::vector<PingTarget>& targets) {
    editor_->addPingTargets(group, targets);
}
void AppModel::updatePingTarget(const Uuid& group, const PingTarget& target) {
    editor_->updatePingTarget(group, target);
}
void AppModel::deletePingTarget(const Uuid& group, const Uuid& id) {
    editor_->deletePingTarget(group, id);
}
void AppModel::movePingTarget(const Uuid& group, const Uuid& id, const std::optional<Uuid>& before) {
    editor_->movePingTarget(group, id, before);
}

std::vector<Ping::LocalInterface> AppModel::localInterfaces() const {
    std::vector<Ping::LocalInterface> interfaces;
    for (const ServiceInfo& info : services()) {
        if (!info.device || !info.config || !info.config->ip || !info.config->subnet) continue;
        // An address counts once the interface holds it; a service without a cable only wants it.
        const bool held = !info.hardware || std::ranges::find(info.hardware->addresses, *info.config->ip) !=
                                                info.hardware->addresses.end();
        if (held) interfaces.push_back({*info.device, *info.config->ip, *info.config->subnet});
    }
    for (const TempAlias& alias : tempAliases()) interfaces.push_back({alias.device, alias.ip, alias.mask});
    return interfaces;
}

// Video router.

VideohubClient& AppModel::videohub() {
    return *videohub_;
}
const std::optional<QString>& AppModel::videohubHost() const {
    return videohubHost_;
}

void AppModel::setVideohubHost(const QString& host) {
    if (videohubHost_ == host) return;
    videohubHost_ = host;
    host_.defaults->setValue(videohubHostKey, host);
    emit toolHostsChanged();
}

} // namespace corvane
