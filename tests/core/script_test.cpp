#include "core/netconfig/privileged_script.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>

namespace corvane {

namespace {

/// What /bin/sh prints for a script.
std::string shellOutput(const std::string& script) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(script.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 256> buffer;
    while (const auto got = fread(buffer.data(), 1, buffer.size(), pipe.get()))
        output.append(buffer.data(), got);
    return output;
}

const PrivilegedRequest request{
    {{"/usr/sbin/networksetup", "-setdhcp", "Bob's USB"}, {"/bin/echo", "a\"\\b"}},
    "apply “Show” to Wi-Fi",
    {}};
const std::string literal =
    R"("'/usr/sbin/networksetup' '-setdhcp' 'Bob'\\''s USB' && '/bin/echo' 'a\"\\b' 2>&1")";

} // namespace

TEST(Shell, EveryNameArrivesUnchanged) {
    for (const std::string name :
         {"Bob's USB", "'", "''", "\"", "$HOME `id` $(id)", "two\nlines\n", "🎛 Bühne", "-n", "a\\", "\\'",
          "*", "~", "!", "", " ", "; exit 3", "a && b", "#", "\t\r"}) {
        EXPECT_EQ(shellOutput("printf %s " + NetworkSetup::shellQuote(name) + " x"), name + "x");
    }
}

TEST(Shell, AFailureStopsTheChain) {
    const auto script = NetworkSetup::shellScript({{"echo", "one"}, {"false"}, {"echo", "two"}});
    EXPECT_EQ(script, "'echo' 'one' && 'false' && 'echo' 'two'");
    EXPECT_EQ(shellOutput(script), "one\n");
}

TEST(PrivilegedScript, SourceForTheInterpreter) {
    EXPECT_EQ(PrivilegedScript::source(request),
              "do shell script " + literal +
                  " with prompt \"Wendrel wants to apply “Show” to Wi-Fi.\" with administrator privileges");
    EXPECT_EQ(PrivilegedScript::source(request, "an\"na", "p\\w\""),
              "do shell script " + literal +
                  R"( user name "an\"na" password "p\\w\"" with administrator privileges)");
    auto readyMade = request;
    readyMade.script = "exit 0";
    EXPECT_EQ(PrivilegedScript::script(readyMade), "exit 0");
}

TEST(PrivilegedScript, JudgesOutcomes) {
    using Error = PrivilegedScript::Outcome::Error;
    const auto error = [](int number, const char* message, bool credentials) {
        return PrivilegedScript::judge({Error{number, message}, {}}, credentials);
    };
    for (const bool credentials : {false, true}) {
        EXPECT_EQ(error(-128, "User canceled.", credentials), ApplyResult::cancelled());
        EXPECT_EQ(error(-60006, "password", credentials), ApplyResult::cancelled());
        EXPECT_EQ(error(1, "It broke.", credentials), ApplyResult::failed("It broke."));
        EXPECT_EQ(PrivilegedScript::judge({Error{1}, {}}, credentials), ApplyResult::failed("Unknown error"));
        EXPECT_EQ(PrivilegedScript::judge({}, credentials), ApplyResult::success());
        EXPECT_EQ(PrivilegedScript::judge({{}, "\n** Error: The parameters were not valid.\n"}, credentials),
                  ApplyResult::failed("** Error: The parameters were not valid."));
    }
    EXPECT_EQ(error(-60005, "x", true), ApplyResult::passwordRejected());
    EXPECT_EQ(error(-60007, "x", true), ApplyResult::passwordRejected());
    EXPECT_EQ(error(1, "The user name or PASSWORD was incorrect.", true), ApplyResult::passwordRejected());
    EXPECT_EQ(error(-60005, "The password was incorrect.", false),
              ApplyResult::failed("The password was incorrect."));
    for (const char* text : {"ERROR", "Is Not Valid", "x is not a recognized network service."}) {
        EXPECT_TRUE(NetworkSetup::outputIndicatesError(text)) << text;
    }
    EXPECT_FALSE(NetworkSetup::outputIndicatesError("Wi-Fi is off"));
}

} // namespace corvane
