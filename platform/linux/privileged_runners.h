// Administrator rights on Linux: through sudo, or the program's own when it runs as root.
#pragma once

#include "platform/posix/script_run.h"
#include "platform/privileged_runner.h"

#include <chrono>
#include <string>

namespace corvane {

/// Runs the script with the rights that the program already has.
class RootRunner final : public PrivilegedRunner {
  public:
    explicit RootRunner(std::string toolRoot);
    ApplyResult run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) override;
    bool needsMainThread() const override { return false; }
    bool needsPassword() const override { return false; }

  private:
    std::string toolRoot_;
    posix::Environment environment_;
};

/// Runs the script through sudo(8). The password goes to sudo's standard input as one line, behind which the
/// input ends, so that a second question fails instead of waiting; sudo has no terminal either. Its cached
/// tickets are ignored (-k): a wrong password is wrong each time. Without credentials sudo is told not to ask
/// (-n).
class SudoRunner final : public PrivilegedRunner {
  public:
    /// An absolute path and never a search in PATH: whoever can put a program there would be given the
    /// password.
    static constexpr const char* systemSudo = "/usr/bin/sudo";

    explicit SudoRunner(std::string toolRoot, std::string sudo = systemSudo,
                        std::chrono::milliseconds timeLimit = posix::scriptTimeLimit);
    ApplyResult run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) override;
    bool needsMainThread() const override { return false; }
    bool needsPassword() const override { return true; }

  private:
    struct Attempt {
        PrivilegedScript::Outcome outcome;
        /// sudo let the script start.
        bool scriptStarted = false;
    };
    Attempt attempt(const std::string& script, const std::optional<Credentials>& credentials) const;

    std::string toolRoot_;
    std::string sudo_;
    std::chrono::milliseconds timeLimit_;
    posix::Environment environment_;
    std::string currentUser_;
};

} // namespace corvane
