#include "core/netconfig/preset_library.h"

#include <unordered_map>

namespace corvane {

namespace {

using IdMap = std::unordered_map<Uuid, Uuid>;

Uuid mapped(const IdMap& ids, const Uuid& id) {
    const auto at = ids.find(id);
    return at == ids.end() ? id : at->second;
}

/// Adds the records that `mine` doesn't hold. Says under which id each of the other library's ids now stands;
/// of several records with one id the first is the one that references mean.
template <typename Record>
IdMap addRecords(std::vector<Record>& mine, std::vector<Record> others) {
    std::unordered_map<Uuid, std::size_t> known;
    for (std::size_t i = 0; i < mine.size(); ++i) known.emplace(mine[i].id, i);
    IdMap ids;
    for (auto& record : others) {
        const Uuid id = record.id;
        const auto [at, isNew] = known.emplace(id, mine.size());
        if (!isNew && mine[at->second] == record) {
            ids.emplace(id, id);
            continue;
        }
        if (!isNew) record.id = Uuid::generate();
        ids.emplace(id, record.id);
        mine.push_back(std::move(record));
    }
    return ids;
}

/// The text under "id", or null.
const std::string* idText(const JsonValue& element) {
    const auto* object = element.object();
    if (!object) return nullptr;
    const auto at = object->find("id");
    return at == object->end() ? nullptr : at->second.string();
}

/// What tells one element from another: its id, in one spelling for each UUID, or else all of it.
std::string identity(const JsonValue& element) {
    const auto* text = idText(element);
    if (!text) return "value " + element.prettyPrinted();
    const auto id = Uuid::parse(*text);
    return "id " + (id ? id->text() : *text);
}

void addOpaque(JsonValue::Array& mine, JsonValue::Array others) {
    std::unordered_map<std::string, std::size_t> known;
    for (std::size_t i = 0; i < mine.size(); ++i) known.emplace(identity(mine[i]), i);
    for (auto& element : others) {
        const auto [at, isNew] = known.emplace(identity(element), mine.size());
        const bool named = idText(element) != nullptr;
        if (!isNew && (!named || mine[at->second] == element)) continue;
        if (!isNew) (*element.object())["id"] = Uuid::generate().text();
        mine.push_back(std::move(element));
    }
}

} // namespace

PresetLibrary PresetLibrary::merging(const PresetLibrary& other) const {
    PresetLibrary merged = *this;
    const IdMap presetIds = addRecords(merged.presets, other.presets);
    const IdMap pingGroupIds = addRecords(merged.pingGroups, other.pingGroups);
    addRecords(merged.plannedVLANs, other.plannedVLANs);
    addOpaque(merged.consoleDevices, other.consoleDevices);

    auto imported = other.globals;
    for (auto& global : imported) {
        for (auto& member : global.members) member = mapped(presetIds, member);
        if (global.pingGroup) global.pingGroup = mapped(pingGroupIds, *global.pingGroup);
    }
    addRecords(merged.globals, std::move(imported));

    for (const auto& [key, value] : other.unknown) merged.unknown.emplace(key, value);
    return merged;
}

} // namespace corvane
