// One network service of the machine.
#pragma once

#include "core/netconfig/current_config.h"
#include "core/netconfig/ifconfig_info.h"
#include "core/netconfig/link_state.h"

#include <optional>
#include <string>

namespace corvane {

struct ServiceInfo {
    /// Exactly as the network-setup tool prints it.
    std::string name;
    bool enabled = true;
    /// The BSD device, e.g. "en5".
    std::optional<std::string> device;
    std::optional<std::string> hardwarePort;
    /// Only for enabled services.
    std::optional<CurrentConfig> config;
    /// Only for services with a device.
    std::optional<IfconfigInfo> hardware;

    std::optional<bool> linkActive() const;
    LinkState state() const;

    friend bool operator==(const ServiceInfo&, const ServiceInfo&) = default;
};

} // namespace corvane
