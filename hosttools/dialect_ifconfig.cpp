// ifconfig(8) of the BSDs, for one device. Errors go to standard error with status 1.
#include "hosttools/dialect_parts.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

#include <cstdio>

namespace corvane::hosttools {

static constexpr const char* usage = "usage: ifconfig interface [alias | -alias] [address] [netmask]\n";

static std::string hex(std::uint32_t value, const char* format) {
    char digits[16];
    std::snprintf(digits, sizeof digits, format[0] == '8' ? "%08x" : "%x", value);
    return digits;
}

static std::string listing(const Interface& interface) {
    std::string out = interface.device + ": flags=" + hex(interface.flagBits, "x") + "<" +
                      text::join(interface.flags, ",") + "> mtu " + std::to_string(interface.mtu) + "\n";
    if (interface.mac) out += "\tether " + *interface.mac + "\n";
    for (const Interface::Address& address : interface.addresses) {
        out += "\tinet " + address.ip + " netmask 0x" + hex(IPv4::maskValue(address.prefix), "8");
        if (address.broadcast) out += " broadcast " + *address.broadcast;
        out += "\n";
    }
    if (interface.media) out += "\tmedia: " + *interface.media + "\n";
    if (interface.active)
        out += std::string("\tstatus: ") + (*interface.active ? "active" : "inactive") + "\n";
    return out;
}

static Printed failed(const Failure& failure) {
    if (!failure) return {};
    return {{}, *failure + "\n", 1};
}

/// Behind the device: [inet] [alias|-alias] address [[netmask] mask] in the orders that ifconfig(8) allows.
static Printed change(const std::string& device, const Arguments& words, Engine& engine) {
    std::optional<bool> add;
    std::vector<std::string> values;
    for (const std::string& word : words) {
        if (word == "alias" || word == "add")
            add = true;
        else if (word == "-alias" || word == "delete" || word == "remove")
            add = false;
        else if (word != "inet" && word != "netmask")
            values.push_back(word);
    }
    if (!add || values.empty() || values.size() > 2) return {{}, usage, 1};
    if (!IPv4::isValid(values[0])) return {{}, "ifconfig: " + values[0] + ": bad value\n", 1};
    if (!*add) return failed(engine.removeAlias(device, values[0]));
    const std::optional<std::string> mask =
        values.size() == 2 ? IPv4::normalizeMask(values[1]) : "255.255.255.0";
    if (!mask || !IPv4::prefixLength(*mask)) return {{}, "ifconfig: " + values[1] + ": bad value\n", 1};
    return failed(engine.addAlias(device, values[0], *mask));
}

Printed ifconfig(const Arguments& arguments, Engine& engine) {
    if (arguments.empty() || arguments[0].empty() || arguments[0].starts_with('-')) return {{}, usage, 1};
    const std::optional<Interface> interface = engine.interface(arguments[0]);
    if (!interface) return {{}, "ifconfig: interface " + arguments[0] + " does not exist\n", 1};
    if (arguments.size() == 1) return {listing(*interface), {}, 0};
    return change(arguments[0], Arguments(arguments.begin() + 1, arguments.end()), engine);
}

} // namespace corvane::hosttools
