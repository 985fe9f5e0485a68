// What the tools' programs share: which tool is meant, and printing.
#pragma once

#include "hosttools/dialect.h"

namespace corvane::hosttools {

struct Invocation {
    std::string tool;
    std::vector<std::string> arguments;
};

/// The tool is the name that the program was called by (a link), or else the first argument:
/// "wendrel-sim-tools networksetup -listVLANs".
Invocation invocation(int argc, char** argv);
/// Writes both texts whole and gives the exit status.
int finish(const Printed& printed);

} // namespace corvane::hosttools
