// Starts tools in a pool of child processes; results come back through the event loop.
#pragma once

#include "platform/posix/child_pool.h"
#include "platform/tool_starter.h"

#include <memory>
#include <string>

namespace corvane {

/// The thread that makes it must run an event loop. A tool that hasn't ended after the time limit is killed
/// with all that it started; what it printed until then is its output.
class PooledToolStarter final : public ToolStarter {
  public:
    using Limits = posix::ChildPool::Limits;

    /// The root stands before every absolute path (empty: none). The environment entries ("NAME=value") are
    /// put over the program's environment as it is now.
    explicit PooledToolStarter(std::string toolRoot, const posix::Environment& environment = {},
                               Limits limits = {});
    /// Ends every tool; no `done` is called any more. Jobs may outlive it.
    ~PooledToolStarter() override;

    std::unique_ptr<Job> start(const std::string& path, const std::vector<std::string>& arguments,
                               Done done) override;

  private:
    class Desk;
    class Started;

    std::string toolRoot_;
    std::shared_ptr<Desk> desk_;
};

} // namespace corvane
