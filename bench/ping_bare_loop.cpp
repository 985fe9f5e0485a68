// What watching hosts costs at the least: starts the same tool at the same rate, and waits for it; no output
// is read, nothing is known.
//
//   ping_bare_loop RATE SECONDS TOOL WAIT_MS HOST...
//
// Prints how many were started and the CPU seconds of itself and of all that it started.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

static double cpuSeconds(int whose) {
    rusage used{};
    ::getrusage(whose, &used);
    return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
}

int main(int argc, char** argv) {
    if (argc < 6) return 64;
    const double rate = std::atof(argv[1]);
    const long count = std::lround(rate * std::atof(argv[2]));
    posix_spawn_file_actions_t silent;
    ::posix_spawn_file_actions_init(&silent);
    ::posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&silent, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    std::atomic<long> started = 0;
    std::atomic<bool> all = false;
    std::thread waiting([&] {
        for (long ended = 0; !all || ended < started;) {
            if (::waitpid(-1, nullptr, 0) > 0)
                ++ended;
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    const auto start = std::chrono::steady_clock::now();
    std::string words[] = {"-c", "1", "-W", argv[4], "-n"};
    for (long i = 0; i < count; ++i) {
        std::this_thread::sleep_until(start + std::chrono::duration<double>(static_cast<double>(i) / rate));
        std::vector<char*> arguments{argv[3]};
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(argv[5 + i % (argc - 5)]);
        arguments.push_back(nullptr);
        pid_t child = 0;
        if (::posix_spawn(&child, argv[3], &silent, nullptr, arguments.data(), environ) == 0) ++started;
    }
    all = true;
    waiting.join();
    std::printf("%ld %.6f\n", started.load(), cpuSeconds(RUSAGE_SELF) + cpuSeconds(RUSAGE_CHILDREN));
    return started == count ? 0 : 1;
}
