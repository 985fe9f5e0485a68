// What the systems' ICMP sockets have in common: sending, receiving, and an IP header in front of whatever
// comes.
#pragma once

#include "platform/echo_socket.h"
#include "platform/posix/descriptor.h"

namespace corvane::posix {

class IcmpSocket : public EchoSocket {
  public:
    struct Traits {
        /// Set when the system replaces the identifiers of requests.
        std::optional<std::uint16_t> identifier;
        /// The system hands messages out without their IP header.
        bool headerStripped = false;
    };
    /// Sets the descriptor's time limit for receiving.
    IcmpSocket(Descriptor descriptor, Traits traits);

    std::optional<std::uint16_t> identifier() const override { return traits_.identifier; }
    Sent send(std::uint32_t address, std::span<const std::uint8_t> message) override;
    std::size_t receive(std::span<std::uint8_t> buffer) override;

  protected:
    int descriptor() const { return descriptor_.get(); }
    /// Called when the socket reports an error instead of a message.
    virtual void clearErrors() {}

  private:
    Descriptor descriptor_;
    Traits traits_;
};

} // namespace corvane::posix
