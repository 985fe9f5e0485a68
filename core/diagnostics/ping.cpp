#include "core/diagnostics/ping.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

#include <algorithm>
#include <locale>
#include <sstream>

namespace corvane::Ping {

namespace {

/// A decimal number, whatever the program's locale; libc++ of macOS 13 has no from_chars for doubles.
std::optional<double> parseDecimal(std::string_view digits) {
    const auto points = std::count(digits.begin(), digits.end(), '.');
    if (points > 1 || digits.size() == static_cast<std::size_t>(points)) return std::nullopt;
    std::istringstream stream{std::string(digits)};
    stream.imbue(std::locale::classic());
    double value = 0;
    if (!(stream >> value)) return std::nullopt;
    return value;
}

} // namespace

std::vector<std::string> arguments(const std::string& host, int waitMs) {
    return {"-c", "1", "-W", std::to_string(waitMs), "-n", host};
}

PingOutcome parse(std::string_view output, std::int32_t status) {
    if (status == statusNoHost || text::contains(output, "cannot resolve")) return PingOutcome::unresolved();
    constexpr std::string_view mark = "time=";
    const auto found = output.find(mark);
    if (found == std::string_view::npos) return PingOutcome::timeout();
    const auto behind = output.substr(found + mark.size());
    const auto digits = behind.substr(0, behind.find_first_not_of("0123456789."));
    const auto ms = parseDecimal(digits);
    return ms ? PingOutcome::reply(*ms) : PingOutcome::timeout();
}

std::optional<std::string> localInterface(std::string_view host,
                                          const std::vector<LocalInterface>& interfaces) {
    const auto wanted = IPv4::parse(host);
    if (!wanted) return std::nullopt;
    for (const auto& interface : interfaces) {
        const auto address = IPv4::parse(interface.address);
        const auto mask = IPv4::parse(interface.mask);
        if (address && mask && (*wanted & *mask) == (*address & *mask)) return interface.name;
    }
    return std::nullopt;
}

} // namespace corvane::Ping
