#include "core/diagnostics/host_text.h"

#include <algorithm>
#include <array>

namespace corvane::HostText {

// U+0085, U+00A0, U+1680, U+2000 to U+200B, U+2028, U+2029, U+202F, U+205F, U+3000, U+FEFF.
static constexpr std::array<std::string_view, 20> wideSpaces{
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81",
    "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86",
    "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\x8B",
    "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};
static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

static bool isPlainSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// How many bytes the white space is long that `matches` finds at an end of the text; 0 without one.
template <typename Matches>
static std::size_t spaceLength(char end, const Matches& matches) {
    if (isPlainSpace(end)) return 1;
    if (matches(byteOrderMark)) return byteOrderMark.size();
    const auto found = std::find_if(wideSpaces.begin(), wideSpaces.end(), matches);
    return found == wideSpaces.end() ? 0 : found->size();
}

static std::size_t leadingSpace(std::string_view text) {
    return spaceLength(text.front(), [&](std::string_view space) { return text.starts_with(space); });
}

std::string_view trim(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = leadingSpace(text);
        if (length == 0) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        const std::size_t length =
            spaceLength(text.back(), [&](std::string_view space) { return text.ends_with(space); });
        if (length == 0) break;
        text.remove_suffix(length);
    }
    return text;
}

std::string plainSpaces(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = leadingSpace(text);
        plain += length > 0 ? ' ' : text.front();
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return plain;
}

} // namespace corvane::HostText
