// One probe by the system's ping tool: what to run, and what its output means. Output form: ping(8) of macOS.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class PingOutcome {
  public:
    enum class Kind { reply, timeout, unresolved };

    /// The round-trip time in milliseconds, as the tool printed it.
    static PingOutcome reply(double ms) { return {Kind::reply, ms}; }
    static PingOutcome timeout() { return {Kind::timeout, 0}; }
    /// The name has no address, or the tool couldn't be started.
    static PingOutcome unresolved() { return {Kind::unresolved, 0}; }

    Kind kind() const { return kind_; }
    bool isReply() const { return kind_ == Kind::reply; }
    /// Zero unless it is a reply.
    double ms() const { return ms_; }

    friend bool operator==(const PingOutcome&, const PingOutcome&) = default;

  private:
    PingOutcome(Kind kind, double ms) : kind_(kind), ms_(ms) {}
    Kind kind_;
    double ms_;
};

namespace Ping {

inline constexpr const char* tool = "/sbin/ping";
/// The tool's status for a name that has no address (EX_NOHOST of sysexits(3)).
inline constexpr std::int32_t statusNoHost = 68;

/// One probe that waits `waitMs` milliseconds for its reply and prints numbers only.
std::vector<std::string> arguments(const std::string& host, int waitMs);
/// From everything that the tool printed and its exit status. Output that makes no sense is a timeout.
PingOutcome parse(std::string_view output, std::int32_t status);

struct LocalInterface {
    /// BSD name.
    std::string name;
    std::string address;
    /// Dotted.
    std::string mask;
    friend bool operator==(const LocalInterface&, const LocalInterface&) = default;
};

/// The first interface in whose subnet the host lies; nothing when there is none or the host isn't a dotted
/// IPv4 address.
std::optional<std::string> localInterface(std::string_view host,
                                          const std::vector<LocalInterface>& interfaces);

} // namespace Ping
} // namespace corvane
