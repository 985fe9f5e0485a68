// A simulated Mac in a folder of its own, with a clock that a test moves by hand.
#pragma once

#include "hosttools/dialect.h"
#include "hosttools/simulated/simulated_engine.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace corvane::simulated {

class SimulatedMac : public testing::Test {
  protected:
    SimulatedMac() {
        std::string pattern = (std::filesystem::temp_directory_path() / "wendrel-sim-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        file = folder + "/network.json";
    }
    ~SimulatedMac() override { std::filesystem::remove_all(folder); }

    hosttools::Printed run(const std::string& tool, const std::vector<std::string>& arguments) {
        SimulatedEngine engine(file, {[this] { return now; }, [this](Time ms) { slept += ms; }});
        return hosttools::runTool(tool, arguments, engine);
    }
    std::string setup(const std::vector<std::string>& arguments) {
        return run("networksetup", arguments).out;
    }
    std::string ifconfig(const std::string& device) { return run("ifconfig", {device}).out; }
    void edit(const std::function<void(State&)>& change) {
        ASSERT_EQ(StateFile(file).change(change), std::nullopt);
    }

    std::string folder;
    std::string file;
    Time now = currentTime();
    Time slept = 0;
};

} // namespace corvane::simulated
