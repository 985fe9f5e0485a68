#include "platform/posix/icmp_socket.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace corvane::posix {

// RFC 791, without options.
static constexpr std::size_t headerBytes = 20;

/// As much of it as readers of a reply look at.
static void putHeader(std::span<std::uint8_t> buffer, std::size_t total, const sockaddr_in& source) {
    const std::uint32_t address = ntohl(source.sin_addr.s_addr);
    std::fill_n(buffer.begin(), headerBytes, std::uint8_t{0});
    buffer[0] = 0x45;
    buffer[2] = static_cast<std::uint8_t>(total >> 8 & 0xFF);
    buffer[3] = static_cast<std::uint8_t>(total & 0xFF);
    buffer[9] = IPPROTO_ICMP;
    for (std::size_t i = 0; i < 4; ++i)
        buffer[12 + i] = static_cast<std::uint8_t>(address >> (24 - 8 * i) & 0xFF);
}

IcmpSocket::IcmpSocket(Descriptor descriptor, Traits traits)
    : descriptor_(std::move(descriptor)), traits_(traits) {
    timeval wait{};
    wait.tv_usec = std::chrono::duration_cast<std::chrono::microseconds>(receiveWait).count();
    ::setsockopt(descriptor_.get(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
}

EchoSocket::Sent IcmpSocket::send(std::uint32_t address, std::span<const std::uint8_t> message) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(address);
    // An earlier message's error may be reported in place of sending this one.
    for (int attempts = 0; attempts < 3; ++attempts) {
        if (::sendto(descriptor_.get(), message.data(), message.size(), MSG_DONTWAIT,
                     reinterpret_cast<const sockaddr*>(&to), sizeof to) >= 0)
            return Sent::yes;
        switch (errno) {
        case EAGAIN:
        case ENOBUFS:
        case ENOMEM:
            return Sent::notNow;
        default:
            break;
        }
    }
    return Sent::no;
}

std::size_t IcmpSocket::receive(std::span<std::uint8_t> buffer) {
    const std::size_t skipped = traits_.headerStripped ? headerBytes : 0;
    if (buffer.size() <= skipped) return 0;
    sockaddr_in source{};
    socklen_t length = sizeof source;
    const ssize_t count = ::recvfrom(descriptor_.get(), buffer.data() + skipped, buffer.size() - skipped, 0,
                                     reinterpret_cast<sockaddr*>(&source), &length);
    if (count < 0) {
        if (errno != EAGAIN && errno != EINTR) clearErrors();
        return 0;
    }
    const std::size_t total = skipped + static_cast<std::size_t>(count);
    if (skipped) putHeader(buffer, total, source);
    return total;
}

} // namespace corvane::posix
