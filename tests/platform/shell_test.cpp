#include "platform/posix/posix_shell.h"

#include "scratch.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace corvane {

using tests::Scratch;
using tests::Stopwatch;

static std::string sh(const std::string& script, PosixShell::Limits limits = {}) {
    return PosixShell("", {}, limits).run("/bin/sh", {"-c", script});
}

/// Whether the process is gone, or dead and only waiting for init to notice.
static bool ended(const std::string& pid) {
    std::ifstream file("/proc/" + pid + "/stat");
    const std::string stat{std::istreambuf_iterator<char>(file), {}};
    const std::size_t name = stat.rfind(')');
    return name == std::string::npos || stat.at(name + 2) == 'Z';
}

TEST(Shell, PassesArgumentsAsTheyAreAndReadsBothOutputsInOrder) {
    const PosixShell shell("");
    for (const std::string name :
         {"Bob's \"USB\"", "-n", "--help", "", "a\nb", "$HOME `id` \\", "🎛 Bühne", "(1) *"})
        EXPECT_EQ(shell.run("/usr/bin/printf", {"[%s]", name}), "[" + name + "]");
    EXPECT_EQ(sh("echo one; echo two >&2; echo three"), "one\ntwo\nthree\n");
    EXPECT_EQ(sh("echo failed; exit 3"), "failed\n");
}

TEST(Shell, GivesNothingWhenTheToolCannotBeStarted) {
    const Scratch scratch;
    const PosixShell shell("");
    EXPECT_EQ(shell.run("/nonexistent/tool", {"-x"}), "");
    EXPECT_EQ(shell.run(scratch.path(), {}), "");
    EXPECT_EQ(shell.run(scratch.write("plain", "echo no"), {}), "");
    EXPECT_EQ(shell.run("/bin/echo", {std::string(4U << 20, 'x')}), "") << "longer than exec takes";
}

TEST(Shell, RepairsTextAndKeepsNoMoreThanTheLimit) {
    EXPECT_EQ(sh("printf 'a\\377b\\300'"), "a\uFFFDb\uFFFD");
    EXPECT_EQ(sh("head -c 3000000 /dev/zero | tr '\\0' x"), std::string(3'000'000, 'x'));
    const Scratch scratch;
    const std::string kept =
        sh("head -c 20000000 /dev/zero | tr '\\0' y; echo done > " + scratch.path("end"), {.output = 1000});
    EXPECT_EQ(kept, std::string(1000, 'y'));
    EXPECT_EQ(scratch.read("end"), "done\n") << "the tool must be able to finish";
}

TEST(Shell, EndsAToolThatNeverDoes) {
    const PosixShell::Limits soon{.time = std::chrono::milliseconds(400)};
    const std::pair<const char*, const char*> cases[] = {
        {"stuck with a child", "sleep 60 & echo $!; wait"},
        {"its output closed", "echo $$; exec >&- 2>&-; sleep 60"},
        {"a child holds the output", "sleep 60 & echo $!"},
        {"deaf to signals", "trap '' TERM INT HUP; echo $$; while :; do sleep 1; done"},
    };
    for (const auto& [name, script] : cases) {
        const Stopwatch watch;
        std::string pid = sh(script, soon);
        EXPECT_GE(watch.ms(), 390) << name;
        EXPECT_LT(watch.ms(), 5000) << name;
        ASSERT_FALSE(pid.empty()) << name << ": what was printed before is kept";
        pid.pop_back();
        for (int i = 0; i < 100 && !ended(pid); ++i) ::usleep(20'000);
        EXPECT_TRUE(ended(pid)) << name;
    }
    EXPECT_EQ(sh("yes", {.time = std::chrono::milliseconds(300), .output = 4}), "y\ny\n");
    EXPECT_EQ(sh("(sleep 0.2; echo late) & echo first"), "first\nlate\n")
        << "read to the end, not to the exit";
}

TEST(Shell, GivesTheChildACleanProcess) {
    const int leaking = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(leaking, 0);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const std::string status = sh("cat; exec cat /proc/self/status");
    EXPECT_NE(status.find("SigBlk:\t0000000000000000"), std::string::npos) << status;
    const std::size_t ignored = status.find("SigIgn:\t");
    ASSERT_NE(ignored, std::string::npos);
    // glibc starts children with its two internal signals, 32 and 33, ignored.
    EXPECT_EQ(std::stoull(status.substr(ignored + 8, 16), nullptr, 16) & 0x7fffffffU, 0U) << status;
    EXPECT_EQ(sh("ls /proc/self/fd"), "0\n1\n2\n3\n") << "3 is the folder being listed";
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGCHLD, SIG_DFL);
    ::close(leaking);
}

TEST(Shell, WorksWithoutStandardDescriptors) {
    const auto closedAndRun = [] {
        for (const int fd : {0, 1, 2}) ::close(fd);
        ::_exit(sh("echo out; echo err >&2") == "out\nerr\n" ? 0 : 1);
    };
    EXPECT_EXIT(closedAndRun(), testing::ExitedWithCode(0), "");
}

TEST(Shell, PutsRootAndEnvironmentInPlace) {
    const Scratch scratch;
    scratch.program("sbin/tool", "echo rooted $1 $WENDREL_TEST_VALUE");
    ::setenv("WENDREL_TEST_VALUE", "old", 1);
    const PosixShell shell(scratch.path(), {"WENDREL_TEST_VALUE=new"});
    EXPECT_EQ(shell.run("/sbin/tool", {"x"}), "rooted x new\n");
    EXPECT_EQ(shell.run("/bin/echo", {"x"}), "")
        << "with a root, no tool of this computer is run in its place";
}

TEST(Shell, RunsFromManyThreadsAtOnce) {
    const PosixShell shell("");
    std::vector<std::string> outputs(200);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < outputs.size(); ++i)
        threads.emplace_back([&, i] {
            outputs[i] = shell.run("/bin/sh", {"-c", "echo " + std::to_string(i)});
        });
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < outputs.size(); ++i) EXPECT_EQ(outputs[i], std::to_string(i) + "\n");
}

} // namespace corvane
