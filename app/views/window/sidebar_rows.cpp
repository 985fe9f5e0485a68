#include "app/views/window/sidebar_rows.h"

#include "app/model/app_model.h"
#include "app/views/tools/tool_presentation.h"
#include "app/views/widgets/display_text.h"
#include "core/support/text.h"

#include <map>
#include <set>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

/// The first active preset of each service.
std::map<std::string, QString> activeNames(const AppModel& model) {
    std::map<std::string, QString> names;
    for (const auto& preset : model.library().presets) {
        if (!names.contains(preset.service) && model.isActive(preset)) {
            names.emplace(preset.service, oneLine(preset.name));
        }
    }
    return names;
}

SidebarRow serviceRow(const ServiceInfo& service, const std::map<std::string, QString>& active,
                      const std::optional<std::string>& carrier) {
    const LinkState state = service.state();
    const QString title = qs(state.title()), address = qs(state.address());
    SidebarRow row;
    row.item = SidebarItem::service(service.name);
    row.key = row.item->identity();
    row.title = oneLine(service.name);
    row.sign = SidebarRow::Sign::state;
    row.state = state.kind();
    row.detail = state.isConnected() ? address : title;
    row.internet = service.name == carrier;
    QStringList spoken{row.title, title};
    if (!address.isEmpty()) spoken << address;
    QStringList tip{title};
    if (!address.isEmpty()) tip.first() += u" · "_s + address;
    if (const auto name = active.find(service.name); name != active.end()) {
        row.detail += u" · "_s + name->second;
        spoken << u"preset %1 active"_s.arg(name->second);
        tip << u"Preset “%1” is active."_s.arg(name->second);
    }
    if (row.internet) {
        spoken << u"carries internet"_s;
        tip << u"Carries internet."_s;
    }
    row.accessible = spoken.join(u", "_s);
    row.toolTip = tip.join(u'\n');
    return row;
}

SidebarRow globalRow(const AppModel& model, const GlobalPreset& global) {
    const auto count = global.resolve(model.library().presets).size();
    SidebarRow row;
    row.item = SidebarItem::global(global.id);
    row.key = row.item->identity();
    row.title = oneLine(global.name);
    row.sign = SidebarRow::Sign::globalPreset;
    row.active = model.isActive(global);
    row.detail = count == 0 ? u"Nothing chosen yet"_s : qs(text::counted(count, "service"));
    if (row.active) row.detail = u"Active · "_s + row.detail;
    row.accessible = row.title + u", global preset, "_s + row.detail;
    row.toolTip = row.title;
    return row;
}

SidebarRow vlanRow(const PlannedVLAN& vlan) {
    SidebarRow row;
    row.item = SidebarItem::plannedVLAN(vlan.id);
    row.key = row.item->identity();
    row.title = oneLine(vlan.name);
    row.sign = SidebarRow::Sign::vlan;
    row.detail = u"VLAN %1"_s.arg(vlan.tag);
    if (vlan.parentDevice) row.detail += u" · "_s + oneLine(*vlan.parentDevice);
    row.accessible = row.title + u", planned "_s + row.detail;
    row.toolTip = u"Planned, not created yet."_s;
    return row;
}

SidebarRow orderRow(const AppModel& model) {
    SidebarRow row;
    row.item = SidebarItem::serviceOrder();
    row.key = row.item->identity();
    row.title = u"Service Order"_s;
    row.sign = SidebarRow::Sign::order;
    row.detail = u"%1 is first"_s.arg(oneLine(model.serviceOrder().front()));
    row.accessible = row.title + u", "_s + row.detail;
    row.toolTip = u"Which service carries internet"_s;
    return row;
}

