// The programs themselves, started at the Mac's paths under the tool root.
#include "simulated_fixture.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <thread>

namespace corvane::simulated {

class ToolProcess : public SimulatedMac {
  protected:
    ToolProcess() {
        ::setenv("WENDREL_SIMULATED_NETWORK", file.c_str(), 1);
        edit([](State& state) { state.delayScale = 0; });
    }
    ~ToolProcess() override { ::unsetenv("WENDREL_SIMULATED_NETWORK"); }

    /// What the shell command prints on both outputs; its status in `status`.
    std::string shell(const std::string& command) {
        FILE* pipe = ::popen((root + command + " 2>&1").c_str(), "r");
        std::string output;
        std::array<char, 4096> block{};
        while (const std::size_t count = ::fread(block.data(), 1, block.size(), pipe))
            output.append(block.data(), count);
        const int result = ::pclose(pipe);
        status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
        return output;
    }

    const std::string root = WENDREL_TOOL_ROOTS "/sim";
    int status = -1;
};

TEST_F(ToolProcess, StandsAtTheMacsPaths) {
    EXPECT_EQ(shell("/usr/sbin/networksetup -getdnsservers Wi-Fi"),
              "There aren't any DNS Servers set on Wi-Fi.\n");
    EXPECT_EQ(shell("/sbin/ifconfig en7"), "ifconfig: interface en7 does not exist\n");
    EXPECT_EQ(status, 1);
    EXPECT_NE(shell("/sbin/route -n get default").find("  interface: en0\n"), std::string::npos);
    shell("/sbin/ping -c 1 -W 100 -n 10.0.10.40");
    EXPECT_EQ(status, 0);
    edit([](State& state) { state.failNext = {{"ping", "Bus error", 138}}; });
    EXPECT_EQ(shell("/sbin/ping -c 1 -W 100 -n 10.0.10.40"), "Bus error\n");
    EXPECT_EQ(status, 138);
    ::unsetenv("WENDREL_SIMULATED_NETWORK");
    EXPECT_EQ(shell("/sbin/ifconfig en5").substr(0, 10), "** Error: ");
}

TEST_F(ToolProcess, WritersAtTheSameTimeLoseNothing) {
    constexpr int writers = 8;
    std::vector<std::thread> threads;
    const std::string program = root + "/usr/sbin/networksetup";
    for (int i = 0; i < writers; ++i)
        threads.emplace_back([&, i] {
            const std::string line =
                program + " -createVLAN V" + std::to_string(i) + " en5 " + std::to_string(10 + i);
            EXPECT_EQ(std::system(line.c_str()), 0);
            EXPECT_EQ(std::system((program + " -listVLANs >/dev/null").c_str()), 0);
        });
    for (std::thread& thread : threads) thread.join();
    const LoadResult loaded = StateFile(file).load();
    ASSERT_TRUE(loaded.state);
    EXPECT_EQ(loaded.state->vlans.size(), static_cast<std::size_t>(writers));
    EXPECT_EQ(loaded.state->devices.size(), 6u + writers) << "each has a device of its own";
}

TEST_F(ToolProcess, TakesAsLongAsTheRealOne) {
    edit([](State& state) { state.delayScale = 1; });
    const auto start = std::chrono::steady_clock::now();
    shell("/usr/sbin/networksetup -setdhcp Wi-Fi");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

} // namespace corvane::simulated
