#include "platform/macos/mac_services.h"
#include "platform/posix/icmp_socket.h"

#include <fcntl.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace corvane {

namespace {

/// The system's unprivileged ICMP socket: icmp(4). It keeps the IP header and the caller's identifier.
class MacEchoSockets final : public EchoSockets {
  public:
    std::unique_ptr<EchoSocket> open(const std::string& device) const override {
        posix::Descriptor socket(::socket(AF_INET, SOCK_DGRAM, IPPROTO_ICMP));
        if (!socket.valid()) return nullptr;
        ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC);
        const unsigned index = ::if_nametoindex(device.c_str());
        if (index != 0 && ::setsockopt(socket.get(), IPPROTO_IP, IP_BOUND_IF, &index, sizeof index) != 0)
            return nullptr;
        const int bytes = EchoSocket::receiveBufferBytes;
        ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
        return std::make_unique<posix::IcmpSocket>(std::move(socket), posix::IcmpSocket::Traits{});
    }
};

} // namespace

std::unique_ptr<EchoSockets> makeMacEchoSockets() {
    return std::make_unique<MacEchoSockets>();
}

} // namespace corvane
