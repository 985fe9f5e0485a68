// What can be selected in the sidebar.
#pragma once

#include "app/model/tool.h"
#include "core/support/uuid.h"

#include <QString>

namespace corvane {

class SidebarItem {
  public:
    enum class Kind { service, global, plannedVLAN, serviceOrder, tool };
    static SidebarItem service(const std::string& name) {
        return {Kind::service, QString::fromStdString(name)};
    }
    static SidebarItem global(const Uuid& id) { return {Kind::global, QString::fromStdString(id.text())}; }
    static SidebarItem plannedVLAN(const Uuid& id) {
        return {Kind::plannedVLAN, QString::fromStdString(id.text())};
    }
    static SidebarItem serviceOrder() { return {Kind::serviceOrder, {}}; }
    static SidebarItem tool(Tool tool) { return {Kind::tool, toolKey(tool)}; }

    Kind kind() const { return kind_; }
    /// The service's name, the text of the record's id, or the tool's; empty for the service order.
    const QString& key() const { return key_; }
    /// Unique over all kinds; a planned VLAN's is "planned-" and its id, so it never meets a service's name.
    QString identity() const;

    friend bool operator==(const SidebarItem&, const SidebarItem&) = default;

  private:
    SidebarItem(Kind kind, QString key) : kind_(kind), key_(std::move(key)) {}
    Kind kind_;
    QString key_;
};

} // namespace corvane
