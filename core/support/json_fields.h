// Reading a record out of a JSON object: each reader gives false when the key doesn't hold what the record
// needs.
#pragma once

#include "core/support/json.h"
#include "core/support/uuid.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::json {

bool read(const JsonValue::Object& object, std::string_view key, std::string& value);
bool read(const JsonValue::Object& object, std::string_view key, std::vector<std::string>& value);
bool read(const JsonValue::Object& object, std::string_view key, long& value);
bool read(const JsonValue::Object& object, std::string_view key, Uuid& value);
bool read(const JsonValue::Object& object, std::string_view key, std::vector<Uuid>& value);
/// Absent when the key is missing or null; false only when it holds something of another kind.
bool read(const JsonValue::Object& object, std::string_view key, std::optional<std::string>& value);
bool read(const JsonValue::Object& object, std::string_view key, std::optional<Uuid>& value);

/// The members whose keys aren't among `known`: what a newer version has added.
JsonValue::Object without(const JsonValue::Object& object, std::initializer_list<std::string_view> known);
/// The known members and those unknown ones that don't hide any of them.
JsonValue::Object joined(JsonValue::Object::Members known, const JsonValue::Object& unknown);

} // namespace corvane::json
