// The Linux kernel's view of the interfaces: getifaddrs(3), netdevice(7), ethtool, rtnetlink(7) and
// /proc/net/route.
#pragma once

#include "hosttools/engine.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane::networkmanager::kernel {

bool exists(const std::string& device);
bool hasAddress(const std::string& device, const std::string& ip);
/// In the terms of the BSDs: their flag bits and media words.
std::optional<hosttools::Interface> interface(const std::string& device);
struct MetricRoute {
    hosttools::DefaultRoute route;
    unsigned long metric = 0;
};
/// The IPv4 default routes that are up, the one in use (with the lowest metric) first.
std::vector<MetricRoute> defaultRoutes();

/// The reason when it failed. An address that is there already counts as added.
std::optional<std::string> addAddress(const std::string& device, std::uint32_t ip, int prefix);
std::optional<std::string> removeAddress(const std::string& device, std::uint32_t ip);

} // namespace corvane::networkmanager::kernel
