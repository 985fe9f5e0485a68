#include "core/netconfig/network_setup.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

namespace corvane::NetworkSetup {

namespace {

constexpr std::string_view hardwarePrefix = "(Hardware Port:";
constexpr std::string_view portPrefix = "Hardware Port: ";
constexpr std::string_view devicePrefix = "Device: ";
constexpr std::string_view configuration = "Configuration";

/// The text less its first and last character; the line begins with a parenthesis but may have been cut
/// short, then the last character can be of several bytes.
std::string_view withoutParentheses(std::string_view line) {
    line.remove_prefix(1);
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    while (!line.empty() && continues(line.back())) line.remove_suffix(1);
    if (!line.empty()) line.remove_suffix(1);
    return line;
}

PortAndDevice parseHardware(std::string_view line) {
    PortAndDevice hardware;
    for (const auto piece : text::split(withoutParentheses(line), ", ")) {
        if (piece.starts_with(portPrefix)) {
            hardware.port = nonEmpty(piece.substr(portPrefix.size()));
        } else if (piece.starts_with(devicePrefix)) {
            hardware.device = nonEmpty(piece.substr(devicePrefix.size()));
        }
    }
    return hardware;
}

CurrentConfig::Mode parseMode(std::string_view line) {
    if (line.starts_with("DHCP")) return CurrentConfig::Mode::dhcp();
    if (line.starts_with("Manual")) return CurrentConfig::Mode::manual();
    const auto wordEnd = line.size() - configuration.size();
    const bool alone = wordEnd == 0 || line[wordEnd - 1] != ' ';
    return CurrentConfig::Mode::other(std::string(alone ? line : line.substr(0, wordEnd - 1)));
}

} // namespace

std::vector<ListedService> parseServices(std::string_view output) {
    std::vector<ListedService> services;
    bool header = true;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        if (std::exchange(header, false)) continue;
        auto name = text::trim(rawLine);
        const bool disabled = name.starts_with('*');
        if (disabled) name = text::trim(name.substr(1));
        if (!name.empty()) services.push_back({std::string(name), !disabled});
    }
    return services;
}

std::map<std::string, PortAndDevice> parseServiceOrder(std::string_view output) {
    std::map<std::string, PortAndDevice> hardware;
    std::string current;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.starts_with(hardwarePrefix)) {
            if (!current.empty()) hardware[std::exchange(current, {})] = parseHardware(line);
        } else if (line.starts_with('(')) {
            const auto close = line.find(')');
            if (close != std::string_view::npos) current = text::trim(line.substr(close + 1));
        }
    }
    return hardware;
}

CurrentConfig parseInfo(std::string_view output) {
    CurrentConfig config;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.ends_with(configuration)) {
            config.mode = parseMode(line);
            continue;
        }
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        const auto key = line.substr(0, colon);
        auto value = nonEmpty(line.substr(colon + 1));
        if (key == "IP address") {
            config.ip = std::move(value);
        } else if (key == "Subnet mask") {
            config.subnet = std::move(value);
        } else if (key == "Router") {
            config.router = std::move(value);
        }
    }
    return config;
}

std::vector<std::string> parseDNS(std::string_view output) {
    std::vector<std::string> servers;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (IPv4::isValid(line)) servers.emplace_back(line);
    }
    return servers;
}

std::optional<bool> parseLinkActive(std::string_view output) {
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.starts_with("status: ")) return line == "status: active";
    }
    return std::nullopt;
}

bool isAnswer(std::string_view output) {
    bool any = false;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.starts_with("** Error")) return false;
        any = any || !line.empty();
    }
    return any;
}

std::optional<std::string> nonEmpty(std::string_view text) {
    const auto value = text::trim(text);
    if (value.empty() || value == "(null)" || text::equalsIgnoringCase(value, "none")) return std::nullopt;
    return std::string(value);
}

} // namespace corvane::NetworkSetup
