#include "core/netconfig/planned_vlan.h"

#include "core/support/json_fields.h"

namespace corvane {

std::optional<PlannedVLAN> PlannedVLAN::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    PlannedVLAN vlan;
    const bool complete = json::read(*object, "id", vlan.id) && json::read(*object, "name", vlan.name) &&
                          json::read(*object, "tag", vlan.tag) &&
                          json::read(*object, "parentDevice", vlan.parentDevice);
    if (!complete) return std::nullopt;
    vlan.unknown = json::without(*object, {"id", "name", "tag", "parentDevice"});
    return vlan;
}

JsonValue PlannedVLAN::toJson() const {
    JsonValue::Object::Members known = {{"id", id.text()}, {"name", name}, {"tag", tag}};
    if (parentDevice) known.emplace_back("parentDevice", *parentDevice);
    return json::joined(std::move(known), unknown);
}

} // namespace corvane
