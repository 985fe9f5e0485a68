// What the Mac tools' dialect needs of a system. The dialect reads command lines and prints texts; an engine
// knows the facts and makes the changes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane::hosttools {

/// The text to print when something failed; nothing when it went well.
using Failure = std::optional<std::string>;

/// Printed by networksetup(8) when the caller may not change the network.
inline constexpr const char* adminRequired = "** Error: Command requires admin privileges.";

struct Service {
    std::string name;
    bool enabled = true;
    std::string hardwarePort;
    /// Absent for a service whose adapter has no device name.
    std::optional<std::string> device;
};

struct Addressing {
    enum class Method { dhcp, manual, off };
    Method method = Method::off;
    /// What is in use now (for DHCP: the lease, if there is one).
    std::optional<std::string> ip;
    /// Dotted.
    std::optional<std::string> mask;
    std::optional<std::string> router;
    std::optional<std::string> mac;
    /// The servers set on the service, not those that came with a lease.
    std::vector<std::string> dns;
    /// Whether the service's port is a wireless one.
    bool wireless = false;
    /// "Automatic", "Manual", "Link-local only" or "Off".
    std::string ipv6Method = "Automatic";
    std::optional<std::string> ipv6;
    std::optional<std::string> ipv6Router;
};

struct Route {
    std::string destination;
    /// Dotted.
    std::string mask;
    std::string gateway;
};

struct Vlan {
    std::string name;
    std::string parentDevice;
    std::string device;
    int tag = 0;
};

struct Port {
    std::string hardwarePort;
    std::string device;
};

struct Interface {
    std::string device;
    /// BSD interface flags by name, e.g. "UP", "BROADCAST".
    std::vector<std::string> flags;
    /// The flags as a number, BSD values.
    std::uint32_t flagBits = 0;
    int mtu = 1500;
    std::optional<std::string> mac;
    struct Address {
        std::string ip;
        int prefix = 24;
        std::optional<std::string> broadcast;
    };
    std::vector<Address> addresses;
    /// Absent when the device has no notion of a link.
    std::optional<bool> active;
    /// What stands behind "media: ", e.g. "autoselect (1000baseT <full-duplex>)"; absent when there is none.
    std::optional<std::string> media;
};

struct DefaultRoute {
    std::string gateway;
    std::string device;
};

struct PingReply {
    enum class Kind { reply, timeout, unresolved };
    Kind kind = Kind::timeout;
    std::string address;
    double ms = 0;
    int ttl = 64;
    /// Why nothing was sent, e.g. "sendto: No route to host"; empty otherwise.
    std::string note;
};

/// What ping(8) alone needs of a system.
class Pinger {
  public:
    virtual ~Pinger() = default;
    /// One echo request; `waitMs` milliseconds for its reply.
    virtual PingReply ping(const std::string& host, int waitMs, const std::optional<std::string>& device) = 0;
};

class Engine : public Pinger {
  public:
    /// Why the engine can answer nothing for that tool; asked first. The text is printed as it is.
    virtual Failure unavailable(const std::string& tool) {
        (void)tool;
        return std::nullopt;
    }

    /// In service order. Names are distinct, on one line, and as the tools print them.
    virtual std::vector<Service> services() = 0;
    /// Nothing when there is no such service.
    virtual std::optional<Addressing> addressing(const std::string& service) = 0;
    virtual Failure setDHCP(const std::string& service) = 0;
    virtual Failure setManual(const std::string& service, const std::string& ip, const std::string& mask,
                              const std::optional<std::string>& router) = 0;
    /// An empty list clears the servers.
    virtual Failure setDNS(const std::string& service, const std::vector<std::string>& servers) = 0;
    /// The complete list of services.
    virtual Failure setOrder(const std::vector<std::string>& services) = 0;
    virtual std::optional<std::vector<Route>> routes(const std::string& service) = 0;
    virtual Failure setRoutes(const std::string& service, const std::vector<Route>& routes) = 0;

    virtual std::vector<Vlan> vlans() = 0;
    virtual std::vector<Port> vlanCapablePorts() = 0;
    virtual Failure createVLAN(const std::string& name, const std::string& parentDevice, int tag) = 0;
    virtual Failure deleteVLAN(const std::string& name, const std::string& parentDevice, int tag) = 0;

    virtual std::optional<Interface> interface(const std::string& device) = 0;
    virtual Failure addAlias(const std::string& device, const std::string& ip, const std::string& mask) = 0;
    virtual Failure removeAlias(const std::string& device, const std::string& ip) = 0;
    virtual std::optional<DefaultRoute> defaultRoute() = 0;
};

} // namespace corvane::hosttools
