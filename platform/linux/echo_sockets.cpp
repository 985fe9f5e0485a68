#include "platform/linux/echo_sockets.h"

#include "platform/posix/icmp_socket.h"

#include <array>
#include <cerrno>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

// Behind <net/if.h>, whose names the kernel's header otherwise takes.
#include <linux/icmp.h>

namespace corvane {

namespace {

using posix::Descriptor;
using posix::IcmpSocket;

/// With IP_RECVERR on, which a raw socket needs to tell of a full neighbour table, other errors queue up too.
class RawSocket final : public IcmpSocket {
  public:
    using IcmpSocket::IcmpSocket;

  protected:
    void clearErrors() override {
        std::array<char, 1> nothing{};
        while (::recv(descriptor(), nothing.data(), nothing.size(), MSG_ERRQUEUE | MSG_DONTWAIT) >= 0) {
        }
    }
};

} // namespace

template <typename Value>
static bool set(const Descriptor& socket, int level, int option, const Value& value) {
    return ::setsockopt(socket.get(), level, option, &value, sizeof value) == 0;
}

static bool bindToInterface(const Descriptor& socket, const std::string& device) {
    const unsigned index = ::if_nametoindex(device.c_str());
    if (index == 0) return true;
    if (::setsockopt(socket.get(), SOL_SOCKET, SO_BINDTODEVICE, device.c_str(),
                     static_cast<socklen_t>(device.size())) == 0)
        return true;
    // Before Linux 5.7 that took CAP_NET_RAW; this leads out of the interface as well.
    return set(socket, IPPROTO_IP, IP_UNICAST_IF, static_cast<int>(htonl(index)));
}

static void setBuffers(const Descriptor& socket) {
    // The system's limits hold for those without CAP_NET_ADMIN. A request waits in the send buffer until its
    // host's hardware address is known, for about 3 s where there is no host.
    const int bytes = EchoSocket::receiveBufferBytes;
    if (!set(socket, SOL_SOCKET, SO_RCVBUFFORCE, bytes)) set(socket, SOL_SOCKET, SO_RCVBUF, bytes);
    if (!set(socket, SOL_SOCKET, SO_SNDBUFFORCE, bytes)) set(socket, SOL_SOCKET, SO_SNDBUF, bytes);
}

static std::unique_ptr<EchoSocket> openUnprivileged(const std::string& device) {
    Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP));
    if (!socket.valid() || !bindToInterface(socket, device)) return nullptr;
    setBuffers(socket);
    // Binding draws the identifier that the kernel will use, told as a port.
    sockaddr_in own{};
    own.sin_family = AF_INET;
    socklen_t length = sizeof own;
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&own), length) != 0 ||
        ::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&own), &length) != 0)
        return nullptr;
    return std::make_unique<IcmpSocket>(
        std::move(socket), IcmpSocket::Traits{.identifier = ntohs(own.sin_port), .headerStripped = true});
}

static std::unique_ptr<EchoSocket> openRaw(const std::string& device) {
    Descriptor socket(::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP));
    if (!socket.valid() || !bindToInterface(socket, device)) return nullptr;
    setBuffers(socket);
    // A raw socket sees all the machine's ICMP: only echo replies are let through.
    set(socket, SOL_RAW, ICMP_FILTER, icmp_filter{~(1U << ICMP_ECHOREPLY)});
    set(socket, IPPROTO_IP, IP_RECVERR, 1);
    return std::make_unique<RawSocket>(std::move(socket), IcmpSocket::Traits{});
}

std::unique_ptr<EchoSocket> LinuxEchoSockets::open(const std::string& device) const {
    if (auto socket = openUnprivileged(device)) return socket;
    return openRaw(device);
}

} // namespace corvane
