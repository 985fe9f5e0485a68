#include "core/netconfig/service_order.h"

#include "core/support/text.h"

#include <algorithm>

namespace corvane::ServiceOrder {

std::vector<std::string> parse(std::string_view output) {
    std::vector<std::string> order;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (!line.starts_with('(') || line.starts_with("(Hardware Port:")) continue;
        const auto close = line.find(')');
        if (close == std::string_view::npos) continue;
        const auto name = text::trim(line.substr(close + 1));
        if (!name.empty()) order.emplace_back(name);
    }
    return order;
}

DefaultRoute parseDefaultRoute(std::string_view output) {
    constexpr std::string_view interfacePrefix = "interface: ";
    constexpr std::string_view gatewayPrefix = "gateway: ";
    DefaultRoute route;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.starts_with(interfacePrefix)) {
            route.interface = text::trim(line.substr(interfacePrefix.size()));
        } else if (line.starts_with(gatewayPrefix)) {
            route.gateway = text::trim(line.substr(gatewayPrefix.size()));
        }
    }
    return route;
}

std::vector<std::string> movedToTop(const std::string& service, const std::vector<std::string>& order) {
    auto moved = order;
    const auto at = std::find(moved.begin(), moved.end(), service);
    if (at != moved.end()) std::rotate(moved.begin(), at, at + 1);
    return moved;
}

NetworkSetup::Command command(const std::vector<std::string>& order) {
    NetworkSetup::Command command = {NetworkSetup::tool, "-ordernetworkservices"};
    command.insert(command.end(), order.begin(), order.end());
    return command;
}

} // namespace corvane::ServiceOrder
