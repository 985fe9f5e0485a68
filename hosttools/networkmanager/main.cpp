// networksetup, ifconfig, route and ping over NetworkManager and the kernel; see tool_main.h for how the tool
// is chosen.
#include "hosttools/networkmanager/nm_engine.h"
#include "hosttools/tool_main.h"

#include <csignal>
#include <unistd.h>

/// The last resort: every single call has a limit of its own, and no tool may hang even so.
static void giveUp(int) {
    static constexpr char text[] = "** Error: NetworkManager doesn't answer.\n";
    (void)!::write(STDOUT_FILENO, text, sizeof text - 1);
    ::_exit(1);
}

int main(int argc, char** argv) {
    using namespace corvane;
    const hosttools::Invocation called = hosttools::invocation(argc, argv);
    if (called.tool == "networksetup") {
        std::signal(SIGALRM, giveUp);
        ::alarm(40);
    }
    networkmanager::NmEngine engine;
    return hosttools::finish(hosttools::runTool(called.tool, called.arguments, engine));
}
