#include "app/views/tools/ping/ping_commands.h"

#include "app/model/app_model.h"
#include "app/views/tools/ping/hosts_sheet.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/tools/ping/ping_sheets.h"
#include "app/views/tools/ping/sweep_sheet.h"
#include "app/views/widgets/display_text.h"

#include <QUndoStack>

#include <algorithm>

namespace corvane {

namespace {

PingTarget made(const std::string& name, const std::string& host) {
    PingTarget target;
    target.id = Uuid::generate();
    target.name = name;
    target.host = host;
    return target;
}

std::vector<PingTarget> currentHosts(const AppModel& model) {
    std::vector<PingTarget> hosts;
    const auto add = [&](const std::string& name, const std::string& host) {
        const bool known = std::any_of(hosts.begin(), hosts.end(),
                                       [&](const PingTarget& each) { return each.host == host; });
        if (!host.empty() && !known) hosts.push_back(made(name, host));
    };
    for (const ServiceInfo& service : model.services()) {
        if (!service.state().isConnected() || !service.config) continue;
        if (service.config->router) add(service.name + " router", *service.config->router);
    }
    for (const ServiceInfo& service : model.services()) {
        if (!service.state().isConnected() || !service.config) continue;
        for (const std::string& server : service.config->dns) add("DNS " + server, server);
    }
    return hosts;
}

} // namespace

PingCommands::PingCommands(AppModel& model, QWidget* window)
    : QObject(window), model_(model), window_(window) {}

const PingGroup* PingCommands::group() const {
    const auto id = model_.activePingGroup();
    return id ? model_.pingGroup(*id) : nullptr;
}

void PingCommands::show(const Uuid& group) {
    model_.setActivePingGroup(group);
    if (!model_.showPing()) model_.select(SidebarItem::tool(Tool::ping));
}

void PingCommands::openSheet(QDialog* sheet) {
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->open();
}

void PingCommands::addGroup(const PingGroup& group) {
    model_.addPingGroup(group);
    show(group.id);
}

void PingCommands::makeGroup(const std::string& name, std::vector<PingTarget> targets) {
    PingGroup group;
    group.id = Uuid::generate();
    group.name = name;
    group.targets = std::move(targets);
    addGroup(group);
}

void PingCommands::add(const Uuid& id, std::vector<PingTarget> targets) {
    const PingGroup* group = model_.pingGroup(id);
    // Deleted, or its making undone, while the sheet stood open.
    if (!group) return makeGroup(tr("New group").toStdString(), std::move(targets));
    const Uuid first = targets.empty() ? Uuid() : targets.front().id;
    model_.addPingTargets(id, targets);
    show(id);
    emit hostMade(first);
}

void PingCommands::newGroup() {
    auto* sheet = new HostsSheet(model_, std::nullopt, window_);
    connect(sheet, &HostsSheet::groupAsked, this, &PingCommands::addGroup);
    connect(sheet, &HostsSheet::hostsAsked, this, &PingCommands::add);
    openSheet(sheet);
}

QString PingCommands::currentRefusal() const {
    return currentHosts(model_).empty() ? tr("No connected service has a router or a DNS server now.")
                                        : QString();
}

void PingCommands::newGroupFromCurrent() {
    auto hosts = currentHosts(model_);
    if (hosts.empty()) return model_.flashError(currentRefusal());
    makeGroup(tr("Routers and DNS").toStdString(), std::move(hosts));
}

void PingCommands::renameGroup() {
    const PingGroup* shown = group();
    if (!shown) return;
    auto* sheet = new GroupNameSheet(model_, *shown, window_);
    connect(sheet, &GroupNameSheet::renamed, &model_, &AppModel::renamePingGroup);
    openSheet(sheet);
}

void PingCommands::duplicateGroup() {
    const PingGroup* shown = group();
    if (!shown) return;
    const Uuid copy = model_.duplicatePingGroup(shown->id);
    if (!copy.isNil()) show(copy);
}

void PingCommands::deleteGroup() {
    const PingGroup* shown = group();
    if (!shown) return;
    const Uuid id = shown->id;
    const QString title = pingGroupTitle(*shown);
    const auto& groups = model_.library().pingGroups;
    const auto at =
        std::find_if(groups.begin(), groups.end(), [&](const auto& each) { return each.id == id; });
    std::optional<Uuid> next;
    if (at + 1 != groups.end())
        next = (at + 1)->id;
    else if (at != groups.begin())
        next = (at - 1)->id;
    model_.deletePingGroup(id);
    if (next) model_.setActivePingGroup(*next);
    model_.flash(tr("Deleted “%1”. Undo brings it back.").arg(title));
}

bool PingCommands::canMoveGroup(int step) const {
    const PingGroup* shown = group();
    const auto& groups = model_.library().pingGroups;
    if (!shown) return false;
    return step < 0 ? shown != &groups.front() : shown != &groups.back();
}

void PingCommands::moveGroup(int step) {
    if (!canMoveGroup(step)) return;
    const auto& groups = model_.library().pingGroups;
    const auto at = group() - groups.data();
    const auto before = static_cast<std::size_t>(step < 0 ? at - 1 : at + 2);
    model_.movePingGroup(Uuid(group()->id),
                         before < groups.size() ? std::optional(groups[before].id) : std::nullopt);
}

void PingCommands::addHosts() {
    const PingGroup* shown = group();
    if (!shown) return newGroup();
    auto* sheet = new HostsSheet(model_, shown->id, window_);
    connect(sheet, &HostsSheet::hostsAsked, this, &PingCommands::add);
    openSheet(sheet);
}

void PingCommands::sweep() {
    const PingGroup* shown = group();
    auto* sheet = new SweepSheet(model_, shown ? std::optional(shown->id) : std::nullopt, window_);
    connect(sheet, &SweepSheet::hostsAsked, this, &PingCommands::add);
    connect(sheet, &SweepSheet::groupAsked, this, &PingCommands::makeGroup);
    openSheet(sheet);
}

void PingCommands::editHost(const Uuid& host) {
    const PingGroup* shown = group();
    if (!shown) return;
    const auto at = std::find_if(shown->targets.begin(), shown->targets.end(),
                                 [&](const PingTarget& each) { return each.id == host; });
    if (at == shown->targets.end()) return;
    auto* sheet = new HostSheet(model_, shown->id, *at, window_);
    connect(sheet, &HostSheet::saved, this, [this](const Uuid& id, const PingTarget& target) {
        const PingGroup* group = model_.pingGroup(id);
        const bool stands = group && std::any_of(group->targets.begin(), group->targets.end(),
                                                 [&](const auto& each) { return each.id == target.id; });
        // It may have been deleted, or its making undone, while the sheet stood open.
        if (stands)
            model_.updatePingTarget(id, target);
        else
            add(id, {target});
    });
    openSheet(sheet);
}

void PingCommands::duplicateHost(const Uuid& host) {
    const PingGroup* shown = group();
    if (!shown) return;
    const Uuid id = shown->id;
    const auto at = std::find_if(shown->targets.begin(), shown->targets.end(),
                                 [&](const PingTarget& each) { return each.id == host; });
    if (at == shown->targets.end()) return;
    PingTarget copy = *at;
    copy.id = Uuid::generate();
    if (!copy.name.empty()) copy.name += " copy";
    const auto next = at + 1 == shown->targets.end() ? std::nullopt : std::optional((at + 1)->id);
    model_.undoStack().beginMacro(tr("Duplicate Host %1").arg(inQuotes(pingTargetTitle(*at).toStdString())));
    model_.addPingTargets(id, {copy});
    if (next) model_.movePingTarget(id, copy.id, next);
    model_.undoStack().endMacro();
    emit hostMade(copy.id);
}

void PingCommands::deleteHost(const Uuid& host) {
    const PingGroup* shown = group();
    if (!shown) return;
    const auto at = std::find_if(shown->targets.begin(), shown->targets.end(),
                                 [&](const PingTarget& each) { return each.id == host; });
    if (at == shown->targets.end()) return;
    const QString title = pingTargetTitle(*at);
    model_.deletePingTarget(Uuid(shown->id), host);
    model_.flash(tr("Deleted “%1”. Undo brings it back.").arg(title));
}

} // namespace corvane
