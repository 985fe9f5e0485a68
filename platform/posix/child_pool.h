// Many child processes at once on a handful of threads: some start them, one reads what they print and buries
// them.
#pragma once

#include "platform/posix/child_process.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::posix {

/// The threads begin with the first child. Children are looked at when their output moves or ends, never at
/// SIGCHLD: that belongs to the whole program.
class ChildPool {
  public:
    using Id = std::uint64_t;
    struct Limits {
        /// After this long a child's whole process group is killed.
        std::chrono::milliseconds time{60'000};
        /// Bytes kept of a child's output (standard output and error together); the rest is read and dropped.
        std::size_t output = 1U << 20;
    };
    struct Ended {
        Id id = 0;
        ChildResult result;
    };

    /// `childEnded` is called once for each child that `take` can give, mostly on a thread of the pool, and
    /// must not call back.
    ChildPool(Environment environment, Limits limits, std::function<void()> childEnded);
    /// Kills every child with all that it started, and returns when they are gone (after a second at the
    /// most: a child that can't be killed is left to end by itself).
    ~ChildPool();
    ChildPool(const ChildPool&) = delete;
    ChildPool& operator=(const ChildPool&) = delete;

    /// Returns at once. The child has a process group of its own and no input.
    Id start(std::string path, std::vector<std::string> arguments);
    /// Kills the child with all that it started. It may have ended before: `take` then still gives it.
    void cancel(Id id);
    /// A child that has ended, or couldn't be started; nothing when there is none.
    std::optional<Ended> take();

  private:
    class Threads;
    std::unique_ptr<Threads> threads_;
};

} // namespace corvane::posix
