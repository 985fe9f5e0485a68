#include "core/support/json_fields.h"
#include "hosttools/simulated/state.h"

#include <locale>
#include <sstream>

namespace corvane::simulated {

using hosttools::Addressing;
using Object = JsonValue::Object;

// Streams: the C++ library of macOS 13.0 has neither to_chars nor from_chars for floating-point numbers.
static JsonValue number(double value) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(15);
    stream << value;
    return JsonValue::Number{stream.str()};
}

static JsonValue toJson(const Lease& lease) {
    return Object{{"ip", lease.ip}, {"mask", lease.mask}, {"router", lease.router}};
}

static JsonValue toJson(const Device& device) {
    Object json{{"hardwarePort", device.hardwarePort},
                {"plugged", device.plugged},
                {"link", device.link},
                {"wireless", device.wireless},
                {"vlanCapable", device.vlanCapable},
                {"mac", device.mac},
                {"media", device.media},
                {"seenUp", device.seenUp},
                {"upSince", device.upSince}};
    if (device.lease) json["dhcp"] = toJson(*device.lease);
    if (device.parent) json["parent"] = *device.parent;
    JsonValue::Array aliases;
    for (const auto& alias : device.aliases)
        aliases.push_back(Object{{"ip", alias.ip}, {"prefix", alias.prefix}});
    if (!aliases.empty()) json["aliases"] = aliases;
    return json;
}

static const char* methodName(Addressing::Method method) {
    if (method == Addressing::Method::off) return "off";
    return method == Addressing::Method::manual ? "manual" : "dhcp";
}

static JsonValue toJson(const Service& service) {
    Object json{{"name", service.name},
                {"enabled", service.enabled},
                {"device", service.device},
                {"method", methodName(service.method)},
                {"since", service.since}};
    if (service.method == Addressing::Method::manual) {
        json["ip"] = service.ip;
        json["mask"] = service.mask;
        json["router"] = service.router;
    }
    JsonValue::Array dns(service.dns.begin(), service.dns.end());
    json["dns"] = dns;
    JsonValue::Array routes;
    for (const hosttools::Route& r : service.routes)
        routes.push_back(JsonValue::Array{r.destination, r.mask, r.gateway});
    json["routes"] = routes;
    return json;
}

JsonValue toJson(const State& state) {
    JsonValue::Array services;
    for (const Service& service : state.services) services.push_back(toJson(service));
    Object devices;
    for (const auto& [name, device] : state.devices) devices[name] = toJson(device);
    JsonValue::Array vlans;
    for (const hosttools::Vlan& v : state.vlans)
        vlans.push_back(
            Object{{"name", v.name}, {"parent", v.parentDevice}, {"device", v.device}, {"tag", v.tag}});
    JsonValue::Array faults;
    for (const Fault& f : state.failNext)
        faults.push_back(Object{{"verb", f.verb}, {"text", f.text}, {"status", f.status}});
    Object hosts;
    for (const auto& [name, address] : state.hosts) hosts[name] = address;
    Object answering;
    for (const auto& [address, ms] : state.answering) answering[address] = number(ms);
    const Administrator& a = state.administrator;
    return Object{{"delayScale", number(state.delayScale)},
                  {"administrator", Object{{"user", a.user}, {"salt", a.salt}, {"sha256", a.hash}}},
                  {"owner", state.owner},
                  {"services", services},
                  {"devices", devices},
                  {"vlans", vlans},
                  {"hosts", hosts},
                  {"answering", answering},
                  {"failNext", faults}};
}

