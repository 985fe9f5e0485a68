// A preset that switches several services at once, one preset a service.
#pragma once

#include "core/netconfig/network_preset.h"

namespace corvane {

struct GlobalPreset {
    Uuid id;
    std::string name;
    /// Preset ids, in the order in which they are applied.
    std::vector<Uuid> members;
    /// The ping group to start when applied.
    std::optional<Uuid> pingGroup;
    /// The service to move to the top of the service order when applied.
    std::optional<std::string> internetService;
    /// Keys of a newer version, written back as they were read.
    JsonValue::Object unknown;

    /// The presets applied, in member order: ids that no longer exist are skipped, and of several presets
    /// of one service only the first is kept.
    std::vector<NetworkPreset> resolve(const std::vector<NetworkPreset>& presets) const;
    std::optional<NetworkPreset> member(const std::string& service,
                                        const std::vector<NetworkPreset>& presets) const;
    /// Removes every member of that service, then appends `preset` if given.
    void setMember(const std::string& service, const std::optional<Uuid>& preset,
                   const std::vector<NetworkPreset>& presets);

    /// "id", "name" and "members" are required.
    static std::optional<GlobalPreset> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const GlobalPreset&, const GlobalPreset&) = default;
};

} // namespace corvane
