// route(8) "get default".
#include "hosttools/dialect_parts.h"

namespace corvane::hosttools {

Printed route(const Arguments& arguments, Engine& engine) {
    Arguments words = arguments;
    std::erase(words, "-n");
    if (words != Arguments{"get", "default"}) return {{}, "usage: route [-n] get default\n", 64};
    const std::optional<DefaultRoute> found = engine.defaultRoute();
    // Status 0 here is what a Mac gives.
    if (!found) return {{}, "route: writing to routing socket: not in table\n", 0};
    std::string out = "   route to: default\ndestination: default\n       mask: default\n";
    if (!found->gateway.empty()) out += "    gateway: " + found->gateway + "\n";
    out += "  interface: " + found->device + "\n";
    out += found->gateway.empty() ? "      flags: <UP,DONE,STATIC,PRCLONING,GLOBAL>\n"
                                  : "      flags: <UP,GATEWAY,DONE,STATIC,PRCLONING,GLOBAL>\n";
    out += " recvpipe  sendpipe  ssthresh  rtt,msec    rttvar  hopcount      mtu     expire\n"
           "       0         0         0         0         0         0      1500         0 \n";
    return {out, {}, 0};
}

} // namespace corvane::hosttools
