#include "platform/posix/spawn.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern "C" char** environ;

namespace corvane::posix {

namespace {

std::string_view nameOf(std::string_view entry) {
    return entry.substr(0, entry.find('='));
}

std::vector<char*> pointers(const std::vector<std::string>& texts, const std::string* first) {
    std::vector<char*> result;
    result.reserve(texts.size() + 2);
    // exec's interface is older than const; nothing writes through these.
    if (first != nullptr) result.push_back(const_cast<char*>(first->c_str()));
    for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

class Attributes {
  public:
    explicit Attributes(bool ownSession) {
        ::posix_spawnattr_init(&value_);
        int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
        flags |= ownSession ? POSIX_SPAWN_SETSID : POSIX_SPAWN_SETPGROUP;
#ifdef __APPLE__
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
        sigset_t signals;
        sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&value_, &signals);
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&value_, &signals);
        ::posix_spawnattr_setpgroup(&value_, 0);
        ::posix_spawnattr_setflags(&value_, static_cast<short>(flags));
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() {
        ::posix_spawnattr_destroy(&value_);
    }
    const posix_spawnattr_t* get() const {
        return &value_;
    }

  private:
    posix_spawnattr_t value_;
};

class FileActions {
  public:
    FileActions(int input, int output, int errors) {
        ::posix_spawn_file_actions_init(&value_);
        if (input >= 0) {
            ::posix_spawn_file_actions_adddup2(&value_, input, STDIN_FILENO);
        } else {
            ::posix_spawn_file_actions_addopen(&value_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        }
        ::posix_spawn_file_actions_adddup2(&value_, output, STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&value_, errors, STDERR_FILENO);
#ifndef __APPLE__
        // A library's descriptor without close-on-exec must not reach a tool, let alone one with other
        // rights.
        ::posix_spawn_file_actions_addclosefrom_np(&value_, STDERR_FILENO + 1);
#endif
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() {
        ::posix_spawn_file_actions_destroy(&value_);
    }
    const posix_spawn_file_actions_t* get() const {
        return &value_;
    }

  private:
    posix_spawn_file_actions_t value_;
};

} // namespace

Environment environmentWith(const Environment& entries) {
    Environment result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view name = nameOf(*entry);
        const bool replaced = std::any_of(entries.begin(), entries.end(),
                                          [&](const std::string& other) { return nameOf(other) == name; });
        if (!replaced) result.emplace_back(*entry);
    }
    result.insert(result.end(), entries.begin(), entries.end());
    return result;
}

int spawn(const Spawn& call, pid_t& child) {
    const FileActions actions(call.input, call.output, call.errors);
    const Attributes attributes(call.ownSession);
    const std::vector<char*> arguments = pointers(call.arguments, &call.path);
    const std::vector<char*> environment = pointers(call.environment, nullptr);
    return ::posix_spawn(&child, call.path.c_str(), actions.get(), attributes.get(), arguments.data(),
                         environment.data());
}

std::optional<int> reapIfEnded(pid_t child) {
    int waited = 0;
    const pid_t ended = ::waitpid(child, &waited, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return std::nullopt;
    if (ended == child && WIFEXITED(waited)) return WEXITSTATUS(waited);
    if (ended == child && WIFSIGNALED(waited)) return 128 + WTERMSIG(waited);
    return -1;
}

void killGroup(pid_t child) {
    ::kill(-child, SIGKILL);
}

void reapInBackground(pid_t child) {
    std::thread([child] {
        while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }).detach();
}

} // namespace corvane::posix
