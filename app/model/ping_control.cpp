#include "app/model/ping_control.h"

#include <algorithm>

namespace corvane {

static constexpr const char* activeGroupKey = "activePingGroup";

PingControl::PingControl(UserDefaults& defaults, PingMonitor& monitor, QObject* parent)
    : QObject(parent), defaults_(defaults), monitor_(monitor),
      library_(std::make_shared<const PresetLibrary>()) {}

void PingControl::load(std::shared_ptr<const PresetLibrary> library) {
    library_ = std::move(library);
    active_ = Uuid::parse(defaults_.value(activeGroupKey).toString().toStdString());
    if (!group()) active_.reset();
    updateMonitor();
}

void PingControl::follow(std::shared_ptr<const PresetLibrary> library) {
    const auto before = activeGroup();
    library_ = std::move(library);
    updateMonitor();
    if (activeGroup() != before) emit changed();
}

const PingGroup* PingControl::group() const {
    if (!active_) return nullptr;
    const auto& groups = library_->pingGroups;
    const auto found = std::find_if(groups.begin(), groups.end(),
                                    [this](const PingGroup& each) { return each.id == *active_; });
    return found == groups.end() ? nullptr : &*found;
}

std::optional<Uuid> PingControl::activeGroup() const {
    return group() ? active_ : std::nullopt;
}

void PingControl::setActiveGroup(const std::optional<Uuid>& wanted) {
    if (wanted == active_) return;
    choose(wanted);
    updateMonitor();
    emit changed();
}

void PingControl::setShown(bool shown) {
    if (shown == shown_) return;
    shown_ = shown;
    if (shown && !group() && !library_->pingGroups.empty()) choose(library_->pingGroups.front().id);
    updateMonitor();
    emit changed();
}

void PingControl::setPaused(bool paused) {
    if (paused == paused_) return;
    paused_ = paused;
    updateMonitor();
    emit changed();
}

void PingControl::choose(const std::optional<Uuid>& group) {
    active_ = group;
    defaults_.setValue(activeGroupKey, active_ ? QString::fromStdString(active_->text()) : QString());
}

void PingControl::updateMonitor() {
    const PingGroup* watched = shown_ && !paused_ ? group() : nullptr;
    monitor_.update(watched ? watched->targets : std::vector<PingTarget>());
}

} // namespace corvane
