// White space as it comes with a host that was copied from a page or a table: Unicode's as well as ASCII's.
#pragma once

#include <string>
#include <string_view>

namespace corvane::HostText {

/// Without leading and trailing white space: Unicode's White_Space characters, the byte order mark and the
/// zero-width space. Bytes that aren't UTF-8 are left alone.
std::string_view trim(std::string_view text);
/// Every such character as one blank.
std::string plainSpaces(std::string_view text);

} // namespace corvane::HostText
