// Asks a whole list of addresses once each for an ICMP echo, at a steady rate over one socket.
#pragma once

#include "core/diagnostics/icmp_echo.h"
#include "platform/echo_socket.h"

#include <atomic>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane::ICMPSweep {

/// Between two batches of requests.
inline constexpr std::chrono::milliseconds batchInterval{20};
/// A system that is short of room is tried again this often, and for this long since it last sent anything.
inline constexpr std::chrono::milliseconds retryInterval{100};
inline constexpr std::chrono::seconds retryLimit{5};

/// How many addresses were handled so far.
using OnProgress = std::function<void(int handled)>;
using OnReply = std::function<void(const std::string& address, double ms)>;
/// Round-trip milliseconds by dotted address.
using Replies = std::unordered_map<std::string, double>;

/// Blocks until every address was asked and `settle` seconds have passed since, or until shortly (50 ms)
/// after `cancelled` turns true. Entries that aren't dotted IPv4 are skipped. About `perSecond` requests
/// leave a second, in batches: one each 20 ms below 50, else a fiftieth. Empty when no socket can be opened.
/// The callbacks are called from two worker threads, one of them the caller's.
Replies run(const EchoSockets& sockets, const std::vector<std::string>& addresses, const std::string& device,
            int perSecond, double settle, const OnProgress& onProgress, const OnReply& onReply,
            const std::atomic_bool& cancelled);

} // namespace corvane::ICMPSweep
