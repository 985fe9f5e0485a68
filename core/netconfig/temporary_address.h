// A second address put on a device for the time being; it survives neither a restart nor a network change.
// Command forms: ifconfig(8), "alias" and "-alias".
#pragma once

#include "core/netconfig/network_setup.h"

namespace corvane::TemporaryAddress {

std::vector<NetworkSetup::Command> addCommands(const std::string& device, const std::string& ip,
                                               const std::string& mask);
std::vector<NetworkSetup::Command> removeCommands(const std::string& device, const std::string& ip);
/// Why the input can't be used ("IP address isn't a valid IPv4 address." …); empty when it can.
std::vector<std::string> errors(const std::string& ip, const std::string& mask);

} // namespace corvane::TemporaryAddress
