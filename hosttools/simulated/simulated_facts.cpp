// What is true on the simulated Mac at this moment.
#include "core/netconfig/ipv4.h"
#include "hosttools/simulated/simulated_engine.h"

#include <algorithm>

namespace corvane::simulated {

using hosttools::Addressing;
using hosttools::Failure;

std::vector<hosttools::Service> SimulatedEngine::services() {
    std::vector<hosttools::Service> listed;
    for (const Service& s : state().services) {
        const auto device = state().devices.find(s.device);
        hosttools::Service service{s.name, s.enabled, "", std::nullopt};
        if (device != state().devices.end()) {
            service.hardwarePort = device->second.hardwarePort;
            service.device = s.device;
        }
        listed.push_back(service);
    }
    return listed;
}

std::string SimulatedEngine::selfAssigned(const Device& device) const {
    // RFC 3927: 169.254.1.0 to 169.254.254.255, picked from the Ethernet address so that it stays the same.
    std::uint32_t hash = 2166136261u;
    for (const char c : device.mac) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return IPv4::format(0xA9FE0000u + 256 + hash % (254u * 256));
}

std::optional<Lease> SimulatedEngine::inUse(const Service& service) {
    const auto at = state().devices.find(service.device);
    if (!service.enabled || at == state().devices.end() || !state().isUp(service.device)) return std::nullopt;
    const Device& device = at->second;
    if (service.method == Addressing::Method::manual) return Lease{service.ip, service.mask, service.router};
    if (service.method == Addressing::Method::off) return std::nullopt;
    const Time waited = clock_.now() - std::max(service.since, device.upSince);
    const Time needed = device.lease ? leaseDelay : selfAssignDelay;
    if (static_cast<double>(waited) < static_cast<double>(needed) * state().delayScale) return std::nullopt;
    return device.lease ? *device.lease : Lease{selfAssigned(device), "255.255.0.0", ""};
}

std::optional<Addressing> SimulatedEngine::addressing(const std::string& name) {
    for (const Service& service : state().services) {
        if (service.name != name) continue;
        Addressing a;
        a.method = service.method;
        a.dns = service.dns;
        std::optional<Lease> lease = inUse(service);
        // A manual address reads the same whether or not its adapter is there.
        if (service.method == Addressing::Method::manual)
            lease = Lease{service.ip, service.mask, service.router};
        if (lease) {
            a.ip = lease->ip;
            a.mask = lease->mask;
            if (!lease->router.empty()) a.router = lease->router;
        }
        if (const auto device = state().devices.find(service.device); device != state().devices.end()) {
            a.mac = device->second.mac;
            a.wireless = device->second.wireless;
        }
        return a;
    }
    return std::nullopt;
}

std::optional<std::vector<hosttools::Route>> SimulatedEngine::routes(const std::string& name) {
    for (const Service& service : state().services)
        if (service.name == name) return service.routes;
    return std::nullopt;
}

std::vector<hosttools::Vlan> SimulatedEngine::vlans() {
    return state().vlans;
}

std::vector<hosttools::Port> SimulatedEngine::vlanCapablePorts() {
    std::vector<hosttools::Port> ports;
    for (const auto& [name, device] : state().devices)
        if (device.vlanCapable && device.plugged) ports.push_back({device.hardwarePort, name});
    return ports;
}

std::optional<hosttools::Interface> SimulatedEngine::interface(const std::string& name) {
    const auto at = state().devices.find(name);
    if (at == state().devices.end() || !at->second.plugged) return std::nullopt;
    const Device& device = at->second;
    const bool up = state().isUp(name);
    hosttools::Interface interface;
    interface.device = name;
    // Of the BSDs' net/if.h.
    interface.flags = {"UP", "BROADCAST", "SMART", "RUNNING", "SIMPLEX", "MULTICAST"};
    interface.flagBits = 0x8863;
    interface.mac = device.mac;
    interface.active = up;
    const bool hasSpeeds = device.media.find('(') != std::string::npos;
    interface.media = up || !hasSpeeds ? device.media : "autoselect (none)";
    const auto add = [&](const std::string& ip, int prefix) {
        const std::uint32_t address = IPv4::parse(ip).value_or(0);
        interface.addresses.push_back({ip, prefix, IPv4::format(address | ~IPv4::maskValue(prefix))});
    };
    for (const Service& service : state().services)
        if (service.device == name)
            if (const auto lease = inUse(service))
                add(lease->ip, IPv4::prefixLength(lease->mask).value_or(24));
    if (up)
        for (const auto& alias : device.aliases) add(alias.ip, alias.prefix);
    return interface;
}

Failure SimulatedEngine::addAlias(const std::string& device, const std::string& ip, const std::string& mask) {
    return change([&](State& state) {
        const auto at = state.devices.find(device);
        if (at == state.devices.end()) return;
        std::erase_if(at->second.aliases, [&](const auto& alias) { return alias.ip == ip; });
        at->second.aliases.push_back({ip, IPv4::prefixLength(mask).value_or(24), std::nullopt});
    });
}

Failure SimulatedEngine::removeAlias(const std::string& device, const std::string& ip) {
    std::size_t removed = 0;
    const Failure failure = change([&](State& state) {
        const auto at = state.devices.find(device);
        if (at != state.devices.end())
            removed = std::erase_if(at->second.aliases, [&](const auto& alias) { return alias.ip == ip; });
    });
    if (failure || removed) return failure;
    return "ifconfig: ioctl (SIOCDIFADDR): Can't assign requested address";
}

std::optional<hosttools::DefaultRoute> SimulatedEngine::defaultRoute() {
    for (const Service& service : state().services)
        if (const auto lease = inUse(service); lease && !lease->router.empty())
            return hosttools::DefaultRoute{lease->router, service.device};
    return std::nullopt;
}

std::optional<double> SimulatedEngine::answer(const std::string& address,
                                              const std::optional<std::string>& device) {
    if (address.starts_with("127.")) return 0.045;
    const auto listed = state().answering.find(address);
    bool routed = false;
    for (const Service& service : state().services) {
        const std::optional<Lease> lease = inUse(service);
        if (!lease || (device && service.device != *device)) continue;
        if (address == lease->ip) return 0.061;
        if (address == lease->router) return state().devices.at(service.device).wireless ? 2.9 : 0.38;
        const bool local = IPv4::sameSubnet(address, lease->ip, lease->mask);
        if (local && listed != state().answering.end()) return listed->second;
        if (!lease->router.empty()) routed = true;
    }
    // Beyond the router: only what isn't on any private network.
    const bool isPrivate =
        address.starts_with("10.") || address.starts_with("192.168.") || address.starts_with("172.");
    if (routed && !isPrivate && listed != state().answering.end()) return listed->second;
    return std::nullopt;
}

hosttools::PingReply SimulatedEngine::ping(const std::string& host, int waitMs,
                                           const std::optional<std::string>& device) {
    hosttools::PingReply reply;
    std::string address = host;
    if (const auto known = state().hosts.find(host); known != state().hosts.end()) address = known->second;
    const auto parsed = IPv4::parse(address);
    if (!parsed) {
        reply.kind = hosttools::PingReply::Kind::unresolved;
        return reply;
    }
    reply.address = IPv4::format(*parsed);
    const std::optional<double> ms = answer(reply.address, device);
    if (ms && *ms <= waitMs) {
        pause(*ms);
        reply.kind = hosttools::PingReply::Kind::reply;
        reply.ms = *ms;
    } else {
        pause(waitMs);
    }
    return reply;
}

} // namespace corvane::simulated
