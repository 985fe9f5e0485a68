#include "hosttools/names.h"

#include "core/support/text.h"

#include <algorithm>
#include <set>

namespace corvane::hosttools {

static std::string onOneLine(const std::string& name) {
    std::string line = text::validUtf8(name);
    // U+0085, U+2028 and U+2029 end a line for some readers.
    for (const char* breaker : {"\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"})
        for (std::size_t at; (at = line.find(breaker)) != std::string::npos;)
            line.replace(at, std::string_view(breaker).size(), " ");
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, ' ');
    std::string_view rest = text::trim(line);
    while (rest.starts_with('*')) rest = text::trim(rest.substr(1));
    return rest.empty() ? "Service" : std::string(rest);
}

std::vector<std::string> printableNames(const std::vector<std::string>& names) {
    std::vector<std::string> printed;
    std::set<std::string> taken;
    for (const std::string& name : names) {
        const std::string base = onOneLine(name);
        std::string candidate = base;
        for (int copy = 2; !taken.insert(candidate).second; ++copy)
            candidate = base + " " + std::to_string(copy);
        printed.push_back(candidate);
    }
    return printed;
}

} // namespace corvane::hosttools
