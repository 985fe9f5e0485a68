// A route of one network service to a network behind another router than the default one.
#pragma once

#include "core/netconfig/network_setup.h"
#include "core/support/json.h"
#include "core/support/uuid.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct StaticRoute {
    /// Tells rows of a list apart; the system doesn't know it.
    Uuid id;
    /// The destination network's address.
    std::string destination;
    /// A dotted mask, "16" or "/16".
    std::string mask;
    /// The next hop.
    std::string gateway;

    /// Dotted; nothing when the mask is none.
    std::optional<std::string> normalizedMask() const;
    /// What keeps the route from being set, in a fixed order, each an English sentence.
    std::vector<std::string> errors() const;
    /// What is odd but doesn't block saving; none while there are errors.
    std::vector<std::string> warnings() const;
    /// E.g. "10.20.0.0/16 via 192.168.1.1".
    std::string summary() const;

    /// From -getadditionalroutes: one route a line that begins with a digit, each under a fresh id.
    static std::vector<StaticRoute> parse(std::string_view output);
    /// Replaces the service's routes by these; by none, all are removed.
    static NetworkSetup::Command setCommand(const std::string& service,
                                            const std::vector<StaticRoute>& routes);
    /// Whether both lists hold the same routes, in whatever order, ids and spellings of a mask left aside.
    static bool sameRoutes(const std::vector<StaticRoute>& a, const std::vector<StaticRoute>& b);

    /// All four keys are required.
    static std::optional<StaticRoute> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const StaticRoute&, const StaticRoute&) = default;
};

} // namespace corvane
