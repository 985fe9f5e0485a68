#include "platform/posix/tool_root.h"

#include <unistd.h>

namespace corvane::posix {

std::string underRoot(const std::string& root, const std::string& path) {
    return path.starts_with('/') ? root + path : path;
}

PrivilegedRequest underRoot(const std::string& root, PrivilegedRequest request) {
    if (root.empty() || request.script) return request;
    for (NetworkSetup::Command& command : request.commands) {
        if (command.empty()) continue;
        std::string rooted = underRoot(root, command.front());
        if (::access(rooted.c_str(), X_OK) == 0) command.front() = std::move(rooted);
    }
    return request;
}

} // namespace corvane::posix
