#include "core/support/json_fields.h"

#include <algorithm>

namespace corvane::json {

namespace {

/// Null when the key is missing.
const JsonValue* valueAt(const JsonValue::Object& object, std::string_view key) {
    const auto at = object.find(key);
    return at == object.end() ? nullptr : &at->second;
}

bool convert(const JsonValue& json, std::string& value) {
    const auto* text = json.string();
    if (!text) return false;
    value = *text;
    return true;
}

bool convert(const JsonValue& json, long& value) {
    const auto number = json.integer();
    if (number) value = *number;
    return number.has_value();
}

bool convert(const JsonValue& json, Uuid& value) {
    const auto* text = json.string();
    const auto id = text ? Uuid::parse(*text) : std::nullopt;
    if (id) value = *id;
    return id.has_value();
}

template <typename Value>
bool convert(const JsonValue& json, std::vector<Value>& values) {
    const auto* array = json.array();
    if (!array) return false;
    values.resize(array->size());
    for (std::size_t i = 0; i < array->size(); ++i) {
        if (!convert((*array)[i], values[i])) return false;
    }
    return true;
}

template <typename Value>
bool readRequired(const JsonValue::Object& object, std::string_view key, Value& value) {
    const auto* json = valueAt(object, key);
    return json && convert(*json, value);
}

template <typename Value>
bool readOptional(const JsonValue::Object& object, std::string_view key, std::optional<Value>& value) {
    const auto* json = valueAt(object, key);
    value.reset();
    return !json || json->isNull() || convert(*json, value.emplace());
}

} // namespace

bool read(const JsonValue::Object& object, std::string_view key, std::string& value) {
    return readRequired(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, std::vector<std::string>& value) {
    return readRequired(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, long& value) {
    return readRequired(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, Uuid& value) {
    return readRequired(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, std::vector<Uuid>& value) {
    return readRequired(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, std::optional<std::string>& value) {
    return readOptional(object, key, value);
}

bool read(const JsonValue::Object& object, std::string_view key, std::optional<Uuid>& value) {
    return readOptional(object, key, value);
}

JsonValue::Object without(const JsonValue::Object& object, std::initializer_list<std::string_view> known) {
    JsonValue::Object::Members rest;
    for (const auto& member : object) {
        if (std::find(known.begin(), known.end(), member.first) == known.end()) rest.push_back(member);
    }
    return JsonValue::Object::of(std::move(rest));
}

JsonValue::Object joined(JsonValue::Object::Members known, const JsonValue::Object& unknown) {
    auto object = JsonValue::Object::of(std::move(known));
    for (const auto& [key, value] : unknown) object.emplace(key, value);
    return object;
}

} // namespace corvane::json
