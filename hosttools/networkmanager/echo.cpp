// Sockets: icmp(7), raw(7), socket(7); messages: RFC 792.
#include "hosttools/networkmanager/echo.h"

#include "core/diagnostics/icmp_echo.h"
#include "hosttools/networkmanager/ping_process.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <linux/filter.h>
#include <linux/icmp.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::networkmanager {

using hosttools::PingReply;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::size_t headerBytes = 8;
/// A Mac's ping sends as many.
constexpr std::size_t dataBytes = 56;
using Message = std::array<std::uint8_t, headerBytes + dataBytes>;

struct Received {
    std::array<std::uint8_t, 2048> bytes;
    std::size_t size = 0;
    int ttl = 0;
    /// When the kernel got it, by the wall clock.
    timespec at{};
};

/// An ICMP socket of either kind, connected to the host that is asked.
class EchoSocket {
  public:
    EchoSocket(const sockaddr_in& to, const std::optional<std::string>& device, std::uint16_t identifier);
    EchoSocket(const EchoSocket&) = delete;
    EchoSocket& operator=(const EchoSocket&) = delete;
    ~EchoSocket() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    int descriptor() const { return descriptor_; }
    /// An errno value; zero when it is connected.
    int error() const { return error_; }
    /// Nothing when there is none, or an error instead.
    bool receive(Received& received) const;
    /// Whether it is the reply to this request.
    bool answers(const Received& received, const Message& sent) const;

  private:
    bool prepare(const sockaddr_in& to, const std::optional<std::string>& device, std::uint16_t identifier);
    template <typename Value>
    bool set(int level, int name, const Value& value) const {
        return ::setsockopt(descriptor_, level, name, &value, sizeof value) == 0;
    }
    void admitOnly(std::uint16_t identifier) const;

    int descriptor_ = -1;
    /// Messages come with their IP header, and those of all programs come.
    bool raw_ = false;
    int error_ = 0;
};

} // namespace

static std::optional<sockaddr_in> resolve(const std::string& host) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    if (::inet_pton(AF_INET, host.c_str(), &address.sin_addr) == 1) return address;
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0 || !found) return std::nullopt;
    std::memcpy(&address, found->ai_addr, sizeof address);
    ::freeaddrinfo(found);
    return address;
}

static std::string dotted(const sockaddr_in& address) {
    char text[INET_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    return text;
}

/// Every raw socket is given every message: without this a program that watches hundreds of hosts would wake
/// all of its pings for each reply.
void EchoSocket::admitOnly(std::uint16_t identifier) const {
    // SOL_RAW of raw(7): a set bit keeps that type out.
    const icmp_filter types{~(1U << ICMP_ECHOREPLY)};
    set(SOL_RAW, ICMP_FILTER, types);
    // The identifier stands four bytes behind the IP header.
    sock_filter program[] = {
        BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),
        BPF_STMT(BPF_LD | BPF_H | BPF_IND, 4),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, identifier, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, 0xFFFF),
        BPF_STMT(BPF_RET | BPF_K, 0),
    };
    const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
    set(SOL_SOCKET, SO_ATTACH_FILTER, filter);
}

EchoSocket::EchoSocket(const sockaddr_in& to, const std::optional<std::string>& device,
                       std::uint16_t identifier) {
    if (!prepare(to, device, identifier)) error_ = errno;
}

bool EchoSocket::prepare(const sockaddr_in& to, const std::optional<std::string>& device,
                         std::uint16_t identifier) {
    descriptor_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP);
    if (descriptor_ < 0) {
        raw_ = true;
        descriptor_ = ::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP);
    }
    if (descriptor_ < 0) return false;
    if (raw_) admitOnly(identifier);
    if (device && ::setsockopt(descriptor_, SOL_SOCKET, SO_BINDTODEVICE, device->c_str(),
                               static_cast<socklen_t>(device->size())) != 0)
        return false;
    set(IPPROTO_IP, IP_RECVTTL, 1);
    set(SOL_SOCKET, SO_TIMESTAMPNS, 1);
    return ::connect(descriptor_, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0;
}

static Message request(std::uint16_t identifier) {
    Message message{};
    message[0] = ICMP_ECHO;
    // A ping socket puts in an identifier and a checksum of its own.
    message[4] = static_cast<std::uint8_t>(identifier >> 8);
    message[5] = static_cast<std::uint8_t>(identifier & 0xFF);
    // By its data a reply is known as this request's, whoever else chose the same identifier.
    for (std::size_t i = headerBytes; i < message.size(); ++i) message[i] = static_cast<std::uint8_t>(i);
    (void)!::getrandom(message.data() + headerBytes, 8, GRND_NONBLOCK);
    const std::uint16_t sum = ICMPSweep::checksum(message);
    message[2] = static_cast<std::uint8_t>(sum >> 8);
    message[3] = static_cast<std::uint8_t>(sum & 0xFF);
    return message;
}

