// Plain-text helpers shared by every parser. All of them accept any bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::text {

/// Without leading and trailing ASCII white space: blank, tab, LF, VT, FF and CR. The system's tools print no
/// other, so Unicode's white space (U+00A0 and the like) is left alone.
std::string_view trim(std::string_view text);
/// Without leading and trailing spaces and tabs only.
std::string_view trimBlanks(std::string_view text);
/// The lines of a text, empty ones dropped; LF, CR LF and CR all end a line. Lines are not trimmed.
std::vector<std::string_view> nonEmptyLines(std::string_view text);
/// The pieces between the separators, empty ones included; an empty separator splits nothing.
std::vector<std::string_view> split(std::string_view text, std::string_view separator);
/// ASCII letters in lower case, everything else as it is.
std::string lowered(std::string_view text);
/// ASCII letters compared without regard to case.
bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool contains(std::string_view text, std::string_view piece);
std::string join(const std::vector<std::string>& pieces, std::string_view separator);
/// The text with every occurrence of `from` replaced; an empty `from` replaces nothing.
std::string replaced(std::string_view text, std::string_view from, std::string_view to);
/// "1 preset", "3 presets": the count, a blank and the noun, with an "s" unless the count is one.
std::string counted(std::size_t count, std::string_view noun);
/// A whole decimal number of ASCII digits and nothing else, within [low, high]; `value` is untouched
/// otherwise.
bool parseInteger(std::string_view text, long low, long high, long& value);
/// How many bytes from the start are well-formed UTF-8 (RFC 3629); the text's size when all of it is.
std::size_t validUtf8Prefix(std::string_view bytes);
/// The text with every byte that isn't part of well-formed UTF-8 replaced by U+FFFD.
std::string validUtf8(std::string_view bytes);
/// A name in curly quotes: “name”.
std::string quoted(std::string_view name);

} // namespace corvane::text
