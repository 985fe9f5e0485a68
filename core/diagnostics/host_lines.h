// Hosts as people write them down: one a line, an address or a name and what to call it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct HostLines {
    /// Taken from one text; what follows is left out, and said.
    static constexpr std::size_t mostHosts = 500;
    /// Bytes of UTF-8; a longer name is cut, a longer host refused (RFC 1035 allows 253 in a name).
    static constexpr std::size_t mostNameBytes = 200, mostHostBytes = 253;

    struct Host {
        std::string host;
        /// Empty when the line holds only the host.
        std::string name;
        friend bool operator==(const Host&, const Host&) = default;
    };
    std::vector<Host> hosts;
    /// English sentences about lines that can't be used: "Line 3: …".
    std::vector<std::string> errors;
    /// Those lines, and the ones beyond the limit, each as it stands.
    std::vector<std::string> unused;

    /// "10.0.0.5 Desk", "Desk 10.0.0.5" and the same with tabs, commas or semicolons: the first dotted IPv4
    /// address is the host, else the first word or field. Empty lines and those that begin with # are passed
    /// over; any white space of Unicode is a blank.
    static HostLines read(std::string_view text);
    /// Why a text can't be a host, as an English sentence; empty when it can.
    static std::string hostError(std::string_view host);
};

} // namespace corvane
