#include "platform/posix/descriptor.h"
#include "platform/shared/pooled_tool_starter.h"

#include "scratch.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace corvane {

using tests::Scratch;
using tests::Stopwatch;

class ToolStarterTest : public testing::Test {
  protected:
    using Result = ToolStarter::Result;

    void use(PooledToolStarter::Limits limits) {
        starter = std::make_unique<PooledToolStarter>("", posix::Environment{}, limits);
    }
    /// A shell script; its result in `results` under that name.
    void begin(const std::string& name, const std::string& script) {
        jobs[name] = starter->start("/bin/sh", {"-c", script}, [this, name](const Result& result) {
            EXPECT_EQ(QThread::currentThread(), mainThread);
            EXPECT_TRUE(results.emplace(name, result).second) << name << " ended twice";
        });
    }
    bool waitFor(const std::function<bool()>& condition, long limitMs = 20'000) {
        const Stopwatch watch;
        while (!condition() && watch.ms() < limitMs)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return condition();
    }
    bool waitForResults(std::size_t count) {
        return waitFor([&] { return results.size() >= count; });
    }
    Result run(const std::string& script) {
        results.clear();
        begin("one", script);
        waitForResults(1);
        return results["one"];
    }
    /// No child is left, not even a dead one that nobody has waited for.
    static bool childless() { return ::waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD; }
    /// Whether the process is gone, or dead and only waiting for init to notice.
    static bool ended(const std::string& pid) {
        std::ifstream file("/proc/" + pid + "/stat");
        const std::string stat{std::istreambuf_iterator<char>(file), {}};
        const std::size_t name = stat.rfind(')');
        return name == std::string::npos || stat.at(name + 2) == 'Z';
    }

    int argumentCount = 1;
    char programName[5] = "test";
    char* arguments[2] = {programName, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QThread* const mainThread = QThread::currentThread();
    std::map<std::string, Result> results;
    std::unique_ptr<ToolStarter> starter = std::make_unique<PooledToolStarter>("");
    std::map<std::string, std::unique_ptr<ToolStarter::Job>> jobs;
};

TEST_F(ToolStarterTest, GivesStatusAndBothOutputsInOrder) {
    begin("plain", "echo one; echo two >&2; echo three; exit 3");
    begin("killed", "kill -TERM $$");
    begin("ill-formed", "printf 'a\\377b'");
    begin("silent", ":");
    begin("no input", "cat; echo end");
    EXPECT_TRUE(results.empty()) << "never from within start";
    ASSERT_TRUE(waitForResults(5));
    EXPECT_EQ(results["plain"].output, "one\ntwo\nthree\n");
    EXPECT_EQ(results["plain"].status, 3);
    EXPECT_EQ(results["killed"].status, 128 + SIGTERM);
    EXPECT_EQ(results["ill-formed"].output, "a\uFFFDb");
    EXPECT_TRUE(results["silent"].started);
    EXPECT_EQ(results["silent"].status, 0);
    EXPECT_EQ(results["no input"].output, "end\n");
    EXPECT_TRUE(childless());
}

TEST_F(ToolStarterTest, PutsRootAndEnvironmentInPlace) {
    const Scratch scratch;
    scratch.program("sbin/tool", "echo \"$1\" $WENDREL_TEST_VALUE");
    starter =
        std::make_unique<PooledToolStarter>(scratch.path(), posix::Environment{"WENDREL_TEST_VALUE=new"});
    std::vector<Result> got;
    const auto keep = [&](const Result& result) { got.push_back(result); };
    const auto first = starter->start("/sbin/tool", {"$HOME `id` *"}, keep);
    ASSERT_TRUE(waitFor([&] { return got.size() == 1; }));
    EXPECT_EQ(got[0].output, "$HOME `id` * new\n");
    const auto second = starter->start("/bin/echo", {"x"}, keep);
    ASSERT_TRUE(waitFor([&] { return got.size() == 2; }));
    EXPECT_FALSE(got[1].started) << "with a root, no tool of this computer is run in its place";
}

TEST_F(ToolStarterTest, SaysWhenAToolCannotBeStarted) {
    const Scratch scratch;
    int failed = 0;
    const auto count = [&](const Result& result) {
        EXPECT_FALSE(result.started);
        EXPECT_EQ(result.status, -1);
        ++failed;
    };
    const auto nothing = starter->start("/nonexistent/tool", {}, count);
    const auto folder = starter->start(scratch.path(), {}, count);
    const auto endless = starter->start("/bin/echo", {std::string(4U << 20, 'x')}, count);
    ASSERT_TRUE(waitFor([&] { return failed == 3; }));
    EXPECT_EQ(run("echo still").output, "still\n");
}

TEST_F(ToolStarterTest, OutlivesALackOfDescriptors) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    for (const bool threadRuns : {true, false}) {
        // Once in any case: Qt's event loop and the sanitizers open what they need at first use.
        EXPECT_EQ(run("echo begun").output, "begun\n");
        // UBSan looks at an object through a pipe of its own, so none ends while there is no descriptor.
        jobs.clear();
        if (!threadRuns) use({});
        const int next = ::dup(0);
        ::close(next);
        rlimit none = before;
        none.rlim_cur = static_cast<rlim_t>(next);
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
        const Result refused = run("echo no");
        EXPECT_FALSE(refused.started);
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
        EXPECT_EQ(run("echo again").output, "again\n");
    }
}

