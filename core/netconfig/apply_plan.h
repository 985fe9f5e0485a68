// A checked plan of commands that applies presets, and a new service order, in one privileged run.
#pragma once

#include "core/netconfig/network_preset.h"
#include "core/netconfig/network_setup.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct ApplyPlan {
    /// The name shown in messages.
    std::string title;
    /// What the plan changes, in words.
    std::string target;
    /// In the order in which they are applied.
    std::vector<NetworkPreset> presets;
    /// When present the plan also sets the service order, after all addressing.
    std::optional<std::vector<std::string>> serviceOrder;

    ApplyPlan(std::string title, std::vector<NetworkPreset> presets,
              std::optional<std::vector<std::string>> serviceOrder = std::nullopt);

    std::vector<NetworkSetup::Command> commands() const;
    /// Empty when the plan may run.
    std::vector<std::string> errors() const;

    friend bool operator==(const ApplyPlan&, const ApplyPlan&) = default;
};

} // namespace corvane
