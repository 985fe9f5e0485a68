// Runs many short tools at once without a thread each and without holding up the caller.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane {

class ToolStarter {
  public:
    struct Result {
        /// False when the tool couldn't be started; the rest is then empty.
        bool started = false;
        /// The exit status, or 128 plus the signal that ended the tool.
        int status = -1;
        /// Standard output and standard error together, in the order of writing; valid UTF-8.
        std::string output;
    };
    using Done = std::function<void(const Result&)>;

    /// A tool under way. Destroying it ends the tool and all that it started; `done` is then not called any
    /// more.
    class Job {
      public:
        virtual ~Job() = default;
    };

    virtual ~ToolStarter() = default;
    /// Starts the executable at `path` with the arguments as they are (no shell, no quoting). Returns at
    /// once; `done` is called on the thread that made the starter (the main thread), never from within
    /// `start`, and may destroy its job. All of it is for that thread only.
    virtual std::unique_ptr<Job> start(const std::string& path, const std::vector<std::string>& arguments,
                                       Done done) = 0;
};

} // namespace corvane
