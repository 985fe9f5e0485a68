#include "core/netconfig/vlan.h"

#include "core/support/text.h"

#include <algorithm>

namespace corvane::VLAN {

namespace {

bool sameVLAN(const VLANInfo& a, const VLANInfo& b) {
    return a.name == b.name && a.parentDevice == b.parentDevice && a.tag == b.tag;
}

/// What a name and a tag are checked against; whatever is being edited isn't among it.
struct Taken {
    std::vector<std::string> names;
    std::vector<std::pair<std::string, long>> tags;
};

Taken taken(const std::vector<VLANInfo>& vlans, const std::vector<std::string>& services) {
    Taken all{services, {}};
    for (const auto& vlan : vlans) {
        all.names.push_back(vlan.name);
        all.tags.emplace_back(vlan.parentDevice, vlan.tag);
    }
    return all;
}

/// What keeps a name from being given; one that a VLAN already has is never refused for these.
std::optional<std::string> checkNewName(std::string_view name) {
    // The listings are lines: a name with a line break couldn't be read back.
    if (std::any_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
        return "The VLAN's name must be plain text on one line.";
    // In the listings the star in front says that a service is disabled.
    if (name.starts_with('*')) return "The VLAN's name can't begin with an asterisk (*).";
    if (name.starts_with("win:")) return "Names that begin with “win:” are kept for remote PCs.";
    return std::nullopt;
}

std::optional<std::string> check(std::string_view rawName, std::string_view tagText,
                                 const std::optional<std::string>& parent, const Taken& others,
                                 std::string_view nameBefore = {}) {
    const auto name = text::trim(rawName);
    if (name.empty()) return "Give the VLAN a name.";
    if (const auto message = checkNewName(name); message && name != nameBefore) return message;
    const auto tag = parseTag(tagText);
    if (!tag) return "Tag must be a number from 1 to 4094.";
    const auto sameTag = [&](const auto& other) { return other.first == parent && other.second == *tag; };
    if (parent && std::any_of(others.tags.begin(), others.tags.end(), sameTag))
        return "This port already has a VLAN with tag " + std::to_string(*tag) + ".";
    if (std::find(others.names.begin(), others.names.end(), name) != others.names.end())
        return "An interface named " + text::quoted(name) + " already exists.";
    return std::nullopt;
}

/// The signed decimal number that a listing's tag line holds.
std::optional<long> parseNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    constexpr long largest = 1'000'000'000;
    long value = 0;
    if (!text::parseInteger(text, 0, largest, value)) return std::nullopt;
    return negative ? -value : value;
}

/// One VLAN of the listing while its lines come in.
class Block {
  public:
    /// Whether the key is one of a VLAN's and the block doesn't hold it yet.
    bool takes(std::string_view key) const {
        const auto field = fieldOf(key);
        return !field || !(this->*field);
    }

    void add(std::string_view key, std::string_view value) {
        if (const auto field = fieldOf(key)) this->*field = std::string(value);
    }

    std::optional<VLANInfo> vlan() const {
        if (!name_ || !parent_ || !device_ || !tag_) return std::nullopt;
        const auto tag = parseNumber(*tag_);
        if (!tag) return std::nullopt;
        return VLANInfo{*name_, *parent_, *device_, *tag};
    }

