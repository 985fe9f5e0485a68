#include "core/netconfig/preset_advice.h"

#include "core/netconfig/ipv4.h"

#include <algorithm>

namespace corvane::PresetAdvice {

namespace {

bool holds(const ServiceInfo& service, std::uint32_t address) {
    const auto same = [&](const std::string& text) { return IPv4::parse(text) == address; };
    if (service.hardware) {
        return std::any_of(service.hardware->addresses.begin(), service.hardware->addresses.end(), same);
    }
    return service.config && service.config->ip && same(*service.config->ip);
}

} // namespace

std::optional<std::string> addressInUse(const NetworkPreset& preset,
                                        const std::vector<ServiceInfo>& services) {
    const auto address = IPv4::parse(preset.ip);
    if (preset.mode != NetworkPreset::Mode::manual || !address) return std::nullopt;
    const auto own = std::find_if(services.begin(), services.end(),
                                  [&](const ServiceInfo& service) { return service.name == preset.service; });
    for (const auto& service : services) {
        const bool sameAdapter = service.name == preset.service ||
                                 (own != services.end() && own->device && own->device == service.device);
        if (sameAdapter || !service.enabled || !holds(service, *address)) continue;
        const std::string device = service.device ? " (" + *service.device + ")" : "";
        return IPv4::format(*address) + " is already on " + service.name + device + ".";
    }
    return std::nullopt;
}

} // namespace corvane::PresetAdvice
