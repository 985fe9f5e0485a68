// The network-setup tool's dialect: its listings read, its commands built. The listings' formats are the
// tool's own printed texts; see networksetup(8).
#pragma once

#include "core/netconfig/current_config.h"
#include "core/netconfig/network_preset.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::NetworkSetup {

/// A program's path and its arguments, never quoted.
using Command = std::vector<std::string>;

inline constexpr const char* tool = "/usr/sbin/networksetup";
inline constexpr const char* ifconfigTool = "/sbin/ifconfig";
inline constexpr const char* routeTool = "/sbin/route";

struct ListedService {
    std::string name;
    bool enabled = true;
    friend bool operator==(const ListedService&, const ListedService&) = default;
};
struct PortAndDevice {
    std::optional<std::string> port;
    std::optional<std::string> device;
    friend bool operator==(const PortAndDevice&, const PortAndDevice&) = default;
};

/// From -listallnetworkservices: the first line is the tool's header; a starred line is a disabled service.
std::vector<ListedService> parseServices(std::string_view output);
/// From -listnetworkserviceorder: hardware port and device by service name.
std::map<std::string, PortAndDevice> parseServiceOrder(std::string_view output);
/// From -getinfo; `dns` stays empty.
CurrentConfig parseInfo(std::string_view output);
/// From -getdnsservers: the lines that are IPv4 addresses.
std::vector<std::string> parseDNS(std::string_view output);
/// The first "status: " line of an interface listing: whether it says active.
std::optional<bool> parseLinkActive(std::string_view output);
/// The trimmed text; nothing when it is empty, "(null)" or "none" in any letter case.
std::optional<std::string> nonEmpty(std::string_view text);

/// The commands that put a preset on its service: the addressing, then always the DNS servers.
std::vector<Command> commands(const NetworkPreset& preset);
/// One argument in single quotes, safe for a POSIX shell.
std::string shellQuote(std::string_view text);
/// The commands quoted and joined with " && ".
std::string shellScript(const std::vector<Command>& commands);
/// A string literal of the script interpreter.
std::string appleScriptString(std::string_view text);
/// Whether the tool's listing is an answer: there is one, and it holds no line of failure. Unlike
/// outputIndicatesError it isn't misled by names of services in it.
bool isAnswer(std::string_view output);
/// Whether a tool's printed text reports a failure; the tool itself often exits with success.
bool outputIndicatesError(std::string_view output);

} // namespace corvane::NetworkSetup
