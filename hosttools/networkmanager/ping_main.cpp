// ping alone: it is started for every host and second, so it loads nothing but the C library.
#include "hosttools/dialect.h"
#include "hosttools/networkmanager/echo.h"
#include "hosttools/tool_main.h"

int main(int argc, char** argv) {
    using namespace corvane;
    networkmanager::EchoPinger pinger;
    return hosttools::finish(hosttools::ping(hosttools::invocation(argc, argv).arguments, pinger));
}
