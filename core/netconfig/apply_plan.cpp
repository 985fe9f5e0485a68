#include "core/netconfig/apply_plan.h"

#include "core/netconfig/service_order.h"

namespace corvane {

namespace {

std::string describeTarget(const std::vector<NetworkPreset>& presets) {
    if (presets.empty()) return "the service order";
    if (presets.size() == 1) return presets.front().service;
    return std::to_string(presets.size()) + " interfaces";
}

} // namespace

ApplyPlan::ApplyPlan(std::string planTitle, std::vector<NetworkPreset> planPresets,
                     std::optional<std::vector<std::string>> order)
    : title(std::move(planTitle)), target(describeTarget(planPresets)), presets(std::move(planPresets)),
      serviceOrder(std::move(order)) {}

std::vector<NetworkSetup::Command> ApplyPlan::commands() const {
    std::vector<NetworkSetup::Command> all;
    for (const auto& preset : presets) {
        for (auto& command : NetworkSetup::commands(preset)) all.push_back(std::move(command));
    }
    if (serviceOrder) all.push_back(ServiceOrder::command(*serviceOrder));
    return all;
}

std::vector<std::string> ApplyPlan::errors() const {
    if (presets.empty()) {
        if (serviceOrder) return {};
        return {"Choose at least one interface preset."};
    }
    std::vector<std::string> messages;
    for (const auto& preset : presets) {
        const std::string prefix = presets.size() > 1 ? preset.service + ": " : "";
        for (const auto& message : preset.errors()) messages.push_back(prefix + message);
    }
    return messages;
}

} // namespace corvane
