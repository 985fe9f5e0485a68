// What the dialect's files share; no part of its interface.
#pragma once

#include "hosttools/dialect.h"

namespace corvane::hosttools {

using Arguments = std::vector<std::string>;

/// networksetup(8)'s last line for anything wrong with its arguments; its status is then 4.
inline constexpr const char* invalidParameters = "** Error: The parameters were not valid.\n";
inline constexpr int invalidStatus = 4;
/// The status without administrator rights.
inline constexpr int adminStatus = 14;

Printed networksetup(const Arguments& arguments, Engine& engine);
Printed ifconfig(const Arguments& arguments, Engine& engine);
Printed route(const Arguments& arguments, Engine& engine);

/// A sentence, then the line about the parameters.
Printed invalid(const std::string& sentence);
Printed unknownService(const std::string& name);
/// Nothing printed when it went well, as a Mac does.
Printed outcome(const Failure& failure);

Printed listVLANs(Engine& engine);
Printed listVLANDevices(Engine& engine);
/// Arguments behind the verb: name, parent device, tag.
Printed createVLAN(const Arguments& arguments, Engine& engine);
Printed deleteVLAN(const Arguments& arguments, Engine& engine);

} // namespace corvane::hosttools
