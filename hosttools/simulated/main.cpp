// networksetup, ifconfig, route and ping of the simulated Mac; see tool_main.h for how the tool is chosen.
#include "hosttools/simulated/simulated_engine.h"
#include "hosttools/tool_main.h"

#include <cstdlib>

int main(int argc, char** argv) {
    using namespace corvane;
    const hosttools::Invocation called = hosttools::invocation(argc, argv);
    const char* file = std::getenv("WENDREL_SIMULATED_NETWORK");
    if (!file || !*file)
        return hosttools::finish(
            {{}, "** Error: WENDREL_SIMULATED_NETWORK doesn't name a state file.\n", 78});
    simulated::SimulatedEngine engine(file);
    engine.delay(called.tool, called.arguments);
    if (const auto fault = engine.takeFault(called.tool, called.arguments)) return hosttools::finish(*fault);
    return hosttools::finish(hosttools::runTool(called.tool, called.arguments, engine));
}
