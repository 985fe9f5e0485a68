// networksetup(8): a table of its verbs. Its printed texts come from public transcripts of macOS 11 to 14.
// Errors go to standard output with status 4 (8 and 14 also occur); what a Mac prints for an incomplete
// -ordernetworkservices and for an unknown verb isn't documented, so those sentences are worded here.
#include "hosttools/dialect_parts.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

#include <algorithm>
#include <array>

namespace corvane::hosttools {

static std::optional<Service> find(const std::string& name, Engine& engine) {
    for (const Service& service : engine.services())
        if (service.name == name) return service;
    return std::nullopt;
}

static Printed listServices(const Arguments&, Engine& engine) {
    std::string out = "An asterisk (*) denotes that a network service is disabled.\n";
    for (const Service& service : engine.services())
        out += (service.enabled ? "" : "*") + service.name + "\n";
    return {out, {}, 0};
}

/// Readers split the port line at ", " and take its outer parentheses off.
static std::string portText(std::string port) {
    for (std::size_t at; (at = port.find(", ")) != std::string::npos;) port.erase(at, 1);
    std::replace_if(
        port.begin(), port.end(), [](unsigned char c) { return c < 0x20; }, ' ');
    return port;
}

static Printed listOrder(const Arguments&, Engine& engine) {
    std::string out = "An asterisk (*) denotes that a network service is disabled.\n";
    int position = 0;
    for (const Service& service : engine.services()) {
        ++position;
        out += "(" + (service.enabled ? std::to_string(position) : "*") + ") " + service.name + "\n";
        out += "(Hardware Port: " + portText(service.hardwarePort) +
               ", Device: " + service.device.value_or("") + ")\n\n";
    }
    return {out, {}, 0};
}

static Printed getInfo(const Arguments& arguments, Engine& engine) {
    const std::optional<Addressing> a = engine.addressing(arguments[0]);
    if (!a) return unknownService(arguments[0]);
    std::string out;
    // A service with IPv4 off has no configuration line at all.
    if (a->method == Addressing::Method::dhcp) out += "DHCP Configuration\n";
    if (a->method == Addressing::Method::manual) out += "Manual Configuration\n";
    if (a->ip && a->method != Addressing::Method::off) {
        out += "IP address: " + *a->ip + "\n";
        out += "Subnet mask: " + a->mask.value_or("none") + "\n";
        out += "Router: " + a->router.value_or("none") + "\n";
    }
    if (a->method == Addressing::Method::dhcp) out += "Client ID: \n";
    out += "IPv6: " + a->ipv6Method + "\n";
    if (a->ipv6Method != "Off") {
        out += "IPv6 IP address: " + a->ipv6.value_or("none") + "\n";
        out += "IPv6 Router: " + a->ipv6Router.value_or("none") + "\n";
    }
    out += (a->wireless ? "Wi-Fi ID: " : "Ethernet Address: ") + a->mac.value_or("(null)") + "\n";
    return {out, {}, 0};
}

static Printed getDNS(const Arguments& arguments, Engine& engine) {
    const std::optional<Addressing> a = engine.addressing(arguments[0]);
    if (!a) return unknownService(arguments[0]);
    if (a->dns.empty()) return {"There aren't any DNS Servers set on " + arguments[0] + ".\n", {}, 0};
    return {text::join(a->dns, "\n") + "\n", {}, 0};
}

static Printed invalidAddress(const std::string& address) {
    return invalid(address + " is not a valid IP address. No changes were saved...");
}

static Printed setDHCP(const Arguments& arguments, Engine& engine) {
    if (!find(arguments[0], engine)) return unknownService(arguments[0]);
    return outcome(engine.setDHCP(arguments[0]));
}

static Printed setManual(const Arguments& arguments, Engine& engine) {
    if (!find(arguments[0], engine)) return unknownService(arguments[0]);
    if (!IPv4::isValid(arguments[1])) return invalidAddress(arguments[1]);
    if (!IPv4::prefixLength(arguments[2]))
        return invalid(arguments[2] + " is not a valid subnet mask. No changes were saved...");
    std::optional<std::string> router;
    if (arguments.size() > 3 && !arguments[3].empty()) {
        if (!IPv4::isValid(arguments[3])) return invalidAddress(arguments[3]);
        router = arguments[3];
    }
    return outcome(engine.setManual(arguments[0], arguments[1], arguments[2], router));
}

static Printed setDNS(const Arguments& arguments, Engine& engine) {
    if (!find(arguments[0], engine)) return unknownService(arguments[0]);
    Arguments servers(arguments.begin() + 1, arguments.end());
    if (servers.size() == 1 && text::equalsIgnoringCase(servers[0], "empty")) servers.clear();
    for (const std::string& server : servers)
        if (!IPv4::isValid(server)) return invalidAddress(server);
    return outcome(engine.setDNS(arguments[0], servers));
}

static Printed setOrder(const Arguments& arguments, Engine& engine) {
    std::vector<std::string> known;
    for (const Service& service : engine.services()) known.push_back(service.name);
    for (const std::string& name : arguments)
        if (std::find(known.begin(), known.end(), name) == known.end()) return unknownService(name);
    std::vector<std::string> given = arguments;
    std::sort(given.begin(), given.end());
    std::sort(known.begin(), known.end());
    if (given != known) return invalid("Every network service has to be named exactly once.");
    return outcome(engine.setOrder(arguments));
}

static Printed getRoutes(const Arguments& arguments, Engine& engine) {
    const std::optional<std::vector<Route>> routes = engine.routes(arguments[0]);
    if (!routes) return unknownService(arguments[0]);
    if (routes->empty()) return {"There are no additional IPv4 routes on " + arguments[0] + ".\n", {}, 0};
    std::string out;
    for (const Route& r : *routes) out += r.destination + " " + r.mask + " " + r.gateway + "\n";
    return {out, {}, 0};
}

static Printed setRoutes(const Arguments& arguments, Engine& engine) {
    if (!find(arguments[0], engine)) return unknownService(arguments[0]);
    std::vector<Route> routes;
    for (std::size_t i = 1; i + 2 < arguments.size(); i += 3) {
        const Route r{arguments[i], arguments[i + 1], arguments[i + 2]};
        if (!IPv4::isValid(r.destination)) return invalidAddress(r.destination);
        if (!IPv4::prefixLength(r.mask))
            return invalid(r.mask + " is not a valid subnet mask. No changes were saved...");
        if (!IPv4::isValid(r.gateway)) return invalidAddress(r.gateway);
        routes.push_back(r);
    }
    return outcome(engine.setRoutes(arguments[0], routes));
}

namespace {

struct Verb {
    const char* name;
    const char* usage;
    std::size_t least;
    std::size_t most;
    Printed (*run)(const Arguments&, Engine&);
};

constexpr std::size_t any = 100000;
constexpr std::array verbs{
    Verb{"-listallnetworkservices", "", 0, 0, listServices},
    Verb{"-listnetworkserviceorder", "", 0, 0, listOrder},
    Verb{"-getinfo", " <networkservice>", 1, 1, getInfo},
    Verb{"-getdnsservers", " <networkservice>", 1, 1, getDNS},
    Verb{"-setdhcp", " <networkservice> [clientid]", 1, 2, setDHCP},
    Verb{"-setmanual", " <networkservice> <ip> <subnet> <router>", 3, 4, setManual},
    Verb{"-setdnsservers", " <networkservice> <dns1> [dns2] [...]", 2, any, setDNS},
    Verb{"-ordernetworkservices", " <service1> <service2> <service3> <...>", 1, any, setOrder},
    Verb{"-getadditionalroutes", " <networkservice>", 1, 1, getRoutes},
    Verb{"-setadditionalroutes", " <networkservice> [ <dest> <mask> <gateway> ]*", 1, any, setRoutes},
    Verb{"-listVLANs", "", 0, 0, [](const Arguments&, Engine& engine) { return listVLANs(engine); }},
    Verb{"-listdevicesthatsupportVLAN", "", 0, 0,
         [](const Arguments&, Engine& engine) { return listVLANDevices(engine); }},
    Verb{"-createVLAN", " <VLAN name> <device name> <tag>", 3, 3, createVLAN},
    Verb{"-deleteVLAN", " <VLAN name> <device name> <tag>", 3, 3, deleteVLAN},
};

} // namespace

Printed networksetup(const Arguments& arguments, Engine& engine) {
    if (arguments.empty()) return invalid("networksetup -help to see all available commands.");
    // The verb is the first argument and nothing behind it is an option: names may begin with a dash.
    const Arguments rest(arguments.begin() + 1, arguments.end());
    for (const Verb& verb : verbs) {
        if (!text::equalsIgnoringCase(verb.name, arguments[0])) continue;
        const bool wholeRoutes = verb.run != setRoutes || rest.size() % 3 == 1;
        if (rest.size() < verb.least || rest.size() > verb.most || !wholeRoutes)
            return invalid(std::string("Usage: networksetup ") + verb.name + verb.usage);
        return verb.run(rest, engine);
    }
    return invalid(arguments[0] + " is not a recognized command.");
}

} // namespace corvane::hosttools
