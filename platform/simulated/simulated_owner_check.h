// The simulated Mac's fingerprint reader: its state file says who stands before it.
#pragma once

#include "platform/owner_check.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace corvane {

/// The state's "owner": "present" (somebody proves to be the owner), "absent" (nobody does) or "none" (there
/// is no reader). Answers come after a moment, from a thread; the destructor gives the open ones as refusals.
class SimulatedOwnerCheck final : public OwnerCheck {
  public:
    explicit SimulatedOwnerCheck(std::string stateFile);
    SimulatedOwnerCheck(const SimulatedOwnerCheck&) = delete;
    SimulatedOwnerCheck& operator=(const SimulatedOwnerCheck&) = delete;
    ~SimulatedOwnerCheck() override;
    bool available() const override;
    void evaluate(const std::string& reason, const std::string& fallbackTitle, double reuseSeconds,
                  std::function<void(bool)> answer) override;

  private:
    std::string stateFile_;
    std::mutex mutex_;
    std::condition_variable ending_;
    bool ended_ = false;
    std::vector<std::thread> threads_;
};

} // namespace corvane
