// What a VLAN is on the machine at this moment, asked of the tools. Everything here blocks.
#pragma once

#include "core/netconfig/current_config.h"
#include "core/netconfig/static_route.h"
#include "core/netconfig/vlan_info.h"
#include "platform/shell.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A VLAN's service as it has to be put back after a re-creation.
struct VLANSettings {
    CurrentConfig config;
    std::vector<StaticRoute> routes;

    struct Reading;
    static Reading read(const Shell& shell, const std::string& service);
    /// "IP settings before the change: 10.9.0.5/24 · DNS 10.9.0.2.", and the routes.
    std::string description(const std::string& service) const;
};

struct VLANSettings::Reading {
    std::optional<VLANSettings> settings;
    /// Why there are none that could be put back, a sentence.
    std::string refusal;
};

/// What is left of a VLAN after a change of it failed.
enum class VLANRemains { oldVLAN, newVLAN, nothing, unknown };

/// The tools are asked again while they have no answer.
VLANRemains lookForVLAN(const Shell& shell, const VLANInfo& old, const std::string& name,
                        const std::string& parent, long tag);

} // namespace corvane