namespace {

// A value of the wrong kind, or none, leaves the field as it is: the file is edited by hand.
void take(const Object& object, std::string_view key, bool& value) {
    if (const auto at = object.find(key); at != object.end() && at->second.boolean())
        value = *at->second.boolean();
}

void take(const Object& object, std::string_view key, double& value) {
    const auto at = object.find(key);
    if (at == object.end() || !at->second.number()) return;
    std::istringstream stream(at->second.number()->literal);
    stream.imbue(std::locale::classic());
    double parsed = 0;
    if (stream >> parsed && parsed >= 0 && parsed <= 1e9) value = parsed;
}

template <typename Value>
void take(const Object& object, std::string_view key, Value& value) {
    if (Value read{}; json::read(object, key, read)) value = read;
}

void take(const Object& object, std::string_view key, int& value) {
    if (long read = 0; json::read(object, key, read) && read >= 0 && read < 65536)
        value = static_cast<int>(read);
}

const Object* objectAt(const Object& object, std::string_view key) {
    const auto at = object.find(key);
    return at == object.end() ? nullptr : at->second.object();
}

const JsonValue::Array& arrayAt(const Object& object, std::string_view key) {
    static const JsonValue::Array none;
    const auto at = object.find(key);
    return at != object.end() && at->second.array() ? *at->second.array() : none;
}

Device device(const Object& json) {
    Device read;
    take(json, "hardwarePort", read.hardwarePort);
    take(json, "plugged", read.plugged);
    take(json, "link", read.link);
    take(json, "wireless", read.wireless);
    take(json, "vlanCapable", read.vlanCapable);
    take(json, "mac", read.mac);
    take(json, "media", read.media);
    take(json, "seenUp", read.seenUp);
    take(json, "upSince", read.upSince);
    if (std::string parent; json::read(json, "parent", parent)) read.parent = parent;
    if (const Object* lease = objectAt(json, "dhcp")) {
        read.lease.emplace();
        take(*lease, "ip", read.lease->ip);
        take(*lease, "mask", read.lease->mask);
        take(*lease, "router", read.lease->router);
    }
    for (const JsonValue& entry : arrayAt(json, "aliases")) {
        if (!entry.object()) continue;
        hosttools::Interface::Address alias;
        take(*entry.object(), "ip", alias.ip);
        take(*entry.object(), "prefix", alias.prefix);
        if (alias.prefix <= 32) read.aliases.push_back(alias);
    }
    return read;
}

Service service(const Object& json) {
    Service read;
    take(json, "name", read.name);
    take(json, "enabled", read.enabled);
    take(json, "device", read.device);
    std::string method = "dhcp";
    take(json, "method", method);
    read.method = method == "manual" ? Addressing::Method::manual
                  : method == "off"  ? Addressing::Method::off
                                     : Addressing::Method::dhcp;
    take(json, "ip", read.ip);
    take(json, "mask", read.mask);
    take(json, "router", read.router);
    take(json, "dns", read.dns);
    take(json, "since", read.since);
    for (const JsonValue& entry : arrayAt(json, "routes")) {
        const JsonValue::Array* parts = entry.array();
        if (!parts || parts->size() != 3) continue;
        const std::string* destination = (*parts)[0].string();
        const std::string* mask = (*parts)[1].string();
        const std::string* gateway = (*parts)[2].string();
        if (destination && mask && gateway) read.routes.push_back({*destination, *mask, *gateway});
    }
    return read;
}

Fault fault(const Object& json) {
    Fault read;
    take(json, "verb", read.verb);
    take(json, "text", read.text);
    take(json, "status", read.status);
    return read;
}

} // namespace

std::optional<State> fromJson(const JsonValue& json) {
    const Object* root = json.object();
    if (!root || !objectAt(*root, "devices") || !root->contains("services")) return std::nullopt;
    State state;
    take(*root, "delayScale", state.delayScale);
    take(*root, "owner", state.owner);
    if (const Object* administrator = objectAt(*root, "administrator")) {
        take(*administrator, "user", state.administrator.user);
        take(*administrator, "salt", state.administrator.salt);
        take(*administrator, "sha256", state.administrator.hash);
    }
    for (const JsonValue& entry : arrayAt(*root, "services"))
        if (entry.object()) state.services.push_back(service(*entry.object()));
    for (const auto& [name, value] : *objectAt(*root, "devices"))
        if (value.object()) state.devices[name] = device(*value.object());
    for (const JsonValue& entry : arrayAt(*root, "vlans")) {
        if (!entry.object()) continue;
        hosttools::Vlan vlan;
        take(*entry.object(), "name", vlan.name);
        take(*entry.object(), "parent", vlan.parentDevice);
        take(*entry.object(), "device", vlan.device);
        take(*entry.object(), "tag", vlan.tag);
        state.vlans.push_back(vlan);
    }
    if (const Object* hosts = objectAt(*root, "hosts"))
        for (const auto& [name, value] : *hosts) take(*hosts, name, state.hosts[name]);
    if (const Object* answering = objectAt(*root, "answering"))
        for (const auto& [address, value] : *answering) take(*answering, address, state.answering[address]);
    // One fault may stand alone, or several in a list.
    if (const Object* single = objectAt(*root, "failNext")) state.failNext.push_back(fault(*single));
    for (const JsonValue& entry : arrayAt(*root, "failNext"))
        if (entry.object()) state.failNext.push_back(fault(*entry.object()));
    return state;
}

} // namespace corvane::simulated