TEST_F(ToolStarterTest, RaisesALowLimitOfDescriptorsButNoOther) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlim_t enough = std::min<rlim_t>(4096, limit.rlim_max);
    for (const rlim_t before : {rlim_t(256), enough, std::min<rlim_t>(8000, limit.rlim_max)}) {
        limit.rlim_cur = before;
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        posix::allowManyDescriptors();
        rlimit after{};
        ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &after), 0);
        EXPECT_EQ(after.rlim_cur, std::max(before, enough));
    }
}

TEST_F(ToolStarterTest, RunsHundredsAtOnce) {
    const Stopwatch watch;
    for (int i = 0; i < 300; ++i) begin(std::to_string(i), "sleep 1; echo " + std::to_string(i));
    EXPECT_LT(watch.ms(), 500) << "starting doesn't hold the caller";
    ASSERT_TRUE(waitFor([&] { return results.size() == 300; }, 60'000));
    EXPECT_LT(watch.ms(), 40'000);
    for (const auto& [name, result] : results) EXPECT_EQ(result.output, name + "\n");
    EXPECT_TRUE(childless());
}

TEST_F(ToolStarterTest, KeepsNoMoreThanTheLimitAndHoldsUpNobodyElse) {
    const Scratch scratch;
    use({.output = 1000});
    begin("flood", "head -c 100000000 /dev/zero | tr '\\0' y; echo done >" + scratch.path("end"));
    const Stopwatch watch;
    begin("small", "echo small");
    ASSERT_TRUE(waitFor([&] { return results.contains("small"); }));
    EXPECT_FALSE(results.contains("flood"));
    ASSERT_TRUE(waitForResults(2));
    EXPECT_EQ(results["flood"].output, std::string(1000, 'y'));
    EXPECT_EQ(scratch.read("end"), "done\n") << "the tool must be able to finish";
}

TEST_F(ToolStarterTest, WaitsForOutputAndExit) {
    begin("closes its output and stays", "echo early; exec >&- 2>&-; sleep 0.3; exit 5");
    begin("leaves a child writing", "(sleep 0.3; echo late) & echo first; exit 6");
    ASSERT_TRUE(waitForResults(2));
    EXPECT_EQ(results["closes its output and stays"].output, "early\n");
    EXPECT_EQ(results["closes its output and stays"].status, 5);
    EXPECT_EQ(results["leaves a child writing"].output, "first\nlate\n");
    EXPECT_EQ(results["leaves a child writing"].status, 6);
}

TEST_F(ToolStarterTest, EndsAToolThatNeverDoes) {
    use({.time = std::chrono::milliseconds(400)});
    const Stopwatch watch;
    begin("stuck with a child", "sleep 60 & echo $!; wait");
    begin("its output closed", "echo $$; exec >&- 2>&-; sleep 60");
    begin("a child holds the output", "sleep 60 & echo $!");
    begin("deaf to signals", "trap '' TERM INT HUP; echo $$; while :; do sleep 1; done");
    begin("out of the group", "setsid sh -c 'echo $$; sleep 8' & wait");
    ASSERT_TRUE(waitForResults(5));
    EXPECT_GE(watch.ms(), 390);
    EXPECT_LT(watch.ms(), 5000);
    for (auto& [name, result] : results) {
        ASSERT_FALSE(result.output.empty()) << name << ": what was printed before is kept";
        EXPECT_TRUE(result.started) << name;
        EXPECT_EQ(result.status, name == "a child holds the output" ? 0 : 128 + SIGKILL) << name;
        result.output.pop_back();
        if (name == "out of the group") continue;
        EXPECT_TRUE(waitFor([&, pid = result.output] { return ended(pid); })) << name;
    }
    EXPECT_TRUE(childless());
}

TEST_F(ToolStarterTest, ADestroyedJobTakesItsToolsAlong) {
    const Scratch scratch;
    begin("parent", "sleep 60 & echo $! >" + scratch.path("pid") + "; wait");
    ASSERT_TRUE(waitFor([&] { return scratch.read("pid").ends_with('\n'); }));
    begin("at once", "echo no");
    jobs.erase("at once");
    begin("ended unheard", "echo $$ >" + scratch.path("quick"));
    while (!scratch.read("quick").ends_with('\n')) ::usleep(1000);
    ::usleep(50'000);
    jobs.clear();
    std::string pid = scratch.read("pid");
    pid.pop_back();
    EXPECT_TRUE(waitFor([&] { return ended(pid) && childless(); }));
    EXPECT_TRUE(results.empty());
}

TEST_F(ToolStarterTest, ADoneMayDropItsJobAndStartTheNext) {
    int rounds = 0;
    std::unique_ptr<ToolStarter::Job> job;
    std::function<void(const Result&)> next = [&](const Result&) {
        job.reset();
        if (++rounds < 20) job = starter->start("/bin/true", {}, next);
    };
    job = starter->start("/bin/true", {}, next);
    EXPECT_TRUE(waitFor([&] { return rounds == 20; }));
}

TEST_F(ToolStarterTest, GoesUnderLoadWithoutATrace) {
    const Scratch scratch;
    for (int i = 0; i < 100; ++i)
        begin(std::to_string(i), "sleep 60 & echo x >>" + scratch.path("begun") + "; wait");
    for (int i = 100; i < 200; ++i) begin(std::to_string(i), "yes");
    ASSERT_TRUE(waitFor([&] { return scratch.read("begun").size() >= 50; }));
    const Stopwatch watch;
    starter.reset();
    EXPECT_LT(watch.ms(), 3000);
    EXPECT_TRUE(childless());
    jobs.clear();
    QCoreApplication::processEvents();
    EXPECT_TRUE(results.empty());
}

} // namespace corvane
