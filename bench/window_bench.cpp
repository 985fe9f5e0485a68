// Start to first painted window, and idle memory, beside a Qt application with one empty window.

#include "bench/report.h"
#include "bench/simulated_bench_state.h"

#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using namespace corvane;
using Clock = std::chrono::steady_clock;

struct Run {
    double paintedMs = 0;
    double rssMiB = 0;
};

Run start(const std::string& program, const std::string& argument) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(argument.c_str()), nullptr};
    pid_t child = 0;
    const auto begin = Clock::now();
    if (posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ) != 0) {
        std::fprintf(stderr, "%s can't be started.\n", program.c_str());
        std::exit(1);
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    Run run;
    std::string text;
    char buffer[256];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(count));
        if (run.paintedMs == 0 && text.find("painted") != std::string::npos)
            run.paintedMs = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (run.paintedMs == 0) {
        std::fprintf(stderr, "%s painted no window.\n", program.c_str());
        std::exit(1);
    }
    if (const auto at = text.find("rss "); at != std::string::npos) run.rssMiB = std::atof(text.c_str() + at + 4) / 1024;
    return run;
}

} // namespace

int main(int, char** argv) {
    namespace fs = std::filesystem;
    const std::string folder = fs::path(argv[0]).parent_path().string() + "/";
    std::string base = (fs::temp_directory_path() / "wendrel-bench-XXXXXX").string();
    if (!mkdtemp(base.data())) return 1;
    fs::create_directories(base + "/Wendrel");
    bench::writeState(base + "/network.json", 40);
    std::ofstream(base + "/Wendrel/presets.json") << bench::makeLibrary(500, 40).encoded();

    std::vector<double> bare, full;
    start(folder + "bare_window", base);
    start(folder + "full_window", base);
    for (int round = 0; round < 15; ++round) {
        bare.push_back(start(folder + "bare_window", base).paintedMs);
        full.push_back(start(folder + "full_window", base).paintedMs);
    }
    bench::reportRatio("start to first painted window, 40 services, 500 presets", 2, bench::median(bare),
                       bench::median(full), "ms");

    // Long enough for two refreshes and for the page of the selected service.
    setenv("BENCH_IDLE_MS", "10000", 1);
    const Run bareIdle = start(folder + "bare_window", base);
    const Run fullIdle = start(folder + "full_window", base);
    bench::reportRatio("idle memory (resident), the same window", 1.5, bareIdle.rssMiB, fullIdle.rssMiB, "MiB");
    fs::remove_all(base);
    return 0;
}
