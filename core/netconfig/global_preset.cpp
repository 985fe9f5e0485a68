#include "core/netconfig/global_preset.h"

#include "core/support/json_fields.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace corvane {

namespace {

/// The first preset of each id.
std::unordered_map<Uuid, const NetworkPreset*> byId(const std::vector<NetworkPreset>& presets) {
    std::unordered_map<Uuid, const NetworkPreset*> found;
    found.reserve(presets.size());
    for (const auto& preset : presets) found.emplace(preset.id, &preset);
    return found;
}

} // namespace

std::vector<NetworkPreset> GlobalPreset::resolve(const std::vector<NetworkPreset>& presets) const {
    const auto known = byId(presets);
    std::vector<NetworkPreset> resolved;
    std::unordered_set<std::string_view> services;
    for (const auto& memberId : members) {
        const auto at = known.find(memberId);
        if (at != known.end() && services.insert(at->second->service).second) resolved.push_back(*at->second);
    }
    return resolved;
}

std::optional<NetworkPreset> GlobalPreset::member(const std::string& service,
                                                  const std::vector<NetworkPreset>& presets) const {
    for (auto& preset : resolve(presets)) {
        if (preset.service == service) return std::move(preset);
    }
    return std::nullopt;
}

void GlobalPreset::setMember(const std::string& service, const std::optional<Uuid>& preset,
                             const std::vector<NetworkPreset>& presets) {
    const auto known = byId(presets);
    std::erase_if(members, [&](const Uuid& memberId) {
        const auto at = known.find(memberId);
        return at != known.end() && at->second->service == service;
    });
    if (preset) members.push_back(*preset);
}

std::optional<GlobalPreset> GlobalPreset::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    GlobalPreset global;
    const bool complete = json::read(*object, "id", global.id) && json::read(*object, "name", global.name) &&
                          json::read(*object, "members", global.members) &&
                          json::read(*object, "pingGroup", global.pingGroup) &&
                          json::read(*object, "internetService", global.internetService);
    if (!complete) return std::nullopt;
    global.unknown = json::without(*object, {"id", "name", "members", "pingGroup", "internetService"});
    return global;
}

JsonValue GlobalPreset::toJson() const {
    JsonValue::Array ids;
    for (const auto& member : members) ids.emplace_back(member.text());
    JsonValue::Object::Members known = {{"id", id.text()}, {"members", std::move(ids)}, {"name", name}};
    if (pingGroup) known.emplace_back("pingGroup", pingGroup->text());
    if (internetService) known.emplace_back("internetService", *internetService);
    return json::joined(std::move(known), unknown);
}

} // namespace corvane
