#include "hosttools/dialect_parts.h"

#include "core/support/text.h"

#include <algorithm>

namespace corvane::hosttools {

Printed listVLANs(Engine& engine) {
    std::string out;
    for (const Vlan& vlan : engine.vlans()) {
        if (!out.empty()) out += "\n";
        out += "VLAN User Defined Name: " + vlan.name + "\nParent Device: " + vlan.parentDevice +
               "\nDevice (\"Hardware\" Port): " + vlan.device + "\nTag: " + std::to_string(vlan.tag) + "\n";
    }
    if (out.empty()) out = "There are no VLANs currently configured on this system.\n";
    return {out, {}, 0};
}

Printed listVLANDevices(Engine& engine) {
    std::string out;
    for (const Port& port : engine.vlanCapablePorts()) out += port.device + " (" + port.hardwarePort + ")\n";
    return {out, {}, 0};
}

/// IEEE 802.1Q: 0 and 4095 are reserved.
static bool parseTag(const std::string& digits, int& tag) {
    long value = 0;
    if (!text::parseInteger(digits, 1, 4094, value)) return false;
    tag = static_cast<int>(value);
    return true;
}

Printed createVLAN(const Arguments& arguments, Engine& engine) {
    int tag = 0;
    if (text::trim(arguments[0]).empty()) return invalid("The VLAN needs a name.");
    if (!parseTag(arguments[2], tag)) return invalid(arguments[2] + " is not a valid VLAN tag.");
    const std::vector<Port> ports = engine.vlanCapablePorts();
    const bool capable =
        std::any_of(ports.begin(), ports.end(), [&](const Port& p) { return p.device == arguments[1]; });
    if (!capable) return invalid(arguments[1] + " is not a device that supports VLANs.");
    for (const Vlan& vlan : engine.vlans())
        if (vlan.parentDevice == arguments[1] && vlan.tag == tag)
            return invalid("A VLAN with tag " + arguments[2] + " already exists on " + arguments[1] + ".");
    for (const Service& service : engine.services())
        if (service.name == arguments[0])
            return invalid("A network service named " + arguments[0] + " already exists.");
    return outcome(engine.createVLAN(arguments[0], arguments[1], tag));
}

Printed deleteVLAN(const Arguments& arguments, Engine& engine) {
    int tag = 0;
    const std::vector<Vlan> vlans = engine.vlans();
    const bool known =
        parseTag(arguments[2], tag) && std::any_of(vlans.begin(), vlans.end(), [&](const Vlan& v) {
            return v.name == arguments[0] && v.parentDevice == arguments[1] && v.tag == tag;
        });
    if (!known) return invalid(arguments[0] + " is not a recognized VLAN.");
    return outcome(engine.deleteVLAN(arguments[0], arguments[1], tag));
}

} // namespace corvane::hosttools
