// Runs a system tool as a child process and gives back what it printed.
#pragma once

#include <string>
#include <vector>

namespace corvane {

class Shell {
  public:
    virtual ~Shell() = default;
    /// Starts the executable at `path` with the arguments as they are (no shell, no quoting), reads standard output
    /// and standard error together to their end and waits for the exit. Blocks; call it off the main thread.
    /// The text is valid UTF-8 (ill-formed bytes replaced); empty when the tool can't be started.
    virtual std::string run(const std::string& path, const std::vector<std::string>& arguments) const = 0;
};

} // namespace corvane
