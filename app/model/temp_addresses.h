// The temporary addresses that were put on devices, forgotten when the system no longer shows them.
#pragma once

#include "core/netconfig/service_info.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace corvane {

/// A second address that the user put on a device for the time being.
struct TempAlias {
    std::string service, device, ip, mask;
    friend bool operator==(const TempAlias&, const TempAlias&) = default;
};

class TempAddresses {
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    /// A device may take a moment to show an address that was just put on it.
    static constexpr std::chrono::seconds patience{10};

    explicit TempAddresses(Clock clock = &std::chrono::steady_clock::now) : clock_(std::move(clock)) {}

    const std::vector<TempAlias>& all() const { return all_; }
    void add(const TempAlias& alias);
    /// Whether it was there.
    bool remove(const TempAlias& alias);
    /// Drops those that were seen on their device and are gone from what was read of it, and those that
    /// weren't seen for some time. Whether any went.
    bool compare(const std::vector<ServiceInfo>& services);

  private:
    struct Watch {
        /// When it was added, or was last seen.
        std::chrono::steady_clock::time_point last;
        bool seen = false;
    };
    Clock clock_;
    std::vector<TempAlias> all_;
    /// One for each of `all_`.
    std::vector<Watch> watches_;
};

} // namespace corvane
