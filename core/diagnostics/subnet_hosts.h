// The addresses that a sweep of a subnet asks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct SubnetHosts {
    /// As many as a /16 has; larger subnets are refused.
    static constexpr std::size_t limit = 65'534;

    /// Dotted, lowest first: without the network and broadcast addresses, but both ends of a /31 (RFC 3021)
    /// and the one address of a /32.
    std::vector<std::string> addresses;
    /// An English sentence when there are none.
    std::string error;

    /// `mask` is dotted or a prefix length ("255.255.252.0", "22", "/22").
    static SubnetHosts of(std::string_view address, std::string_view mask);

    struct Count {
        std::size_t addresses = 0;
        /// As above.
        std::string error;
    };
    /// How many there would be, without making them.
    static Count count(std::string_view address, std::string_view mask);
};

} // namespace corvane
