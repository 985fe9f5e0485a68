#include "core/diagnostics/subnet_hosts.h"

#include "core/netconfig/ipv4.h"

namespace corvane {

namespace {

struct Range {
    std::uint32_t first = 0;
    std::size_t count = 0;
    std::string error;
};

Range refused(std::string sentence) {
    return {0, 0, std::move(sentence)};
}

Range rangeOf(std::string_view address, std::string_view mask) {
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
    return {first, std::size_t{last - first} + 1, {}};
}

} // namespace

SubnetHosts SubnetHosts::of(std::string_view address, std::string_view mask) {
    Range range = rangeOf(address, mask);
    SubnetHosts hosts{{}, std::move(range.error)};
    hosts.addresses.reserve(range.count);
    for (std::size_t offset = 0; offset < range.count; ++offset)
        hosts.addresses.push_back(IPv4::format(range.first + static_cast<std::uint32_t>(offset)));
    return hosts;
}

SubnetHosts::Count SubnetHosts::count(std::string_view address, std::string_view mask) {
    Range range = rangeOf(address, mask);
    return {range.count, std::move(range.error)};
}

} // namespace corvane
