// Administrator rights over the simulated Mac: its state file says whose password is right.
#pragma once

#include "platform/posix/child_process.h"
#include "platform/privileged_runner.h"

#include <string>

namespace corvane {

/// The script runs with the rights of this process: the simulated tools write the state file and nothing
/// else.
class SimulatedRunner final : public PrivilegedRunner {
  public:
    SimulatedRunner(std::string toolRoot, std::string stateFile, const posix::Environment& environment);
    ApplyResult run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) override;
    bool needsMainThread() const override { return false; }
    bool needsPassword() const override { return true; }

  private:
    std::string toolRoot_;
    std::string stateFile_;
    posix::Environment environment_;
};

} // namespace corvane
