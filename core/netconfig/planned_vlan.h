// A VLAN that the user has described and that hasn't been created on the machine yet.
#pragma once

#include "core/support/json.h"
#include "core/support/uuid.h"

#include <optional>
#include <string>

namespace corvane {

struct PlannedVLAN {
    Uuid id;
    std::string name;
    /// IEEE 802.1Q tag, 1...4094 once it is created.
    long tag = 0;
    /// Absent until the user picks an adapter.
    std::optional<std::string> parentDevice;
    /// Keys of a newer version, written back as they were read.
    JsonValue::Object unknown;

    static std::optional<PlannedVLAN> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const PlannedVLAN&, const PlannedVLAN&) = default;
};

} // namespace corvane
