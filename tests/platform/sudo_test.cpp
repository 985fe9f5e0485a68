#include "platform/linux/privileged_runners.h"
#include "platform/posix/user_name.h"

#include "core/support/uuid.h"
#include "scratch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace corvane {

using tests::Scratch;
using tests::Stopwatch;
using Kind = ApplyResult::Kind;

/// As sudo behaves: reads a line, answers a wrong one, asks again, gives up at the end of its input, and
/// starts what stands behind "--" when the line was right.
static const char* const sudoScript = R"sh(
here=${0%/*}
printf '%s\n' "$@" > "$here/arguments"; env > "$here/environment"; cat "$here/before" >&2 2>/dev/null
IFS= read -r line || { echo 'sudo: a password is required' >&2; exit 1; }
if [ "$line" != "$(cat "$here/right")" ]; then
    echo 'Sorry, try again.' >&2
    IFS= read -r line || { echo 'sudo: no password was provided' >&2; exit 1; }
    [ "$line" = "$(cat "$here/right")" ] || { echo 'sudo: 2 incorrect password attempts' >&2; exit 1; }
fi
while [ "$1" != -- ]; do shift; done
shift; exec "$@"
)sh";

class Sudo : public testing::Test {
  protected:
    Sudo() {
        scratch.program("sudo", sudoScript);
        scratch.write("right", right);
    }
    ApplyResult run(const std::string& script, const std::string& password, const std::string& root = {}) {
        SudoRunner runner(root, scratch.path("sudo"), std::chrono::milliseconds(3000));
        return runner.run({.commands = {}, .purpose = {}, .script = script},
                          Credentials{posix::userName(), Secret(password)});
    }
    Scratch scratch;
    const std::string right = "p'ä\"$(x) " + Uuid::generate().text();
};

TEST_F(Sudo, RunsTheScriptAndJudgesItsTextAndStatus) {
    scratch.write("before", "We trust you have received the usual lecture.\n");
    EXPECT_EQ(run("echo done > " + scratch.path("made"), right), ApplyResult::success());
    EXPECT_EQ(scratch.read("made"), "done\n");
    EXPECT_EQ(run("echo '** Error: The parameters were not valid.'", right),
              ApplyResult::failed("** Error: The parameters were not valid."));
    EXPECT_EQ(run("echo text; echo why >&2; exit 4", right), ApplyResult::failed("why"));
    EXPECT_EQ(run("echo text; exit 4", right), ApplyResult::failed("text"));
    EXPECT_EQ(run("exit 1", right), ApplyResult::failed("The command exited with a non-zero status."));
    EXPECT_EQ(run("echo 'Sorry, try again.' >&2; exit 1", right), ApplyResult::failed("Sorry, try again."))
        << "the script's words are not sudo's";
    EXPECT_EQ(run("IFS= read -r x; echo \"got $x error\"", right), ApplyResult::failed("got  error"))
        << "nothing of the input reaches the script";
}

TEST_F(Sudo, TellsAWrongPasswordFromARefusedAccount) {
    EXPECT_EQ(run("true", "wrong").kind(), Kind::passwordRejected);
    EXPECT_EQ(run("true", "").kind(), Kind::passwordRejected);
    EXPECT_EQ(run("true", "wrong\n" + right).kind(), Kind::passwordRejected) << "one line, one attempt";
    EXPECT_EQ(run("true", std::string(5000, 'x')).kind(), Kind::passwordRejected);
    for (const char* words : {"%s is not in the sudoers file.", "Sorry, user %s may not run sudo on desk."}) {
        scratch.program("sudo", "read -r x; echo '" + std::string(words) + "' >&2; exit 1");
        const ApplyResult result = run("true", right);
        EXPECT_EQ(result.kind(), Kind::failed);
        EXPECT_NE(result.message().find("isn't an administrator"), std::string::npos) << result.message();
    }
    scratch.program("sudo", "echo 'sudo: The \"no new privileges\" flag is set.' >&2; exit 1");
    EXPECT_EQ(run("true", right).message(), "sudo: The \"no new privileges\" flag is set.");
    scratch.program("sudo", "exit 1");
    EXPECT_FALSE(run("true", right).message().empty());
}

TEST_F(Sudo, SaysWhatItCannotDo) {
    SudoRunner missing("", scratch.path("none"));
    const PrivilegedRequest request{.commands = {{"/bin/true"}}, .purpose = {}, .script = std::nullopt};
    const ApplyResult noSudo = missing.run(request, Credentials{posix::userName(), Secret("x")});
    EXPECT_EQ(noSudo.kind(), Kind::failed);
    EXPECT_NE(noSudo.message().find("no sudo"), std::string::npos);

    SudoRunner runner("", scratch.path("sudo"));
    const ApplyResult other = runner.run(request, Credentials{"somebody-else", Secret(right)});
    EXPECT_EQ(other.kind(), Kind::failed) << "asking again would never end";
    EXPECT_NE(other.message().find("“somebody-else”"), std::string::npos);
    EXPECT_EQ(runner.run(request, std::nullopt).kind(), Kind::failed);
    EXPECT_NE(scratch.read("arguments").find("-n\n"), std::string::npos)
        << "without credentials nobody is asked";
}

TEST_F(Sudo, NeverWaitsForEver) {
    scratch.program("sudo", "exec sleep 60");
    const Stopwatch watch;
    EXPECT_EQ(run("true", right).kind(), Kind::failed);
    EXPECT_LT(watch.ms(), 10'000);
}

TEST_F(Sudo, PutsTheRootBeforeCommandsThatStandThere) {
    scratch.program("root/usr/sbin/networksetup", "echo \"error $1\"");
    SudoRunner runner(scratch.path("root"), scratch.path("sudo"));
    PrivilegedRequest request{.commands = {{"/bin/echo", "fine"}, {"/usr/sbin/networksetup", "it's"}},
                              .purpose = {},
                              .script = std::nullopt};
    EXPECT_EQ(runner.run(request, Credentials{posix::userName(), Secret(right)}),
              ApplyResult::failed("fine\nerror it's"));
}

/// Argument lists and environments of every process, searched for the text.
static bool visibleInProcesses(const std::string& text) {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        for (const char* name : {"cmdline", "environ"}) {
            std::ifstream file(process.path() / name, std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            if (content.find(text) != std::string::npos) return true;
        }
    }
    return false;
}

TEST_F(Sudo, KeepsThePasswordOutOfArgumentsAndEnvironments) {
    std::atomic<bool> ended = false;
    std::atomic<bool> seen = false;
    std::atomic<int> rounds = 0;
    std::thread watcher([&] {
        while (!ended) {
            if (visibleInProcesses(right)) seen = true;
            ++rounds;
        }
    });
    EXPECT_EQ(run("sleep 0.5", right), ApplyResult::success());
    EXPECT_EQ(run("sleep 0.1", "wrong" + right).kind(), Kind::passwordRejected);
    ended = true;
    watcher.join();
    EXPECT_FALSE(seen);
    EXPECT_GT(rounds.load(), 1);
    EXPECT_EQ(scratch.read("arguments").find(right), std::string::npos);
    EXPECT_EQ(scratch.read("environment").find(right), std::string::npos);
    EXPECT_NE(scratch.read("environment").find("LC_ALL=C\n"), std::string::npos);

    // The search does find what is there.
    const std::string shown = Uuid::generate().text();
    std::thread control([&] {
        RootRunner("").run({.commands = {}, .purpose = {}, .script = "sleep 1; : " + shown}, std::nullopt);
    });
    bool found = false;
    for (int i = 0; i < 100 && !found; ++i) found = visibleInProcesses(shown);
    control.join();
    EXPECT_TRUE(found);
}

TEST(RootRunner, RunsWithItsOwnRights) {
    RootRunner runner("");
    EXPECT_FALSE(runner.needsPassword());
    EXPECT_EQ(runner.run({.commands = {{"/bin/echo", "it's \"$HOME\"; exit 3"}}, .purpose = {}, .script = {}},
                         std::nullopt),
              ApplyResult::success());
    EXPECT_EQ(runner.run({.commands = {{"/bin/echo", "Error"}, {"/bin/true"}}, .purpose = {}, .script = {}},
                         std::nullopt),
              ApplyResult::failed("Error"));
}

} // namespace corvane
