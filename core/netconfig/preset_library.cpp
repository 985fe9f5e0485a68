#include "core/netconfig/preset_library.h"

#include "core/support/json_fields.h"
#include "core/support/text.h"

namespace corvane {

namespace {

constexpr const char* presetsKey = "presets";
constexpr const char* globalsKey = "globals";
constexpr const char* pingGroupsKey = "pingGroups";
constexpr const char* plannedVLANsKey = "plannedVLANs";
constexpr const char* consoleDevicesKey = "consoleDevices";

/// The list under a key; null when the key is missing or null. `error` is set when it holds something else.
const JsonValue::Array* listAt(const JsonValue::Object& object, std::string_view key, std::string& error) {
    const auto at = object.find(key);
    if (at == object.end() || at->second.isNull()) return nullptr;
    const auto* list = at->second.array();
    if (!list) error = "The file's key " + text::quoted(key) + " doesn't hold a list.";
    return list;
}

/// False, with a sentence, when the key holds no list or an element isn't a whole record.
template <typename Record>
bool readRecords(const JsonValue::Array& list, std::string_view key, std::vector<Record>& records,
                 std::string& error) {
    records.reserve(list.size());
    for (const auto& element : list) {
        auto record = Record::fromJson(element);
        if (!record) {
            error = "Entry " + std::to_string(records.size() + 1) + " of the file's key " +
                    text::quoted(key) + " is incomplete or broken.";
            return false;
        }
        records.push_back(std::move(*record));
    }
    return true;
}

template <typename Record>
bool readRecordsAt(const JsonValue::Object& object, std::string_view key, std::vector<Record>& records,
                   std::string& error) {
    const auto* list = listAt(object, key, error);
    return list ? readRecords(*list, key, records, error) : error.empty();
}

bool readOpaqueAt(const JsonValue::Object& object, std::string_view key, JsonValue::Array& elements,
                  std::string& error) {
    if (const auto* list = listAt(object, key, error)) elements = *list;
    return error.empty();
}

PresetLibrary::DecodeResult decodeObject(const JsonValue::Object& object) {
    PresetLibrary library;
    std::string error;
    const auto presetsAt = object.find(presetsKey);
    if (presetsAt == object.end() || presetsAt->second.isNull()) {
        return {std::nullopt,
                "The file isn't a preset library: the key " + text::quoted(presetsKey) + " is missing."};
    }
    const bool complete = readRecordsAt(object, presetsKey, library.presets, error) &&
                          readRecordsAt(object, globalsKey, library.globals, error) &&
                          readRecordsAt(object, pingGroupsKey, library.pingGroups, error) &&
                          readRecordsAt(object, plannedVLANsKey, library.plannedVLANs, error) &&
                          readOpaqueAt(object, consoleDevicesKey, library.consoleDevices, error);
    if (!complete) return {std::nullopt, std::move(error)};
    library.unknown =
        json::without(object, {presetsKey, globalsKey, pingGroupsKey, plannedVLANsKey, consoleDevicesKey});
    return {std::move(library), {}};
}

template <typename Record>
JsonValue::Array toArray(const std::vector<Record>& records) {
    JsonValue::Array array;
    array.reserve(records.size());
    for (const auto& record : records) array.push_back(record.toJson());
    return array;
}

} // namespace

PresetLibrary::DecodeResult PresetLibrary::decode(std::string_view data) {
    const auto document = JsonValue::parse(data);
    if (!document.value) return {std::nullopt, document.error};
    if (const auto* object = document.value->object()) return decodeObject(*object);
    if (const auto* array = document.value->array()) {
        PresetLibrary library;
        std::string error;
        if (readRecords(*array, presetsKey, library.presets, error)) return {std::move(library), {}};
    }
    return {std::nullopt, "The file isn't a preset library."};
}

std::string PresetLibrary::encoded() const {
    JsonValue::Object::Members known;
    known.reserve(5);
    known.emplace_back(consoleDevicesKey, consoleDevices);
    known.emplace_back(globalsKey, toArray(globals));
    known.emplace_back(pingGroupsKey, toArray(pingGroups));
    known.emplace_back(plannedVLANsKey, toArray(plannedVLANs));
    known.emplace_back(presetsKey, toArray(presets));
    return JsonValue(json::joined(std::move(known), unknown)).prettyPrinted();
}

} // namespace corvane
