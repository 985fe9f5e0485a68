#include "core/diagnostics/host_lines.h"

#include "core/diagnostics/host_text.h"
#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::string_view fieldEnds = "\t,;", blanks = " \t";

std::vector<std::string> pieces(std::string_view line, std::string_view ends) {
    std::vector<std::string> found;
    while (!line.empty()) {
        const auto end = std::min(line.find_first_of(ends), line.size());
        const auto piece = text::trim(line.substr(0, end));
        if (!piece.empty()) found.emplace_back(piece);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return found;
}

std::string shortened(const std::string& name) {
    const auto cut = std::string_view(name).substr(0, HostLines::mostNameBytes);
    return std::string(cut.substr(0, text::validUtf8Prefix(cut)));
}

HostLines::Host read(std::string_view line) {
    const bool hasFields = line.find_first_of(fieldEnds) != std::string_view::npos;
    auto parts = pieces(line, hasFields ? fieldEnds : blanks);
    if (parts.empty()) return {};
    auto host =
        std::find_if(parts.begin(), parts.end(), [](const auto& part) { return IPv4::isValid(part); });
    if (host == parts.end()) host = parts.begin();
    HostLines::Host made{*host, {}};
    parts.erase(host);
    made.name = shortened(text::validUtf8(text::join(parts, " ")));
    return made;
}

} // namespace

std::string HostLines::hostError(std::string_view host) {
    if (host.empty()) return "A host is an IPv4 address or a name.";
    if (host.size() > mostHostBytes) return "A host has at most 253 characters.";
    // The tool would take it for an option.
    if (host.front() == '-') return "A host can't begin with a hyphen.";
    const std::string plain = HostText::plainSpaces(host);
    const bool oneWord = std::none_of(plain.begin(), plain.end(), [](char c) {
        return static_cast<unsigned char>(c) <= ' ' || c == '\x7f';
    });
    if (!oneWord || text::validUtf8Prefix(host) != host.size())
        return "A host is one word: an IPv4 address or a name.";
    return {};
}

HostLines HostLines::read(std::string_view text) {
    HostLines found;
    std::size_t number = 0;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view whole = text.substr(0, end);
        const std::string plain = HostText::plainSpaces(whole);
        const auto line = text::trim(plain);
        const bool isPair = text.substr(std::min(end, text.size())).starts_with("\r\n");
        text.remove_prefix(std::min(end + (isPair ? 2 : 1), text.size()));
        ++number;
        if (line.empty() || line.front() == '#') continue;
        Host host = corvane::read(line);
        if (auto error = hostError(host.host); !error.empty()) {
            std::string sentence = "Line ";
            sentence += std::to_string(number);
            sentence += ": ";
            sentence += error;
            found.errors.push_back(std::move(sentence));
            found.unused.emplace_back(whole);
        } else if (found.hosts.size() == mostHosts) {
            found.errors.emplace_back("Only the first 500 hosts are taken at once.");
            found.unused.emplace_back(whole);
            if (!text.empty()) found.unused.emplace_back(text);
            break;
        } else {
            found.hosts.push_back(std::move(host));
        }
    }
    return found;
}

} // namespace corvane
