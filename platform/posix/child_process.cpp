#include "platform/posix/child_process.h"

#include "platform/posix/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern "C" char** environ;

namespace corvane::posix {

namespace {

using Clock = std::chrono::steady_clock;

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

struct Stream {
    Descriptor reading;
    std::string* kept;
};

/// Milliseconds for poll, rounded up, so that the deadline has passed when poll says that nothing came.
int remaining(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

/// False when the deadline passed first.
bool collect(std::vector<Stream>& streams, Clock::time_point deadline, std::size_t limit) {
    std::array<char, 65536> buffer;
    std::array<pollfd, 2> waiting;
    while (!streams.empty()) {
        for (std::size_t i = 0; i < streams.size(); ++i) waiting[i] = {streams[i].reading.get(), POLLIN, 0};
        const int ready = ::poll(waiting.data(), static_cast<nfds_t>(streams.size()), remaining(deadline));
        if (ready < 0 && errno != EINTR) return true;
        // A child that never stops writing never lets poll time out.
        if (Clock::now() >= deadline) return false;
        if (ready <= 0) continue;
        for (std::size_t i = streams.size(); i-- > 0;) {
            if (waiting[i].revents == 0) continue;
            const ssize_t count = ::read(streams[i].reading.get(), buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) {
                streams.erase(streams.begin() + static_cast<std::ptrdiff_t>(i));
                continue;
            }
            std::string& kept = *streams[i].kept;
            kept.append(buffer.data(), std::min(static_cast<std::size_t>(count), limit - kept.size()));
        }
    }
    return true;
}

int statusOf(int waited) {
    if (WIFEXITED(waited)) return WEXITSTATUS(waited);
    if (WIFSIGNALED(waited)) return 128 + WTERMSIG(waited);
    return -1;
}

/// False when the deadline passed first. A child's output ends in the last moments of its exit, so there is
/// next to nothing to wait for; the pauses grow for the odd tool that closes its output and stays.
bool reap(pid_t child, Clock::time_point deadline, int& status) {
    auto pause = std::chrono::microseconds(50);
    for (int round = 0;; ++round) {
        int waited = 0;
        const pid_t ended = ::waitpid(child, &waited, WNOHANG);
        if (ended == child) {
            status = statusOf(waited);
            return true;
        }
        // Reaped elsewhere, or the program ignores SIGCHLD: it has ended all the same.
        if (ended < 0 && errno != EINTR) return true;
        if (Clock::now() >= deadline) return false;
        if (round < 3) {
            ::sched_yield();
            continue;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(10'000));
    }
}

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

ChildResult runChild(const ChildCall& call) {
    ChildResult result;
    Pipe input;
    if (!call.input.empty()) {
        // Written before the child lives: nobody can close the other end in between (no SIGPIPE), and the
        // child finds the end of its input right behind.
        input = openPipe();
        result.startError = call.input.size() > maxInput ? E2BIG : input.error;
        if (result.startError != 0) return result;
        const ssize_t written = ::write(input.writing.get(), call.input.data(), call.input.size());
        if (written != static_cast<ssize_t>(call.input.size())) {
            result.startError = written < 0 ? errno : EIO;
            return result;
        }
        input.writing.reset();
    }
    Pipe output = openPipe();
    Pipe errors = call.mergeErrors ? Pipe{} : openPipe();
    result.startError = output.error != 0 ? output.error : errors.error;
    if (result.startError != 0) return result;

    pid_t child = -1;
    {
        const int errorEnd = call.mergeErrors ? output.writing.get() : errors.writing.get();
        const FileActions actions(input.reading.get(), output.writing.get(), errorEnd);
        const Attributes attributes(call.ownSession);
        const std::vector<char*> arguments = pointers(call.arguments, &call.path);
        const std::vector<char*> environment = pointers(call.environment, nullptr);
        result.startError = ::posix_spawn(&child, call.path.c_str(), actions.get(), attributes.get(),
                                          arguments.data(), environment.data());
    }
    input.reading.reset();
    output.writing.reset();
    errors.writing.reset();
    if (result.startError != 0) return result;

    const Clock::time_point deadline = Clock::now() + call.timeLimit;
    std::vector<Stream> streams;
    streams.push_back({std::move(output.reading), &result.output});
    if (!call.mergeErrors) streams.push_back({std::move(errors.reading), &result.errors});
    if (collect(streams, deadline, call.outputLimit) && reap(child, deadline, result.status)) return result;

    // Not reaped yet, so the number still names this child's group and nobody else's.
    result.timedOut = true;
    ::kill(-child, SIGKILL);
    if (!reap(child, Clock::now() + std::chrono::seconds(1), result.status)) {
        // Out of reach (it changed its user) or stuck in the kernel: not waited for, but not left a zombie.
        std::thread([child] {
            while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
            }
        }).detach();
    }
    return result;
}

} // namespace corvane::posix
