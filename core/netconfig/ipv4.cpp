#include "core/netconfig/ipv4.h"

#include "core/support/text.h"

#include <bit>

namespace corvane {

namespace IPv4 {

std::optional<std::uint32_t> parse(std::string_view text) {
    text = text::trimBlanks(text);
    // "255.255.255.255" is the longest; longer text isn't worth splitting.
    if (text.size() > 15) return std::nullopt;
    const auto parts = text::split(text, ".");
    if (parts.size() != 4) return std::nullopt;
    std::uint32_t address = 0;
    for (const auto part : parts) {
        long value = 0;
        if (part.size() > 3 || !text::parseInteger(part, 0, 255, value)) return std::nullopt;
        address = address << 8 | static_cast<std::uint32_t>(value);
    }
    return address;
}

bool isValid(std::string_view text) {
    return parse(text).has_value();
}

std::string format(std::uint32_t value) {
    std::string result;
    for (int shift = 24; shift >= 0; shift -= 8) {
        if (shift < 24) result += '.';
        result += std::to_string(value >> shift & 0xFF);
    }
    return result;
}

std::uint32_t maskValue(int prefix) {
    return prefix <= 0 ? 0 : UINT32_MAX << (prefix >= 32 ? 0 : 32 - prefix);
}

std::optional<int> prefixLength(std::string_view mask) {
    const auto value = parse(mask);
    if (!value || ((*value - 1) | *value) != UINT32_MAX) return std::nullopt;
    return std::popcount(*value);
}

std::optional<std::string> normalizeMask(std::string_view text) {
    text = text::trim(text);
    if (text.starts_with('/')) text.remove_prefix(1);
    long prefix = 0;
    if (text::parseInteger(text, 0, 32, prefix)) return format(maskValue(static_cast<int>(prefix)));
    if (const auto mask = parse(text)) return format(*mask);
    return std::nullopt;
}

bool sameSubnet(std::string_view a, std::string_view b, std::string_view mask) {
    const auto first = parse(a);
    const auto second = parse(b);
    const auto bits = parse(mask);
    return first && second && bits && (*first & *bits) == (*second & *bits);
}

} // namespace IPv4

namespace {

/// The length of the separator at the start of the text, or 0. Typed text holds Unicode's white space too:
/// Option-Space on a Mac keyboard gives U+00A0.
std::size_t separatorLength(std::string_view text) {
    constexpr std::string_view ascii = ", \t\n\v\f\r";
    constexpr std::string_view wide[] = {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003",
                                         "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
                                         "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};
    if (ascii.find(text.front()) != std::string_view::npos) return 1;
    for (const auto space : wide) {
        if (text.starts_with(space)) return space.size();
    }
    return 0;
}

} // namespace

std::vector<std::string> parseDNSList(std::string_view text) {
    std::vector<std::string> servers;
    std::size_t start = 0;
    std::size_t at = 0;
    const auto endPiece = [&] {
        if (at > start) servers.emplace_back(text.substr(start, at - start));
    };
    while (at < text.size()) {
        if (const auto length = separatorLength(text.substr(at)); length > 0) {
            endPiece();
            at += length;
            start = at;
        } else {
            ++at;
        }
    }
    endPiece();
    return servers;
}

} // namespace corvane
