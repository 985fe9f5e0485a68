#include "core/diagnostics/icmp_echo.h"

#include <algorithm>
#include <string_view>

namespace corvane::ICMPSweep {

// RFC 792.
static constexpr std::uint8_t typeEchoReply = 0;
static constexpr std::uint8_t typeEchoRequest = 8;
static constexpr std::size_t icmpHeaderBytes = 8;
static constexpr std::string_view payload = "WendrelX";

static std::uint16_t word(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

static void putWord(EchoRequest& bytes, std::size_t at, std::uint16_t value) {
    bytes[at] = static_cast<std::uint8_t>(value >> 8);
    bytes[at + 1] = static_cast<std::uint8_t>(value & 0xFF);
}

std::uint16_t checksum(std::span<const std::uint8_t> bytes) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) sum += word(bytes, i);
    if (bytes.size() % 2) sum += static_cast<std::uint64_t>(bytes.back()) << 8;
    while (sum >> 16) sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum);
}

EchoRequest echoRequest(std::uint16_t identifier, std::uint16_t sequence) {
    EchoRequest request{};
    static_assert(icmpHeaderBytes + payload.size() == std::tuple_size_v<EchoRequest>);
    request[0] = typeEchoRequest;
    putWord(request, 4, identifier);
    putWord(request, 6, sequence);
    std::copy(payload.begin(), payload.end(), request.begin() + icmpHeaderBytes);
    putWord(request, 2, checksum(request));
    return request;
}

std::optional<EchoReply> parseReply(std::span<const std::uint8_t> received) {
    if (received.size() < icmpHeaderBytes || received[0] >> 4 != 4) return std::nullopt;
    // RFC 791: the low nibble counts the header's 32-bit words.
    const std::size_t header = (received[0] & 0x0Fu) * 4u;
    if (header < 20 || received.size() < header + icmpHeaderBytes) return std::nullopt;
    if (received[header] != typeEchoReply) return std::nullopt;
    const std::uint32_t source = static_cast<std::uint32_t>(word(received, 12)) << 16 | word(received, 14);
    return EchoReply{source, word(received, header + 4)};
}

} // namespace corvane::ICMPSweep
