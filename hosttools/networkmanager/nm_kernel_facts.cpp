// What the engine takes from the kernel.
#include "core/netconfig/ipv4.h"
#include "hosttools/networkmanager/echo.h"
#include "hosttools/networkmanager/kernel.h"
#include "hosttools/networkmanager/nm_engine.h"

namespace corvane::networkmanager {

using hosttools::Failure;

std::optional<hosttools::Interface> NmEngine::interface(const std::string& device) {
    return kernel::interface(device);
}

Failure NmEngine::addAlias(const std::string& device, const std::string& ip, const std::string& mask) {
    const auto error =
        kernel::addAddress(device, IPv4::parse(ip).value_or(0), IPv4::prefixLength(mask).value_or(24));
    return error ? "ifconfig: ioctl (SIOCAIFADDR): " + *error : Failure();
}

Failure NmEngine::removeAlias(const std::string& device, const std::string& ip) {
    const auto error = kernel::removeAddress(device, IPv4::parse(ip).value_or(0));
    return error ? "ifconfig: ioctl (SIOCDIFADDR): " + *error : Failure();
}

std::optional<hosttools::DefaultRoute> NmEngine::defaultRoute() {
    const auto routes = kernel::defaultRoutes();
    return routes.empty() ? std::nullopt : std::optional(routes.front().route);
}

hosttools::PingReply NmEngine::ping(const std::string& host, int waitMs,
                                    const std::optional<std::string>& device) {
    return EchoPinger().ping(host, waitMs, device);
}

} // namespace corvane::networkmanager
