// One child process from start to end: its input given beforehand, its output collected, its life bounded.
#pragma once

#include "platform/posix/spawn.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::posix {

struct ChildCall {
    std::string path;
    /// The arguments behind the program's own name.
    std::vector<std::string> arguments;
    const Environment& environment;
    /// What standard input holds before it ends; empty gives /dev/null. Written to a pipe before the child
    /// starts, so at most `maxInput` bytes: more is refused with E2BIG.
    std::string_view input = {};
    /// Standard error into `output` as well, in the order of writing; otherwise into `errors`.
    bool mergeErrors = true;
    /// A session of its own: no terminal to ask on. Otherwise a process group of its own.
    bool ownSession = false;
    /// After this long the child's whole process group is killed.
    std::chrono::milliseconds timeLimit{60'000};
    /// Bytes kept of each stream; the rest is read and dropped, so that the child never stalls.
    std::size_t outputLimit = 8U << 20;
};

/// POSIX lets a pipe hold no less (_POSIX_PIPE_BUF is 512; Linux and macOS hold 4096 and more).
inline constexpr std::size_t maxInput = 4096;

struct ChildResult {
    /// An errno value; zero when the child was started.
    int startError = 0;
    bool timedOut = false;
    /// The exit status, or 128 plus the signal that ended the child; -1 when unknown.
    int status = -1;
    std::string output;
    std::string errors;
};

/// Blocks until every holder of the output has closed it and the child has ended, or the time is over.
/// Thread-safe. The child gets the descriptors 0 to 2 only, default signal dispositions and an empty signal
/// mask.
ChildResult runChild(const ChildCall& call);

} // namespace corvane::posix
