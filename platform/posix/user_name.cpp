#include "platform/posix/user_name.h"

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace corvane::posix {

std::string userName() {
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    int error = ERANGE;
    while ((error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE &&
           buffer.size() < (1U << 20)) {
        buffer.resize(buffer.size() * 2);
    }
    if (error == 0 && found != nullptr) return found->pw_name;
    return std::to_string(::getuid());
}

} // namespace corvane::posix
