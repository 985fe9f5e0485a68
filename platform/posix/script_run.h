// A shell script run as one privileged request, with an outcome shaped like the Mac script interpreter's
// ("do shell script"): the text on standard output, or, when the status isn't zero, an error whose message is
// the text on standard error, else the one on standard output.
#pragma once

#include "core/netconfig/privileged_script.h"
#include "platform/posix/child_process.h"

#include <chrono>
#include <string>
#include <string_view>

namespace corvane::posix {

/// Setting many services one after another takes its time, a stuck script must not keep the program for ever.
inline constexpr std::chrono::milliseconds scriptTimeLimit{5 * 60'000};

/// The outcome of an ended script; `errors` is what the script itself wrote to standard error.
PrivilegedScript::Outcome scriptOutcome(const ChildResult& result, std::string_view errors);

/// Runs it with the rights of this process. Blocks.
PrivilegedScript::Outcome runScript(const std::string& script, const Environment& environment,
                                    std::chrono::milliseconds timeLimit = scriptTimeLimit);

/// A failure before any script ran.
PrivilegedScript::Outcome failedOutcome(int number, std::string message);

} // namespace corvane::posix
