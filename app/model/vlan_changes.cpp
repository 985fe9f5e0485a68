#include "app/model/vlan_changes.h"

#include "app/model/app_model.h"
#include "app/model/library_editor.h"
#include "app/model/privileged_flow.h"
#include "app/model/remote_services.h"
#include "app/model/vlan_reading.h"
#include "core/netconfig/vlan.h"
#include "core/support/text.h"

#include <QPointer>

#include <algorithm>

namespace corvane {

namespace {

QString fromCore(const std::string& text) {
    return QString::fromStdString(text);
}

std::string trimmed(const std::string& text) {
    return std::string(text::trim(text));
}

} // namespace

VLANChanges::VLANChanges(AppModel& model, LibraryEditor& editor, PrivilegedFlow& flow, Alerts& alerts,
                         QObject* parent)
    : QObject(parent), model_(model), editor_(editor), alerts_(alerts) {
    connect(&flow, &PrivilegedFlow::failed, this, [this] { scriptFailed_ = true; });
}

std::vector<std::string> VLANChanges::serviceNames() const {
    std::vector<std::string> names;
    for (const ServiceInfo& info : model_.services()) names.push_back(info.name);
    return names;
}

bool VLANChanges::refused(const std::string& name, const std::optional<std::string>& message) {
    auto reason = message;
    if (!reason && isRemoteService(name)) reason = "Names that begin with “win:” are kept for remote PCs.";
    if (reason) alerts_.show(Alerts::Kind::informational, fromCore(*reason), {});
    return reason.has_value();
}

bool VLANChanges::refusedAt(const std::string& name, const std::string& parentDevice,
                            const std::optional<std::string>& message) {
    const bool nowhere = !message && parentDevice.empty();
    return refused(name, nowhere ? "Choose an adapter for the VLAN." : message);
}

bool VLANChanges::planRefused(const PlannedVLAN& plan) {
    return refused(plan.name,
                   VLAN::validatePlan(plan.id, plan.name, std::to_string(plan.tag), plan.parentDevice,
                                      model_.vlans(), serviceNames(), model_.library().plannedVLANs));
}

bool VLANChanges::runCreation(const std::string& name, const std::string& parentDevice, long tag) {
    const std::string quoted = text::quoted(name);
    const QPointer<VLANChanges> alive(this);
    const bool created = model_.runPrivileged(
        VLAN::createCommands(name, parentDevice, tag), fromCore("create the VLAN " + quoted),
        fromCore("Created VLAN " + quoted + "."), fromCore("Couldn't create VLAN " + quoted + "."));
    if (!created || !alive) return created;
    emit serviceReplaced(name);
    // What somebody makes is meant to be seen, even where another one of that name was hidden.
    model_.setHidden(name, false);
    model_.setPendingSelection(name);
    return true;
}

bool VLANChanges::create(const std::string& newName, const std::string& parentDevice, long tag) {
    if (model_.busy()) return false;
    const std::string name = trimmed(newName), parent = parentDevice;
    const auto message = VLAN::validate(name, std::to_string(tag), parent, model_.vlans(), serviceNames());
    return !refusedAt(name, parent, message) && runCreation(name, parent, tag);
}

bool VLANChanges::edit(const VLANInfo& old, const std::string& newName, const std::string& parentDevice,
                       long tag) {
    if (model_.busy() || reading_) return false;
    Recreation change{old, trimmed(newName), parentDevice, tag, {}};
    const auto message = VLAN::validateEdit(change.old, change.name, std::to_string(tag), change.parentDevice,
                                            model_.vlans(), serviceNames());
    if (refusedAt(change.name, change.parentDevice, message) || refused(change.old.name, {})) return false;
    // A VLAN that works isn't torn down for nothing.
    if (change.name == old.name && change.parentDevice == old.parentDevice && tag == old.tag) return true;

    if (!readSettings(change)) return false;
    auto commands =
        VLAN::recreateCommands(change.old, change.name, change.parentDevice, tag, change.settings.config);
    if (!change.settings.routes.empty())
        commands.push_back(StaticRoute::setCommand(change.name, change.settings.routes));
    const std::string quoted = text::quoted(change.old.name);
    const QPointer<VLANChanges> alive(this);
    scriptFailed_ = false;
    const bool changed = model_.runPrivileged(commands, fromCore("change the VLAN " + quoted),
                                              fromCore("Updated VLAN " + text::quoted(change.name) + "."),
                                              fromCore("Couldn't change VLAN " + quoted + "."));
    if (!alive) return changed;
    if (changed)
        followRename(change);
    else if (scriptFailed_)
        rescue(change);
    return changed;
}

bool VLANChanges::readSettings(Recreation& change) {
    const Shell& shell = *model_.host().shell;
    const QPointer<VLANChanges> alive(this);
    reading_ = true;
    auto reading =
        reader_.await([&shell, name = change.old.name] { return VLANSettings::read(shell, name); });
    if (!alive) return false;
    reading_ = false;
    // Another change may have begun meanwhile.
    if (model_.busy()) return false;
    if (!reading.settings) {
        alerts_.show(Alerts::Kind::warning, fromCore(reading.refusal), {});
        return false;
    }
    change.settings = std::move(*reading.settings);
    return true;
}

void VLANChanges::followRename(const Recreation& change) {
    const std::string& before = change.old.name;
    emit serviceReplaced(before);
    if (change.name == before) return;
    emit serviceReplaced(change.name);
    editor_.renameService(before, change.name);
    model_.setHidden(change.name, model_.isHidden(before));
    model_.setHidden(before, false);
    if (model_.selection() == SidebarItem::service(before)) model_.setPendingSelection(change.name);
}

void VLANChanges::rescue(const Recreation& change) {
    const Shell& shell = *model_.host().shell;
    const QPointer<VLANChanges> alive(this);
    const VLANRemains remains = reader_.await([&shell, change] {
        return lookForVLAN(shell, change.old, change.name, change.parentDevice, change.tag);
    });
    if (!alive || remains == VLANRemains::oldVLAN) return;
    const std::string quoted = text::quoted(change.name);
    const QString before = fromCore(change.settings.description(change.name));
    if (remains == VLANRemains::newVLAN) {
        followRename(change);
        alerts_.show(
            Alerts::Kind::warning,
            fromCore("VLAN " + quoted + " was re-created, but its IP settings couldn't be restored."),
            before);
        return;
    }
    PlannedVLAN plan;
    plan.id = Uuid::generate();
    plan.name = change.name;
    plan.tag = change.tag;
    plan.parentDevice = change.parentDevice;
    editor_.keepAsPlan(plan, change.old.name);
    emit serviceReplaced(change.old.name);
    model_.select(SidebarItem::plannedVLAN(plan.id));
    const std::string fact =
        remains == VLANRemains::nothing
            ? "VLAN " + text::quoted(change.old.name) + " no longer exists on this computer."
            : "It isn't known whether VLAN " + text::quoted(change.old.name) +
                  " still exists on this computer.";
    alerts_.show(Alerts::Kind::warning,
                 fromCore(fact + " Its new settings are kept as the planned VLAN " + quoted +
                          ", which can be set up again."),
                 before);
}

bool VLANChanges::remove(const VLANInfo& existing, bool deletePresets) {
    const VLANInfo vlan = existing;
    if (model_.busy() || refused(vlan.name, {})) return false;
    const std::string quoted = text::quoted(vlan.name);
    const QPointer<VLANChanges> alive(this);
    const bool removed = model_.runPrivileged(
        VLAN::deleteCommands(vlan), fromCore("delete the VLAN " + quoted),
        fromCore("Deleted VLAN " + quoted + "."), fromCore("Couldn't delete VLAN " + quoted + "."));
    if (!removed || !alive) return removed;
    emit serviceReplaced(vlan.name);
    model_.setHidden(vlan.name, false);
    if (deletePresets) editor_.deletePresetsOf(vlan.name);
    if (model_.selection() != SidebarItem::service(vlan.name)) return true;
    // Its adapter's service; without one the next reading selects another.
    std::optional<SidebarItem> adapter;
    for (const ServiceInfo& info : model_.services())
        if (!adapter && info.device == vlan.parentDevice) adapter = SidebarItem::service(info.name);
    model_.select(adapter);
    return true;
}

void VLANChanges::addPlan(const PlannedVLAN& newPlan) {
    PlannedVLAN plan = newPlan;
    plan.name = trimmed(plan.name);
    if (!planRefused(plan)) editor_.addPlannedVLAN(plan);
}

void VLANChanges::updatePlan(const PlannedVLAN& newPlan) {
    PlannedVLAN plan = newPlan;
    plan.name = trimmed(plan.name);
    const PlannedVLAN* before = model_.plannedVLAN(plan.id);
    if (!before || planRefused(plan)) return;
    // A service that exists under the old name keeps its presets.
    editor_.updatePlannedVLAN(plan, model_.service(before->name) == nullptr);
}

bool VLANChanges::setUp(const Uuid& planId, const std::string& parentDevice) {
    const Uuid id = planId;
    const PlannedVLAN* found = model_.plannedVLAN(id);
    if (model_.busy() || !found) return false;
    const PlannedVLAN plan = *found;
    const std::string name = trimmed(plan.name), parent = parentDevice;
    const auto message =
        VLAN::validate(name, std::to_string(plan.tag), parent, model_.vlans(), serviceNames());
    if (refusedAt(name, parent, message)) return false;
    const QPointer<VLANChanges> alive(this);
    const bool created = runCreation(name, parent, plan.tag);
    if (created && alive) editor_.setUpPlannedVLAN(id, name);
    return created;
}

} // namespace corvane
