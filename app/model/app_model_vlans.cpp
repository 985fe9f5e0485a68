// AppModel's VLANs, existing and planned.
#include "app/model/app_model.h"
#include "app/model/library_editor.h"
#include "app/model/route_store.h"
#include "app/model/vlan_changes.h"

#include <QPointer>

#include <algorithm>

namespace corvane {

const std::vector<VLANInfo>& AppModel::vlans() const {
    return network_.vlans;
}
const std::set<std::string>& AppModel::vlanCapable() const {
    return network_.vlanCapable;
}
VLANSupport AppModel::vlanSupport(const std::string& service) const {
    return vlanSupportOf(service, network_);
}

const VLANInfo* AppModel::vlan(const std::string& service) const {
    const auto found = std::find_if(network_.vlans.begin(), network_.vlans.end(),
                                    [&](const VLANInfo& vlan) { return vlan.name == service; });
    return found == network_.vlans.end() ? nullptr : &*found;
}

bool AppModel::createVLAN(const std::string& name, const std::string& parentDevice, long tag) {
    return vlanChanges_->create(name, parentDevice, tag);
}
bool AppModel::editVLAN(const VLANInfo& old, const std::string& name, const std::string& parentDevice,
                        long tag) {
    return vlanChanges_->edit(old, name, parentDevice, tag);
}
bool AppModel::deleteVLAN(const VLANInfo& vlan, bool deletePresets) {
    return vlanChanges_->remove(vlan, deletePresets);
}

const PlannedVLAN* AppModel::plannedVLAN(const Uuid& id) const {
    const auto& plans = library().plannedVLANs;
    const auto found =
        std::find_if(plans.begin(), plans.end(), [&](const PlannedVLAN& plan) { return plan.id == id; });
    return found == plans.end() ? nullptr : &*found;
}

void AppModel::addPlannedVLAN(const PlannedVLAN& vlan) {
    vlanChanges_->addPlan(vlan);
}
void AppModel::updatePlannedVLAN(const PlannedVLAN& vlan) {
    vlanChanges_->updatePlan(vlan);
}
void AppModel::deletePlannedVLAN(const Uuid& id) {
    editor_->deletePlannedVLAN(id);
}
bool AppModel::setUpPlannedVLAN(const Uuid& id, const std::string& parentDevice) {
    return vlanChanges_->setUp(id, parentDevice);
}

} // namespace corvane
