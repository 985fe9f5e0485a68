#include "platform/simulated/simulated_runner.h"

#include "hosttools/simulated/administrator.h"
#include "platform/posix/script_run.h"
#include "platform/posix/tool_root.h"

#include <chrono>
#include <thread>
#include <utility>

namespace corvane {

/// A wrong password is answered late, as by a real system, so that the dialog's waiting state is seen.
static constexpr std::chrono::milliseconds rejectionDelay{300};

SimulatedRunner::SimulatedRunner(std::string toolRoot, std::string stateFile,
                                 const posix::Environment& environment)
    : toolRoot_(std::move(toolRoot)), stateFile_(std::move(stateFile)),
      environment_(posix::environmentWith(environment)) {}

ApplyResult SimulatedRunner::run(const PrivilegedRequest& request,
                                 const std::optional<Credentials>& credentials) {
    using namespace PrivilegedScript;
    if (!credentials) {
        return judge(posix::failedOutcome(authorizationInteractionNotAllowed,
                                          "The simulated network's administrator wasn't named."),
                     false);
    }
    if (!simulated::checkPassword(stateFile_, credentials->user, credentials->password.reveal())) {
        std::this_thread::sleep_for(rejectionDelay);
        return judge(posix::failedOutcome(authorizationDenied, "The password isn't right."), true);
    }
    // The password was right, whatever words the script prints.
    return judge(posix::runScript(script(posix::underRoot(toolRoot_, request)), environment_), false);
}

} // namespace corvane
