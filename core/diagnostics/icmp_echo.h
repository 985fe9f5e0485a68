// Echo requests and replies on the wire: ICMP (RFC 792) in IPv4 (RFC 791).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane::ICMPSweep {

/// The Internet checksum (RFC 1071): the one's complement of the one's complement sum of big-endian words; an
/// odd last byte counts as its word's high byte.
std::uint16_t checksum(std::span<const std::uint8_t> bytes);

using EchoRequest = std::array<std::uint8_t, 16>;
EchoRequest echoRequest(std::uint16_t identifier, std::uint16_t sequence);

struct EchoReply {
    /// In host order.
    std::uint32_t source = 0;
    std::uint16_t identifier = 0;
    friend bool operator==(const EchoReply&, const EchoReply&) = default;
};
/// Reads what was received, from the IP header on; nothing unless it is an echo reply.
std::optional<EchoReply> parseReply(std::span<const std::uint8_t> received);

} // namespace corvane::ICMPSweep
