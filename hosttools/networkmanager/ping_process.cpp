#include "hosttools/networkmanager/ping_process.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace corvane::networkmanager {

/// Standard output and error of the program, read to their end.
static std::string capture(const char* program, const std::vector<std::string>& arguments) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return {};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    std::vector<char*> words{const_cast<char*>(program)};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    // Numbers and sentences of one language.
    char language[] = "LC_ALL=C";
    char* environment[] = {language, nullptr};
    pid_t child = 0;
    const int failed = ::posix_spawn(&child, program, &actions, nullptr, words.data(), environment);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::string output;
    char block[1024];
    while (failed == 0 && output.size() < 65536) {
        const ssize_t count = ::read(ends[0], block, sizeof block);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        output.append(block, static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    if (failed == 0)
        while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    return output;
}

void readPing(const std::string& output, hosttools::PingReply& reply) {
    // "64 bytes from 10.5.0.1: icmp_seq=1 ttl=64 time=0.061 ms"
    const std::size_t line = output.find(" bytes from ");
    const std::size_t time = line == std::string::npos ? line : output.find(" time=", line);
    if (time != std::string::npos) {
        reply.kind = hosttools::PingReply::Kind::reply;
        reply.ms = std::strtod(output.c_str() + time + 6, nullptr);
        if (const std::size_t ttl = output.find(" ttl=", line); ttl < time)
            reply.ttl = static_cast<int>(std::strtol(output.c_str() + ttl + 5, nullptr, 10));
        return;
    }
    reply.kind = hosttools::PingReply::Kind::timeout;
    if (output.find("unreachable") != std::string::npos && output.find("From ") == std::string::npos)
        reply.note = "sendto: No route to host";
    if (output.find("unknown iface") != std::string::npos ||
        output.find("SO_BINDTODEVICE") != std::string::npos)
        reply.note = "bad interface name";
    if (output.find("not permitted") != std::string::npos) reply.note = "socket: Operation not permitted";
}

hosttools::PingReply runPing(const std::string& address, int waitMs,
                             const std::optional<std::string>& device) {
    hosttools::PingReply reply;
    reply.address = address;
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%d.%03d", waitMs / 1000, waitMs % 1000);
    std::vector<std::string> arguments{"-c", "1", "-W", seconds, "-n"};
    if (device) arguments.insert(arguments.end(), {"-I", *device});
    arguments.push_back(address);
    const char* program = ::access("/usr/bin/ping", X_OK) == 0 ? "/usr/bin/ping" : "/bin/ping";
    const std::string output = capture(program, arguments);
    if (output.empty()) reply.note = "the system's ping can't be started";
    readPing(output, reply);
    return reply;
}

} // namespace corvane::networkmanager
