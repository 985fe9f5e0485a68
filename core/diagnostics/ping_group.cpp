#include "core/diagnostics/ping_group.h"

#include "core/support/json_fields.h"

namespace corvane {

std::optional<PingTarget> PingTarget::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    PingTarget target;
    const bool complete = json::read(*object, "id", target.id) && json::read(*object, "name", target.name) &&
                          json::read(*object, "host", target.host);
    if (!complete) return std::nullopt;
    target.unknown = json::without(*object, {"id", "name", "host"});
    return target;
}

JsonValue PingTarget::toJson() const {
    return json::joined({{"host", host}, {"id", id.text()}, {"name", name}}, unknown);
}

std::optional<PingGroup> PingGroup::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    PingGroup group;
    if (!json::read(*object, "id", group.id) || !json::read(*object, "name", group.name)) return std::nullopt;
    const auto listed = object->find("targets");
    const auto* list = listed == object->end() ? nullptr : listed->second.array();
    if (!list) return std::nullopt;
    group.targets.reserve(list->size());
    for (const auto& element : *list) {
        auto target = PingTarget::fromJson(element);
        if (!target) return std::nullopt;
        group.targets.push_back(std::move(*target));
    }
    group.unknown = json::without(*object, {"id", "name", "targets"});
    return group;
}

JsonValue PingGroup::toJson() const {
    JsonValue::Array list;
    list.reserve(targets.size());
    for (const auto& target : targets) list.push_back(target.toJson());
    return json::joined({{"id", id.text()}, {"name", name}, {"targets", std::move(list)}}, unknown);
}

} // namespace corvane

std::size_t std::hash<corvane::PingTarget>::operator()(const corvane::PingTarget& target) const noexcept {
    // The id tells targets apart; equal targets have equal ids.
    return std::hash<corvane::Uuid>()(target.id);
}
