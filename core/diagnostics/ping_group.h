// Hosts to watch, in groups that the user makes.
#pragma once

#include "core/support/json.h"
#include "core/support/uuid.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct PingTarget {
    Uuid id;
    std::string name;
    /// An IPv4 address or a host name, as typed.
    std::string host;
    /// Keys of a newer version, written back as they were read.
    JsonValue::Object unknown;

    /// "id", "name" and "host" are required.
    static std::optional<PingTarget> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const PingTarget&, const PingTarget&) = default;
};

struct PingGroup {
    Uuid id;
    std::string name;
    /// In the order shown.
    std::vector<PingTarget> targets;
    JsonValue::Object unknown;

    /// "id", "name" and "targets" are required.
    static std::optional<PingGroup> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const PingGroup&, const PingGroup&) = default;
};

} // namespace corvane

template <>
struct std::hash<corvane::PingTarget> {
    std::size_t operator()(const corvane::PingTarget& target) const noexcept;
};
