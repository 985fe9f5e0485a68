// Runs the system's tools by posix_spawn.
#pragma once

#include "platform/posix/child_process.h"
#include "platform/shell.h"

#include <chrono>
#include <cstddef>

namespace corvane {

/// Thread-safe. A tool that hasn't ended after the time limit is killed with all that it started, and what it
/// printed until then is its output: none of the tools takes seconds, and without a limit a single stuck one
/// would end every later refresh.
class PosixShell final : public Shell {
  public:
    struct Limits {
        std::chrono::milliseconds time{60'000};
        /// Bytes kept of a tool's output; the rest is read and dropped.
        std::size_t output = 8U << 20;
    };
    /// The root stands before every absolute path (empty: none). The environment entries ("NAME=value") are
    /// put over the program's environment as it is now.
    explicit PosixShell(std::string toolRoot, const posix::Environment& environment = {});
    PosixShell(std::string toolRoot, const posix::Environment& environment, Limits limits);

    std::string run(const std::string& path, const std::vector<std::string>& arguments) const override;

  private:
    std::string toolRoot_;
    posix::Environment environment_;
    Limits limits_;
};

} // namespace corvane
