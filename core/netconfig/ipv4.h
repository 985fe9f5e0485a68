// Arithmetic on dotted-quad IPv4 text (RFC 791 addresses, RFC 4632 prefixes). Values are in host order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::IPv4 {

/// Four parts of one to three ASCII digits, each at most 255; surrounding blanks and tabs are allowed,
/// leading zeros are decimal.
std::optional<std::uint32_t> parse(std::string_view text);
bool isValid(std::string_view text);
std::string format(std::uint32_t value);
/// The mask with `prefix` one bits from the top; prefix in 0...32.
std::uint32_t maskValue(int prefix);
/// The number of one bits of a contiguous dotted mask (0.0.0.0 is 0); nothing for any other text.
std::optional<int> prefixLength(std::string_view mask);
/// "24", "/24" and "255.255.255.0" all give "255.255.255.0"; nothing when the text is neither.
std::optional<std::string> normalizeMask(std::string_view text);
/// Whether two addresses share a subnet; false unless all three parse.
bool sameSubnet(std::string_view a, std::string_view b, std::string_view mask);

} // namespace corvane::IPv4

namespace corvane {

/// A DNS server list as typed: split at commas and white space, empty pieces dropped, nothing validated.
std::vector<std::string> parseDNSList(std::string_view text);

} // namespace corvane
