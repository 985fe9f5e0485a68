// ICMP echo over the socket that the system gives, with or without administrator rights.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace corvane {

/// One thread may send while another receives. Opened and destroyed while nobody else uses it.
class EchoSocket {
  public:
    enum class Sent {
        yes,
        /// The system is short of room just now (a full send buffer or neighbour table): worth another try.
        notNow,
        /// Not to this address: no route, or the system forbids it.
        no
    };
    /// How long `receive` waits at most.
    static constexpr std::chrono::milliseconds receiveWait{50};
    /// Asked of the system, so that a burst of replies isn't lost.
    static constexpr int receiveBufferBytes = 1'048'576;

    virtual ~EchoSocket() = default;

    /// Set where the system puts an identifier of its own choice into requests: replies then carry this one.
    virtual std::optional<std::uint16_t> identifier() const = 0;
    /// Sends an ICMP message to an address (host order). Never blocks.
    virtual Sent send(std::uint32_t address, std::span<const std::uint8_t> message) = 0;
    /// Waits for a message; the number of bytes put into `buffer`, 0 when none came in time. They begin with
    /// an IPv4 header, whatever the system hands out; what doesn't fit is cut off. The sender chose them:
    /// trust nothing.
    virtual std::size_t receive(std::span<std::uint8_t> buffer) = 0;
};

class EchoSockets {
  public:
    virtual ~EchoSockets() = default;
    /// A socket whose messages leave by the interface of that BSD name, or as routed when there is none of
    /// that name. Null when the system allows none. Any thread.
    virtual std::unique_ptr<EchoSocket> open(const std::string& device) const = 0;
};

} // namespace corvane
