#include "core/netconfig/ifconfig_info.h"

#include "core/support/text.h"

#include <array>
#include <utility>

namespace corvane {

namespace {

constexpr std::string_view statusPrefix = "status: ";
constexpr std::string_view mediaPrefix = "media: ";
constexpr std::string_view etherPrefix = "ether ";
constexpr std::string_view inetPrefix = "inet ";

std::string firstWord(std::string_view text) {
    text = text::trim(text);
    return std::string(text.substr(0, text.find_first_of(" \t\v\f")));
}

/// "autoselect (1000baseT <full-duplex>)" tells the active media in its parentheses.
std::string activeMedia(std::string_view text) {
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    const bool bracketed = open != std::string_view::npos && close != std::string_view::npos && open < close;
    return std::string(bracketed ? text.substr(open + 1, close - open - 1) : text);
}

} // namespace

IfconfigInfo IfconfigInfo::parse(std::string_view output) {
    IfconfigInfo info;
    if (text::trim(output).empty() || text::contains(output, "does not exist")) return info;
    info.present = true;
    for (const auto rawLine : text::nonEmptyLines(output)) {
        const auto line = text::trim(rawLine);
        if (line.starts_with(statusPrefix)) {
            info.linkActive = text::trim(line.substr(statusPrefix.size())) == "active";
        } else if (line.starts_with(mediaPrefix)) {
            info.media = activeMedia(line.substr(mediaPrefix.size()));
        } else if (line.starts_with(etherPrefix)) {
            info.mac = firstWord(line.substr(etherPrefix.size()));
        } else if (line.starts_with(inetPrefix)) {
            info.addresses.push_back(firstWord(line.substr(inetPrefix.size())));
        }
    }
    return info;
}

std::optional<std::string> IfconfigInfo::speedLabel() const {
    // Ordered: the longer numbers stand before those that they begin with.
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 7> labels = {{
        {"10gbase", "10 Gb/s"},
        {"5gbase", "5 Gb/s"},
        {"5000base", "5 Gb/s"},
        {"2500base", "2.5 Gb/s"},
        {"1000base", "1 Gb/s"},
        {"100base", "100 Mb/s"},
        {"10base", "10 Mb/s"},
    }};
    const auto lowered = text::lowered(media.value_or(""));
    for (const auto& [prefix, label] : labels) {
        if (lowered.starts_with(prefix)) return std::string(label);
    }
    return std::nullopt;
}

bool IfconfigInfo::isHalfDuplex() const {
    return media && text::contains(text::lowered(*media), "half-duplex");
}

} // namespace corvane
