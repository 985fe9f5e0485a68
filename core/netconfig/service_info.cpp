#include "core/netconfig/service_info.h"

namespace corvane {

std::optional<bool> ServiceInfo::linkActive() const {
    return hardware ? hardware->linkActive : std::nullopt;
}

LinkState ServiceInfo::state() const {
    return LinkState::evaluate(enabled, device.has_value(), hardware, config ? config->ip : std::nullopt);
}

} // namespace corvane
