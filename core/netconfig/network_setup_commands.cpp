#include "core/netconfig/network_setup.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

namespace corvane::NetworkSetup {

std::vector<Command> commands(const NetworkPreset& preset) {
    Command addressing;
    if (preset.mode == NetworkPreset::Mode::dhcp) {
        addressing = {tool, "-setdhcp", preset.service};
    } else {
        addressing = {tool, "-setmanual", preset.service, std::string(text::trim(preset.ip)),
                      preset.normalizedSubnet().value_or(preset.subnet)};
        const auto router = text::trim(preset.router);
        if (!router.empty()) addressing.emplace_back(router);
    }
    Command dns = {tool, "-setdnsservers", preset.service};
    dns.insert(dns.end(), preset.dns.begin(), preset.dns.end());
    // The tool's word for "no servers"; without it servers set earlier would stay.
    if (preset.dns.empty()) dns.emplace_back("Empty");
    return {std::move(addressing), std::move(dns)};
}

std::string shellQuote(std::string_view text) {
    std::string quoted = "'";
    quoted += text::replaced(text, "'", "'\\''");
    quoted += '\'';
    return quoted;
}

std::string shellScript(const std::vector<Command>& commands) {
    std::vector<std::string> lines;
    for (const auto& command : commands) {
        std::vector<std::string> words;
        for (const auto& argument : command) words.push_back(shellQuote(argument));
        lines.push_back(text::join(words, " "));
    }
    return text::join(lines, " && ");
}

std::string appleScriptString(std::string_view text) {
    std::string literal;
    // Room for the worst case at once: no copy of a secret is left behind in a smaller buffer.
    literal.reserve(text.size() * 2 + 2);
    literal += '"';
    for (const char c : text) {
        if (c == '\\' || c == '"') literal += '\\';
        literal += c;
    }
    literal += '"';
    return literal;
}

bool outputIndicatesError(std::string_view output) {
    const auto lowered = text::lowered(output);
    return text::contains(lowered, "error") || text::contains(lowered, "not valid") ||
           text::contains(lowered, "not a recognized");
}

} // namespace corvane::NetworkSetup
