#include "platform/posix/script_run.h"

#include "core/support/text.h"

#include <system_error>
#include <utility>

namespace corvane::posix {

using PrivilegedScript::Outcome;

Outcome failedOutcome(int number, std::string message) {
    return {.error = Outcome::Error{number, std::move(message)}, .output = {}};
}

Outcome scriptOutcome(const ChildResult& result, std::string_view errors) {
    if (result.startError != 0) {
        return failedOutcome(result.startError, "The change couldn't be started: " +
                                                    std::generic_category().message(result.startError) + ".");
    }
    if (result.timedOut) {
        // A script that runs as root can't be ended by its user.
        return failedOutcome(ETIMEDOUT,
                             "The change takes too long. Parts of it may have been made, and it may "
                             "still be running.");
    }
    std::string output = text::validUtf8(result.output);
    if (result.status == 0) return {.error = std::nullopt, .output = std::move(output)};
    std::string message(text::trim(text::validUtf8(errors)));
    if (message.empty()) message = text::trim(output);
    if (message.empty()) message = "The command exited with a non-zero status.";
    return failedOutcome(result.status, std::move(message));
}

Outcome runScript(const std::string& script, const Environment& environment,
                  std::chrono::milliseconds timeLimit) {
    const ChildResult result = runChild({.path = "/bin/sh",
                                         .arguments = {"-c", script},
                                         .environment = environment,
                                         .mergeErrors = false,
                                         .ownSession = true,
                                         .timeLimit = timeLimit});
    return scriptOutcome(result, result.errors);
}

} // namespace corvane::posix
