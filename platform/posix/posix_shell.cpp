#include "platform/posix/posix_shell.h"

#include "core/support/text.h"
#include "platform/posix/tool_root.h"

#include <utility>

namespace corvane {

PosixShell::PosixShell(std::string toolRoot, const posix::Environment& environment)
    : PosixShell(std::move(toolRoot), environment, Limits{}) {}

PosixShell::PosixShell(std::string toolRoot, const posix::Environment& environment, Limits limits)
    : toolRoot_(std::move(toolRoot)), environment_(posix::environmentWith(environment)), limits_(limits) {}

std::string PosixShell::run(const std::string& path, const std::vector<std::string>& arguments) const {
    const posix::ChildCall call{.path = posix::underRoot(toolRoot_, path),
                                .arguments = arguments,
                                .environment = environment_,
                                .timeLimit = limits_.time,
                                .outputLimit = limits_.output};
    std::string output = posix::runChild(call).output;
    if (text::validUtf8Prefix(output) == output.size()) return output;
    return text::validUtf8(output);
}

} // namespace corvane
