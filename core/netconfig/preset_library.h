// The one document that the program keeps: presets and everything saved beside them.
#pragma once

#include "core/diagnostics/ping_group.h"
#include "core/netconfig/global_preset.h"
#include "core/netconfig/network_preset.h"
#include "core/netconfig/planned_vlan.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct PresetLibrary {
    std::vector<NetworkPreset> presets;
    std::vector<GlobalPreset> globals;
    std::vector<PingGroup> pingGroups;
    std::vector<PlannedVLAN> plannedVLANs;
    /// Kept as they stand in the file until the program knows their records.
    JsonValue::Array consoleDevices;
    /// Top-level keys of a newer version.
    JsonValue::Object unknown;

    /// The library, or an English sentence saying why the data is none.
    struct DecodeResult;
    /// An object with the key "presets" (the other four may be missing), or else a bare array of presets, the
    /// format of early versions. When neither fits, the first attempt's failure is reported.
    static DecodeResult decode(std::string_view data);
    /// Pretty-printed JSON with sorted keys.
    std::string encoded() const;

    /// This library with everything of `other` that it doesn't hold yet. What is equal under the same id is
    /// left out; what differs under the same id comes in under a new one, references to it included.
    PresetLibrary merging(const PresetLibrary& other) const;

    friend bool operator==(const PresetLibrary&, const PresetLibrary&) = default;
};

struct PresetLibrary::DecodeResult {
    std::optional<PresetLibrary> library;
    std::string error;
};

} // namespace corvane
