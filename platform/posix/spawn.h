// Starting and burying child processes; what runChild and ChildPool share.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace corvane::posix {

/// An environment as exec takes it: "NAME=value" each.
using Environment = std::vector<std::string>;

/// The environment of this process with the entries put over it (same name: replaced). Reads `environ`, so
/// call it before other threads may change it, and keep the result.
Environment environmentWith(const Environment& entries);

struct Spawn {
    const std::string& path;
    /// The arguments behind the program's own name.
    const std::vector<std::string>& arguments;
    const Environment& environment;
    /// Descriptors; an input below zero gives /dev/null.
    int input = -1;
    int output = -1;
    int errors = -1;
    /// A session of its own: no terminal to ask on. Otherwise a process group of its own.
    bool ownSession = false;
};

/// An errno value, or zero with the child's process id. Holds the caller until the child has its own program.
/// Thread-safe. The child gets the descriptors 0 to 2 only, default signal dispositions and an empty signal
/// mask.
int spawn(const Spawn& call, pid_t& child);

/// The exit status, or 128 plus the signal that ended the child; nothing while it lives. -1 when somebody
/// else has reaped it, or the program ignores SIGCHLD.
std::optional<int> reapIfEnded(pid_t child);
/// Kills the child's whole process group. Only for a child that hasn't been reaped: until then the number
/// names its group and nobody else's.
void killGroup(pid_t child);
/// For a killed child that is out of reach (it changed its user) or stuck in the kernel: nobody waits for it
/// any more, and still it leaves no zombie.
void reapInBackground(pid_t child);

} // namespace corvane::posix
