// A lock of the user's own choosing on the saved password: the owner has to prove to be there.
#pragma once

#include "platform/owner_check.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace corvane {

class TouchIDGate {
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    /// A success counts for this long without asking again.
    static constexpr std::chrono::seconds validity{30};

    explicit TouchIDGate(OwnerCheck& check, Clock clock = &std::chrono::steady_clock::now)
        : check_(check), clock_(std::move(clock)) {}

    bool enabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    /// Kept in memory only.
    const std::optional<std::chrono::steady_clock::time_point>& lastSuccess() const { return *lastSuccess_; }
    /// Whether the saved password may be used. Turns the main event loop while it waits for the answer; false
    /// when the program quits meanwhile. `reason` completes the system's own sentence.
    bool authorize(const std::string& reason);

  private:
    OwnerCheck& check_;
    Clock clock_;
    bool enabled_ = false;
    using Moment = std::optional<std::chrono::steady_clock::time_point>;
    // Shared with a waiting authorize(), which may outlive the gate.
    std::shared_ptr<Moment> lastSuccess_ = std::make_shared<Moment>();
};

} // namespace corvane