/// Services that presets name and this machine doesn't have, for instance after an import from another one.
std::vector<SidebarRow> absentRows(const AppModel& model) {
    std::set<std::string> here;
    for (const auto& service : model.services()) here.insert(service.name);
    for (const auto& vlan : model.library().plannedVLANs) here.insert(vlan.name);
    std::map<std::string, std::size_t> counts;
    for (const auto& preset : model.library().presets) {
        const bool remote = preset.service.starts_with("win:");
        if (!preset.service.empty() && !remote && !here.contains(preset.service)) ++counts[preset.service];
    }
    std::vector<SidebarRow> rows;
    for (const auto& [name, count] : counts) {
        SidebarRow row;
        row.item = SidebarItem::service(name);
        row.key = row.item->identity();
        row.title = oneLine(name);
        row.sign = SidebarRow::Sign::missing;
        row.detail = qs(text::counted(count, "preset"));
        row.accessible = row.title + u", not on this computer, "_s + row.detail;
        row.toolTip = u"This computer has no network service of this name."_s;
        rows.push_back(std::move(row));
    }
    return rows;
}

SidebarRow firstGlobalRow() {
    SidebarRow row;
    row.key = u"new-global"_s;
    row.title = u"New Global Preset…"_s;
    row.detail = u"Switches several services at once"_s;
    row.accessible = row.title + u" "_s + row.detail;
    row.act = SidebarRow::Act::newGlobal;
    return row;
}

} // namespace

QString SidebarGroup::name(Id id) {
    switch (id) {
    case Id::services:
        return u"services"_s;
    case Id::globals:
        return u"globals"_s;
    case Id::plannedVLANs:
        return u"plannedVLANs"_s;
    case Id::tools:
        return u"tools"_s;
    case Id::missing:
        return u"missing"_s;
    case Id::hidden:
        return u"hidden"_s;
    }
    return {};
}

std::vector<SidebarRow> toolRows(AppModel& model) {
    std::vector<SidebarRow> rows;
    for (const Tool tool : allTools) {
        SidebarRow row;
        row.item = SidebarItem::tool(tool);
        row.key = row.item->identity();
        row.title = toolTitle(tool);
        row.sign = SidebarRow::Sign::tool;
        row.tool = tool;
        row.detail = toolDetail(model, tool);
        row.accessible = row.title + u", "_s + row.detail;
        row.toolTip = row.detail;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SidebarGroup> sidebarGroups(AppModel& model) {
    SidebarGroup services{SidebarGroup::Id::services, u"Network Services"_s, {}};
    SidebarGroup globals{SidebarGroup::Id::globals, u"Global Presets"_s, {}};
    SidebarGroup vlans{SidebarGroup::Id::plannedVLANs, u"Planned VLANs"_s, {}};
    SidebarGroup tools{SidebarGroup::Id::tools, u"Tools"_s, toolRows(model)};
    SidebarGroup missing{SidebarGroup::Id::missing, u"Not on This Computer"_s, {}};
    SidebarGroup hidden{SidebarGroup::Id::hidden, u"Hidden Services"_s, {}};

    const auto active = activeNames(model);
    const auto carrier = model.internetService();
    std::set<QString> seen;
    const auto add = [&seen](SidebarGroup& group, SidebarRow row) {
        if (seen.insert(row.key).second) group.rows.push_back(std::move(row));
    };
    for (const auto& service : model.visibleServices()) {
        add(services, serviceRow(service, active, carrier));
    }
    if (!model.serviceOrder().empty()) add(services, orderRow(model));
    for (const auto& service : model.services()) {
        if (model.isHidden(service.name)) add(hidden, serviceRow(service, active, carrier));
    }
    for (const auto& global : model.library().globals) add(globals, globalRow(model, global));
    if (globals.rows.empty()) add(globals, firstGlobalRow());
    for (const auto& vlan : model.library().plannedVLANs) add(vlans, vlanRow(vlan));
    // Before the first reading every service would seem to be missing.
    if (model.lastRefresh().isValid()) {
        for (auto& row : absentRows(model)) add(missing, std::move(row));
    }

    std::vector<SidebarGroup> groups{std::move(services), std::move(globals)};
    for (auto* group : {&vlans, &tools, &missing, &hidden}) {
        if (!group->rows.empty()) groups.push_back(std::move(*group));
    }
    return groups;
}

} // namespace corvane