  private:
    using Field = std::optional<std::string> Block::*;
    static Field fieldOf(std::string_view key) {
        if (key == "VLAN User Defined Name") return &Block::name_;
        if (key == "Parent Device") return &Block::parent_;
        if (key == "Device (\"Hardware\" Port)") return &Block::device_;
        if (key == "Tag") return &Block::tag_;
        return nullptr;
    }
    std::optional<std::string> name_, parent_, device_, tag_;
};

/// Every line, trimmed, empty ones included: they end a block.
std::vector<std::string_view> trimmedLines(std::string_view output) {
    std::vector<std::string_view> lines;
    for (const auto part : text::split(output, "\n")) {
        // A lone CR ends a line as well; the one of CR LF is trimmed away.
        const auto whole = part.ends_with('\r') ? part.substr(0, part.size() - 1) : part;
        for (const auto line : text::split(whole, "\r")) lines.push_back(text::trim(line));
    }
    return lines;
}

bool isDeviceName(std::string_view word) {
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto digits = std::find_if_not(word.begin(), word.end(), isLetter);
    return digits != word.begin() && digits != word.end() && std::all_of(digits, word.end(), isDigit);
}

/// The device of a line like "en5", "en5 (USB LAN)" or "Device: en5"; empty for any other.
std::string_view deviceOn(std::string_view line) {
    constexpr std::string_view prefix = "Device:";
    if (line.starts_with(prefix)) line = text::trim(line.substr(prefix.size()));
    const auto wordEnd = line.find_first_of(" \t");
    const auto word = line.substr(0, wordEnd);
    const auto rest = text::trim(line.substr(word.size()));
    return isDeviceName(word) && (rest.empty() || rest.starts_with('(')) ? word : std::string_view();
}

} // namespace

std::optional<long> parseTag(std::string_view text) {
    long tag = 0;
    if (!text::parseInteger(text::trim(text), tagRange.min, tagRange.max, tag)) return std::nullopt;
    return tag;
}

std::vector<VLANInfo> parseList(std::string_view output) {
    std::vector<VLANInfo> vlans;
    Block block;
    const auto finish = [&] {
        if (auto vlan = block.vlan()) vlans.push_back(std::move(*vlan));
        block = {};
    };
    for (const auto line : trimmedLines(output)) {
        if (line.empty()) {
            finish();
            continue;
        }
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        const auto key = text::trim(line.substr(0, colon));
        if (!block.takes(key)) finish();
        block.add(key, text::trim(line.substr(colon + 1)));
    }
    finish();
    return vlans;
}

std::set<std::string> parseCapableDevices(std::string_view output) {
    std::set<std::string> devices;
    for (const auto line : text::nonEmptyLines(output))
        if (const auto device = deviceOn(text::trim(line)); !device.empty()) devices.emplace(device);
    return devices;
}

std::optional<std::string> validate(const std::string& name, std::string_view tagText,
                                    const std::optional<std::string>& parent,
                                    const std::vector<VLANInfo>& vlans,
                                    const std::vector<std::string>& services) {
    return check(name, tagText, parent, taken(vlans, services));
}

std::optional<std::string> validateEdit(const VLANInfo& old, const std::string& name,
                                        std::string_view tagText, const std::optional<std::string>& parent,
                                        const std::vector<VLANInfo>& vlans,
                                        const std::vector<std::string>& services) {
    auto otherVLANs = vlans;
    std::erase_if(otherVLANs, [&](const VLANInfo& vlan) { return sameVLAN(vlan, old); });
    auto otherServices = services;
    std::erase(otherServices, old.name);
    return check(name, tagText, parent, taken(otherVLANs, otherServices), old.name);
}

std::optional<std::string> validatePlan(const Uuid& plan, const std::string& name, std::string_view tagText,
                                        const std::optional<std::string>& parent,
                                        const std::vector<VLANInfo>& vlans,
                                        const std::vector<std::string>& services,
                                        const std::vector<PlannedVLAN>& plans) {
    auto others = taken(vlans, services);
    for (const auto& other : plans) {
        if (other.id == plan) continue;
        others.names.push_back(other.name);
        if (other.parentDevice) others.tags.emplace_back(*other.parentDevice, other.tag);
    }
    return check(name, tagText, parent, others);
}

std::vector<NetworkSetup::Command> createCommands(const std::string& name, const std::string& parent,
                                                  long tag) {
    return {{NetworkSetup::tool, "-createVLAN", name, parent, std::to_string(tag)}};
}

std::vector<NetworkSetup::Command> deleteCommands(const VLANInfo& vlan) {
    return {{NetworkSetup::tool, "-deleteVLAN", vlan.name, vlan.parentDevice, std::to_string(vlan.tag)}};
}

std::vector<NetworkSetup::Command> recreateCommands(const VLANInfo& old, const std::string& name,
                                                    const std::string& parent, long tag,
                                                    const std::optional<CurrentConfig>& config) {
    auto commands = deleteCommands(old);
    for (auto& command : createCommands(name, parent, tag)) commands.push_back(std::move(command));
    if (!config) return commands;
    const auto addressing = NetworkPreset::fromConfig(name, *config);
    // A manual service without a whole address can't be put back; the tool would stop the script there.
    if (!addressing.isValid()) return commands;
    for (auto& command : NetworkSetup::commands(addressing)) commands.push_back(std::move(command));
    return commands;
}

} // namespace corvane::VLAN
