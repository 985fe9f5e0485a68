// The order of network services; of those with a router the first carries internet.
#pragma once

#include "core/netconfig/network_setup.h"

namespace corvane::ServiceOrder {

struct DefaultRoute {
    std::optional<std::string> interface;
    std::optional<std::string> gateway;
    friend bool operator==(const DefaultRoute&, const DefaultRoute&) = default;
};

/// The service names in order, from -listnetworkserviceorder.
std::vector<std::string> parse(std::string_view output);
/// From "/sbin/route -n get default"; both absent without a default route.
DefaultRoute parseDefaultRoute(std::string_view output);
/// The service first, the others as they were; unchanged when the order doesn't hold the service.
std::vector<std::string> movedToTop(const std::string& service, const std::vector<std::string>& order);
/// The tool needs the complete list of services.
NetworkSetup::Command command(const std::vector<std::string>& order);

} // namespace corvane::ServiceOrder
