#include "core/netconfig/network_preset.h"

#include "core/netconfig/ipv4.h"
#include "core/support/json_fields.h"
#include "core/support/text.h"

namespace corvane {

namespace {

constexpr std::string_view dhcpWord = "dhcp";
constexpr std::string_view manualWord = "manual";

std::optional<std::string> normalizedMask(const CurrentConfig& config) {
    return config.subnet ? IPv4::normalizeMask(*config.subnet) : std::nullopt;
}

/// Which fields of a configuration already are as a preset wants them; in DHCP mode the address isn't asked
/// for.
struct Agreement {
    bool mode = false;
    bool ip = true;
    bool subnet = true;
    bool router = true;
    bool dns = false;

    Agreement(const NetworkPreset& preset, const CurrentConfig& config) : dns(preset.dns == config.dns) {
        if (preset.mode == NetworkPreset::Mode::dhcp) {
            mode = config.mode.isDHCP();
            return;
        }
        mode = config.mode.isManual();
        ip = config.ip == text::trim(preset.ip);
        subnet = preset.normalizedSubnet() == normalizedMask(config);
        router = config.router.value_or("") == text::trim(preset.router);
    }

    bool complete() const { return mode && ip && subnet && router && dns; }
};

std::string orNone(std::string_view text) {
    return text.empty() ? "none" : std::string(text);
}

std::string difference(std::string_view field, std::string_view is, std::string_view wanted) {
    return std::string(field) + " " + orNone(is) + " instead of " + orNone(wanted) + ".";
}

} // namespace

NetworkPreset NetworkPreset::fromConfig(const std::string& service, const CurrentConfig& config) {
    NetworkPreset preset;
    preset.id = Uuid::generate();
    preset.name = service;
    preset.service = service;
    preset.mode = config.mode.isManual() ? Mode::manual : Mode::dhcp;
    preset.ip = config.ip.value_or("");
    preset.subnet = config.subnet.value_or("255.255.255.0");
    preset.router = config.router.value_or("");
    preset.dns = config.dns;
    return preset;
}

std::vector<std::string> NetworkPreset::errors() const {
    std::vector<std::string> messages;
    if (service.empty()) messages.emplace_back("Choose an interface.");
    if (mode == Mode::manual) {
        if (!IPv4::isValid(ip)) messages.emplace_back("IP address isn't a valid IPv4 address.");
        if (!normalizedSubnet()) messages.emplace_back("Subnet mask isn't valid (use 255.255.255.0 or /24).");
        const auto wanted = text::trim(router);
        if (!wanted.empty() && !IPv4::isValid(wanted)) {
            messages.emplace_back("Router isn't a valid IPv4 address.");
        }
    }
    for (const auto& server : dns) {
        if (!IPv4::isValid(server)) {
            messages.push_back("DNS server \"" + server + "\" isn't a valid IPv4 address.");
        }
    }
    return messages;
}

std::vector<std::string> NetworkPreset::warnings() const {
    const auto mask = normalizedSubnet();
    if (mode != Mode::manual || !mask || text::trim(router).empty()) return {};
    if (IPv4::sameSubnet(text::trim(ip), text::trim(router), *mask)) return {};
    const auto prefix = IPv4::prefixLength(*mask);
    return {"Router " + router + " is outside " + ip + "/" + (prefix ? std::to_string(*prefix) : *mask) +
            "."};
}

std::optional<std::string> NetworkPreset::normalizedSubnet() const {
    return IPv4::normalizeMask(subnet);
}

std::string NetworkPreset::summary() const {
    if (mode == Mode::dhcp) return "DHCP";
    std::string result = ip;
    const auto mask = normalizedSubnet();
    if (const auto prefix = mask ? IPv4::prefixLength(*mask) : std::nullopt) {
        result += '/';
        result += std::to_string(*prefix);
    }
    if (!router.empty()) result += " · gw " + router;
    return result;
}

bool NetworkPreset::matches(const std::optional<CurrentConfig>& config) const {
    return config && Agreement(*this, *config).complete();
}

std::vector<std::string> NetworkPreset::differences(const std::optional<CurrentConfig>& config) const {
    if (!config) return {"No current settings."};
    const Agreement agreement(*this, *config);
    std::vector<std::string> sentences;
    if (!agreement.mode) {
        sentences.push_back(
            difference("Mode is", config->modeLabel(), mode == Mode::dhcp ? "DHCP" : "Manual"));
    }
    if (!agreement.ip) {
        const auto wanted = text::trim(ip);
        sentences.push_back(wanted.empty() ? "The preset has no IP address."
                                           : difference("IP address is", config->ip.value_or(""), wanted));
    }
    if (!agreement.subnet) {
        sentences.push_back(difference("Subnet mask is",
                                       normalizedMask(*config).value_or(config->subnet.value_or("")),
                                       normalizedSubnet().value_or(subnet)));
    }
    if (!agreement.router) {
        sentences.push_back(difference("Router is", config->router.value_or(""), text::trim(router)));
    }
    if (!agreement.dns) {
        const bool several = config->dns.size() > 1;
        sentences.push_back(difference(several ? "DNS servers are" : "DNS server is",
                                       text::join(config->dns, ", "), text::join(dns, ", ")));
    }
    return sentences;
}

std::optional<NetworkPreset> NetworkPreset::fromJson(const JsonValue& json) {
    const auto* object = json.object();
    if (!object) return std::nullopt;
    NetworkPreset preset;
    std::string modeWord;
    const bool complete =
        json::read(*object, "id", preset.id) && json::read(*object, "name", preset.name) &&
        json::read(*object, "service", preset.service) && json::read(*object, "mode", modeWord) &&
        json::read(*object, "ip", preset.ip) && json::read(*object, "subnet", preset.subnet) &&
        json::read(*object, "router", preset.router) && json::read(*object, "dns", preset.dns);
    if (!complete || (modeWord != dhcpWord && modeWord != manualWord)) return std::nullopt;
    preset.mode = modeWord == dhcpWord ? Mode::dhcp : Mode::manual;
    preset.unknown =
        json::without(*object, {"id", "name", "service", "mode", "ip", "subnet", "router", "dns"});
    return preset;
}

JsonValue NetworkPreset::toJson() const {
    // Put in one by one and in order: an initializer list would copy every value once more.
    JsonValue::Object::Members known;
    known.reserve(8);
    known.emplace_back("dns", JsonValue::Array(dns.begin(), dns.end()));
    known.emplace_back("id", id.text());
    known.emplace_back("ip", ip);
    known.emplace_back("mode", std::string(mode == Mode::dhcp ? dhcpWord : manualWord));
    known.emplace_back("name", name);
    known.emplace_back("router", router);
    known.emplace_back("service", service);
    known.emplace_back("subnet", subnet);
    return json::joined(std::move(known), unknown);
}

} // namespace corvane
