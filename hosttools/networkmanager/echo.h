// Echo requests by an ICMP socket of this program's own: ping without a second program.
#pragma once

#include "hosttools/engine.h"

namespace corvane::networkmanager {

/// By the kernel's ping socket where the user may have one (net.ipv4.ping_group_range), as root by a raw
/// socket, and otherwise by the system's own ping, which has the right to send them.
class EchoPinger : public hosttools::Pinger {
  public:
    hosttools::PingReply ping(const std::string& host, int waitMs,
                              const std::optional<std::string>& device) override;
};

} // namespace corvane::networkmanager
