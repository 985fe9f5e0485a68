#include "core/diagnostics/subnet_hosts.h"

#include "core/netconfig/ipv4.h"

namespace corvane {

static SubnetHosts refused(std::string sentence) {
    return {{}, std::move(sentence)};
}

SubnetHosts SubnetHosts::of(std::string_view address, std::string_view mask) {
    const auto inside = IPv4::parse(address);
    if (!inside) return refused("The address isn't a valid IPv4 address.");
    const auto dotted = IPv4::normalizeMask(mask);
    const auto prefix = dotted ? IPv4::prefixLength(*dotted) : std::nullopt;
    if (!prefix) return refused("The mask isn't valid (use 255.255.0.0 or /16).");
    if (*prefix < 16)
        return refused("A /" + std::to_string(*prefix) +
                       " has too many addresses to sweep: at most a /16 (65,534 addresses) can be swept.");

    const std::uint32_t network = *inside & IPv4::maskValue(*prefix);
    const std::uint32_t broadcast = network | ~IPv4::maskValue(*prefix);
    const bool everyAddressIsAHost = *prefix >= 31;
    const std::uint32_t first = everyAddressIsAHost ? network : network + 1;
    const std::uint32_t last = everyAddressIsAHost ? broadcast : broadcast - 1;
    SubnetHosts hosts;
    hosts.addresses.reserve(last - first + 1);
    for (std::uint32_t offset = 0; offset <= last - first; ++offset)
        hosts.addresses.push_back(IPv4::format(first + offset));
    return hosts;
}

} // namespace corvane
