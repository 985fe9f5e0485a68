#include "core/netconfig/temporary_address.h"

#include "core/netconfig/ipv4.h"

namespace corvane::TemporaryAddress {

namespace {

/// Re-formatted, as the tool reads a leading zero as the mark of an octal number.
std::string canonical(const std::string& ip) {
    const auto address = IPv4::parse(ip);
    return address ? IPv4::format(*address) : ip;
}

} // namespace

std::vector<NetworkSetup::Command> addCommands(const std::string& device, const std::string& ip,
                                               const std::string& mask) {
    return {{NetworkSetup::ifconfigTool, device, "alias", canonical(ip),
             IPv4::normalizeMask(mask).value_or(mask)}};
}

std::vector<NetworkSetup::Command> removeCommands(const std::string& device, const std::string& ip) {
    return {{NetworkSetup::ifconfigTool, device, "-alias", canonical(ip)}};
}

std::vector<std::string> errors(const std::string& ip, const std::string& mask) {
    std::vector<std::string> messages;
    if (!IPv4::isValid(ip)) messages.emplace_back("IP address isn't a valid IPv4 address.");
    if (!IPv4::normalizeMask(mask))
        messages.emplace_back("Subnet mask isn't valid (use 255.255.255.0 or /24).");
    return messages;
}

} // namespace corvane::TemporaryAddress
