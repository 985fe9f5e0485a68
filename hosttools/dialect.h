// The Mac tools' command lines and printed texts, over any engine. Formats: networksetup(8), ifconfig(8),
// route(8), ping(8).
#pragma once

#include "hosttools/engine.h"

#include <string>
#include <vector>

namespace corvane::hosttools {

struct Printed {
    /// Standard output. networksetup prints its errors here too.
    std::string out;
    /// Standard error, used by ifconfig, route and ping.
    std::string err;
    int status = 0;
};

/// `tool` is "networksetup", "ifconfig", "route" or "ping"; anything else prints a usage line with status 64.
Printed runTool(const std::string& tool, const std::vector<std::string>& arguments, Engine& engine);
/// ping by itself, for a program that can do no more.
Printed ping(const std::vector<std::string>& arguments, Pinger& pinger);

} // namespace corvane::hosttools
