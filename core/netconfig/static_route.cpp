#include "core/netconfig/static_route.h"

#include "core/netconfig/ipv4.h"
#include "core/support/json_fields.h"
#include "core/support/text.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

using Words = std::array<std::string, 3>;

/// Without leading zeros, which the system reads as the mark of an octal number.
std::string canonicalAddress(std::string_view text) {
    const auto address = IPv4::parse(text);
    return address ? IPv4::format(*address) : std::string(text::trim(text));
}

/// Destination, mask and gateway as the system takes them.
Words words(const StaticRoute& route) {
    return {canonicalAddress(route.destination), route.normalizedMask().value_or(route.mask),
            canonicalAddress(route.gateway)};
}

std::vector<Words> sortedWords(const std::vector<StaticRoute>& routes) {
    std::vector<Words> all;
    all.reserve(routes.size());
    for (const auto& route : routes) all.push_back(words(route));
    std::sort(all.begin(), all.end());
    return all;
}

std::vector<std::string> wordsOfLine(std::string_view line, std::size_t most) {
    constexpr std::string_view separators = " \t\v\f,";
    std::vector<std::string> found;
    while (found.size() < most) {
        const auto begin = line.find_first_not_of(separators);
        if (begin == std::string_view::npos) break;
        line.remove_prefix(begin);
        const auto end = std::min(line.find_first_of(separators), line.size());
        found.emplace_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return found;
}

} // namespace

std::optional<std::string> StaticRoute::normalizedMask() const {
    return IPv4::normalizeMask(mask);
}

std::vector<std::string> StaticRoute::errors() const {
    std::vector<std::string> messages;
    if (!IPv4::isValid(destination)) messages.emplace_back("Destination isn't a valid IPv4 address.");
    if (!normalizedMask()) messages.emplace_back("Mask isn't valid (use 255.255.0.0 or /16).");
    if (!IPv4::isValid(gateway)) messages.emplace_back("Gateway isn't a valid IPv4 address.");
    return messages;
}

std::vector<std::string> StaticRoute::warnings() const {
    if (!errors().empty()) return {};
    const auto address = IPv4::parse(destination);
    const auto bits = IPv4::parse(*normalizedMask());
    if (!address || !bits || (*address & *bits) == *address) return {};
    return {"Destination has host bits set — did you mean " + IPv4::format(*address & *bits) + "?"};
}

std::string StaticRoute::summary() const {
    const auto dotted = normalizedMask();
    const auto prefix = dotted ? IPv4::prefixLength(*dotted) : std::nullopt;
    std::string text = destination;
    text += prefix ? '/' : ' ';
    text += prefix ? std::to_string(*prefix) : mask;
    text += " via ";
    text += gateway;
    return text;
}

std::vector<StaticRoute> StaticRoute::parse(std::string_view output) {
    std::vector<StaticRoute> routes;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.empty() || line.front() < '0' || line.front() > '9') continue;
        auto parts = wordsOfLine(line, 3);
        if (parts.size() < 3) continue;
        routes.push_back({Uuid::generate(), std::move(parts[0]), std::move(parts[1]), std::move(parts[2])});
    }
    return routes;
}

NetworkSetup::Command StaticRoute::setCommand(const std::string& service,
                                              const std::vector<StaticRoute>& routes) {
    NetworkSetup::Command command = {NetworkSetup::tool, "-setadditionalroutes", service};
    for (const auto& route : routes)
        for (auto& word : words(route)) command.push_back(std::move(word));
    return command;
}

bool StaticRoute::sameRoutes(const std::vector<StaticRoute>& a, const std::vector<StaticRoute>& b) {
    return a.size() == b.size() && sortedWords(a) == sortedWords(b);
}

std::optional<StaticRoute> StaticRoute::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    StaticRoute route;
    const bool complete =
        json::read(*object, "id", route.id) && json::read(*object, "destination", route.destination) &&
        json::read(*object, "mask", route.mask) && json::read(*object, "gateway", route.gateway);
    if (!complete) return std::nullopt;
    return route;
}

JsonValue StaticRoute::toJson() const {
    return JsonValue(json::joined(
        {{"destination", destination}, {"gateway", gateway}, {"id", id.text()}, {"mask", mask}}, {}));
}

} // namespace corvane
