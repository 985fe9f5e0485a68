#include "platform/linux/privileged_runners.h"

#include "platform/posix/tool_root.h"

#include <utility>

namespace corvane {

RootRunner::RootRunner(std::string toolRoot)
    : toolRoot_(std::move(toolRoot)), environment_(posix::environmentWith({"LC_ALL=C.UTF-8"})) {}

ApplyResult RootRunner::run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) {
    const std::string script = PrivilegedScript::script(posix::underRoot(toolRoot_, request));
    return PrivilegedScript::judge(posix::runScript(script, environment_), credentials.has_value());
}

} // namespace corvane
