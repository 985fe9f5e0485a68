// Replies to a sweep as they come from the network, and the subnets to be swept.
#include "fuzz.h"

#include "core/diagnostics/icmp_echo.h"
#include "core/diagnostics/subnet_hosts.h"
#include "core/netconfig/ipv4.h"

#include <vector>

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A copy of its own, so that a read past its end is seen.
    const std::vector<std::uint8_t> bytes(data, data + size);
    if (const auto reply = ICMPSweep::parseReply(bytes)) {
        require(size >= 28 && bytes[0] >> 4 == 4, "a reply has both headers");
        auto longer = bytes;
        longer.push_back(0);
        require(ICMPSweep::parseReply(longer) == reply, "what stands behind the headers doesn't count");
    }
    if (size % 2 == 0) {
        // RFC 1071: with its checksum put behind it, a message adds up to none.
        const std::uint16_t sum = ICMPSweep::checksum(bytes);
        auto closed = bytes;
        closed.push_back(static_cast<std::uint8_t>(sum >> 8));
        closed.push_back(static_cast<std::uint8_t>(sum & 0xFF));
        require(ICMPSweep::checksum(closed) == 0, "checksums check");
    }
    const auto text = asText(data, size);
    const auto blank = text.find(' ');
    if (blank == text.npos) return 0;
    const auto address = text.substr(0, blank);
    const auto mask = text.substr(blank + 1);
    const auto hosts = SubnetHosts::of(address, mask);
    require(hosts.addresses.empty() != hosts.error.empty(), "there are hosts or a sentence");
    require(hosts.addresses.size() <= SubnetHosts::limit, "a sweep has an end");
    if (hosts.addresses.empty()) return 0;
    const auto dotted = IPv4::normalizeMask(mask);
    require(dotted && IPv4::sameSubnet(hosts.addresses.front(), address, *dotted) &&
                IPv4::sameSubnet(hosts.addresses.back(), address, *dotted),
            "hosts are of the subnet");
    return 0;
}
