#include "core/support/text.h"

#include <algorithm>

namespace corvane::text {

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";
constexpr std::string_view blanks = " \t";
constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

std::string_view trimmed(std::string_view text, std::string_view characters) {
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// The length of the well-formed sequence at `at`, or 0 (RFC 3629, section 4).
std::size_t sequenceLength(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) -> unsigned {
        return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U;
    };
    const auto tail = [&](std::size_t i) { return byte(i) >= 0x80 && byte(i) <= 0xBF; };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return tail(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned low = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned high = lead == 0xED ? 0x9F : 0xBF;
        return byte(1) >= low && byte(1) <= high && tail(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned low = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned high = lead == 0xF4 ? 0x8F : 0xBF;
        return byte(1) >= low && byte(1) <= high && tail(2) && tail(3) ? 4 : 0;
    }
    return 0;
}

} // namespace

std::string_view trim(std::string_view text) {
    return trimmed(text, whiteSpace);
}

std::string_view trimBlanks(std::string_view text) {
    return trimmed(text, blanks);
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = std::min(text.find_first_of("\r\n", start), text.size());
        if (end > start) lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> pieces;
    if (!separator.empty()) {
        for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
            pieces.push_back(text.substr(0, end));
            text.remove_prefix(end + separator.size());
        }
    }
    pieces.push_back(text);
    return pieces;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = lower(c);
    return result;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

bool contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
}

std::string join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string result;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) result += separator;
        result += pieces[i];
    }
    return result;
}

std::string replaced(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    result.reserve(text.size());
    bool first = true;
    for (const auto piece : split(text, from)) {
        if (!first) result += to;
        first = false;
        result += piece;
    }
    return result;
}

std::string counted(std::size_t count, std::string_view noun) {
    std::string result = std::to_string(count) + " ";
    result += noun;
    if (count != 1) result += "s";
    return result;
}

bool parseInteger(std::string_view text, long low, long high, long& value) {
    if (text.empty()) return false;
    long number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return false;
        const long digit = c - '0';
        if (high < digit || number > (high - digit) / 10) return false;
        number = number * 10 + digit;
    }
    if (number < low) return false;
    value = number;
    return true;
}

std::size_t validUtf8Prefix(std::string_view bytes) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const auto length = sequenceLength(bytes, at);
        if (length == 0) break;
        at += length;
    }
    return at;
}

std::string validUtf8(std::string_view bytes) {
    std::string result;
    result.reserve(bytes.size());
    while (true) {
        const auto good = validUtf8Prefix(bytes);
        result += bytes.substr(0, good);
        if (good == bytes.size()) return result;
        result += replacementCharacter;
        bytes.remove_prefix(good + 1);
    }
}

std::string quoted(std::string_view name) {
    std::string result = "“";
    result += name;
    result += "”";
    return result;
}

} // namespace corvane::text
