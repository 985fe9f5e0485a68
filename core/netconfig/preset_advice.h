// Advice on a preset that looks at the whole machine; none of it blocks applying.
#pragma once

#include "core/netconfig/network_preset.h"
#include "core/netconfig/service_info.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane::PresetAdvice {

/// For a manual preset whose address is already on another of the machine's adapters:
/// "192.168.1.20 is already on USB LAN (en7).".
std::optional<std::string> addressInUse(const NetworkPreset& preset,
                                        const std::vector<ServiceInfo>& services);

} // namespace corvane::PresetAdvice
