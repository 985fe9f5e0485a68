// One echo request through the system's own ping, which may send them without being root.
#pragma once

#include "hosttools/engine.h"

namespace corvane::networkmanager {

/// `address` is a dotted IPv4 address.
hosttools::PingReply runPing(const std::string& address, int waitMs,
                             const std::optional<std::string>& device);
/// Reads what iputils' ping printed for one request.
void readPing(const std::string& output, hosttools::PingReply& reply);

} // namespace corvane::networkmanager