bool EchoSocket::receive(Received& received) const {
    alignas(cmsghdr) std::array<char, 256> control;
    iovec block{received.bytes.data(), received.bytes.size()};
    msghdr header{};
    header.msg_iov = &block;
    header.msg_iovlen = 1;
    header.msg_control = control.data();
    header.msg_controllen = control.size();
    const ssize_t count = ::recvmsg(descriptor_, &header, MSG_DONTWAIT);
    if (count < 0) return false;
    received.size = static_cast<std::size_t>(count);
    for (cmsghdr* item = CMSG_FIRSTHDR(&header); item != nullptr; item = CMSG_NXTHDR(&header, item)) {
        if (item->cmsg_level == SOL_SOCKET && item->cmsg_type == SCM_TIMESTAMPNS)
            std::memcpy(&received.at, CMSG_DATA(item), sizeof received.at);
        if (item->cmsg_level == IPPROTO_IP && item->cmsg_type == IP_TTL)
            std::memcpy(&received.ttl, CMSG_DATA(item), sizeof received.ttl);
    }
    return true;
}

bool EchoSocket::answers(const Received& received, const Message& sent) const {
    std::size_t start = 0;
    if (raw_) start = received.size == 0 ? 0 : (received.bytes[0] & 0x0FU) * 4U;
    if (received.size < start + sent.size()) return false;
    const auto reply = received.bytes.begin() + static_cast<std::ptrdiff_t>(start);
    return reply[0] == ICMP_ECHOREPLY &&
           std::equal(sent.begin() + headerBytes, sent.end(), reply + headerBytes);
}

static double milliseconds(const timespec& from, const timespec& to) {
    return static_cast<double>(to.tv_sec - from.tv_sec) * 1e3 +
           static_cast<double>(to.tv_nsec - from.tv_nsec) / 1e6;
}

/// Why nothing was sent, as a Mac's ping says it.
static std::string reason(int error) {
    if (error == ENODEV) return "bad interface name";
    if (error == ENETUNREACH) error = EHOSTUNREACH;
    return std::string("sendto: ") + std::strerror(error);
}

static void exchange(const EchoSocket& socket, std::uint16_t identifier, int waitMs, PingReply& reply) {
    const Message message = request(identifier);
    timespec sentAt{};
    ::clock_gettime(CLOCK_REALTIME, &sentAt);
    const auto start = Clock::now();
    if (::send(socket.descriptor(), message.data(), message.size(), 0) < 0) {
        reply.note = reason(errno);
        return;
    }
    const auto deadline = start + std::chrono::milliseconds(waitMs);
    Received received;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return;
        pollfd waiting{socket.descriptor(), POLLIN, 0};
        if (::poll(&waiting, 1, static_cast<int>(left)) <= 0) continue;
        // An error that came in between is cleared by this, and the wait goes on, as a Mac's does.
        if (!socket.receive(received) || !socket.answers(received, message)) continue;
        const double most = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        const double byKernel = milliseconds(sentAt, received.at);
        reply.kind = PingReply::Kind::reply;
        // The kernel's time stamp leaves out how long this process waited for a processor; when the clock was
        // set in between, it is worth nothing.
        reply.ms = byKernel >= 0 && byKernel <= most ? byKernel : most;
        if (received.ttl > 0) reply.ttl = received.ttl;
        return;
    }
}

PingReply EchoPinger::ping(const std::string& host, int waitMs, const std::optional<std::string>& device) {
    PingReply reply;
    const auto address = resolve(host);
    if (!address) {
        reply.kind = PingReply::Kind::unresolved;
        return reply;
    }
    reply.address = dotted(*address);
    std::uint16_t identifier = static_cast<std::uint16_t>(::getpid());
    (void)!::getrandom(&identifier, sizeof identifier, GRND_NONBLOCK);
    const EchoSocket socket(*address, device, identifier);
    if (socket.descriptor() < 0 || socket.error() == EPERM) return runPing(reply.address, waitMs, device);
    if (socket.error() != 0)
        reply.note = reason(socket.error());
    else
        exchange(socket, identifier, waitMs, reply);
    return reply;
}

} // namespace corvane::networkmanager
