// What the sidebar shows, as plain rows drawn from the model's state.
#pragma once

#include "app/model/sidebar_item.h"
#include "core/netconfig/link_state.h"

#include <QString>

#include <optional>
#include <vector>

namespace corvane {

class AppModel;

struct SidebarRow {
    enum class Sign { none, state, globalPreset, vlan, order, missing, tool };
    /// What Enter does where there is nothing to select.
    enum class Act { none, newGlobal };

    QString key;
    QString title, detail;
    /// "Ethernet, Connected, 10.0.0.5".
    QString accessible;
    QString toolTip;
    Sign sign = Sign::none;
    LinkState::Kind state = LinkState::Kind::disabled;
    /// The tool whose sign stands in front.
    std::optional<Tool> tool;
    /// In force now: a global preset whose members all are.
    bool active = false;
    /// Carries the default route.
    bool internet = false;
    std::optional<SidebarItem> item;
    Act act = Act::none;

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

struct SidebarGroup {
    /// In the order shown; the value is the group's lasting identity.
    enum class Id { services, globals, plannedVLANs, tools, missing, hidden };
    Id key = Id::services;
    QString title;
    std::vector<SidebarRow> rows;

    /// The group's name among the model's expanded groups.
    static QString name(Id id);
    friend bool operator==(const SidebarGroup&, const SidebarGroup&) = default;
};

std::vector<SidebarRow> toolRows(AppModel& model);
/// Groups without rows are left out, but for the services, the global presets and the tools.
std::vector<SidebarGroup> sidebarGroups(AppModel& model);

} // namespace corvane
