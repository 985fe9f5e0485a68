// ICMP sockets of Linux: icmp(7), raw(7), ip(7).
#pragma once

#include "platform/echo_socket.h"

namespace corvane {

/// An unprivileged socket where sysctl net.ipv4.ping_group_range lets this process's group have one (root's
/// is no exception), else a raw one, which takes root or CAP_NET_RAW.
class LinuxEchoSockets final : public EchoSockets {
  public:
    std::unique_ptr<EchoSocket> open(const std::string& device) const override;
};

} // namespace corvane
