#include "hosttools/networkmanager/service_list.h"

#include "hosttools/names.h"

#include <algorithm>
#include <climits>
#include <tuple>
#include <unistd.h>

namespace corvane::networkmanager {

namespace {

struct Kind {
    const char* type;
    const char* port;
    /// NetworkManager's default route metric for the type.
    std::uint32_t metric;
};

constexpr Kind kinds[] = {
    {"802-3-ethernet", "Ethernet", 100},
    {"802-11-wireless", "Wi-Fi", 600},
    {"bond", "Bond", 300},
    {"team", "Team", 350},
    {"vlan", "VLAN", 400},
    {"bridge", "Bridge", 425},
};

const Kind* kindOf(const Profile& profile) {
    for (const Kind& kind : kinds)
        if (profile.type == kind.type) return &kind;
    return nullptr;
}

bool isUsb(const std::string& interface) {
    char target[PATH_MAX];
    const std::string link = "/sys/class/net/" + interface + "/device/subsystem";
    const ssize_t count = ::readlink(link.c_str(), target, sizeof target);
    return count > 0 && std::string_view(target, static_cast<std::size_t>(count)).ends_with("/usb");
}

std::string portName(const std::string& type, const std::string& interface) {
    return type == "Ethernet" && !interface.empty() && isUsb(interface) ? "USB Ethernet" : type;
}

const Device* deviceFor(const Snapshot& snapshot, const Profile& profile) {
    if (const Device* device = snapshot.activeDevice(profile)) return device;
    if (!profile.interface.empty()) return snapshot.device(profile.interface);
    for (const Device& device : snapshot.devices())
        if (std::find(device.available.begin(), device.available.end(), profile.path) !=
            device.available.end())
            return &device;
    return nullptr;
}

/// A default metric isn't always the one in use: of two devices with the same NetworkManager raises one.
std::uint32_t metricInUse(const Snapshot& snapshot, const Entry& entry) {
    const std::uint32_t usual = kindOf(*entry.profile)->metric;
    if (!entry.active || !entry.device) return usual;
    const Variant routes = snapshot.property(entry.device->ip4, ip4Interface, "RouteData");
    if (!routes || g_variant_n_children(routes.get()) == 0) return usual;
    const Variant first(g_variant_get_child_value(routes.get(), 0));
    const Variant metric(g_variant_lookup_value(first.get(), "metric", G_VARIANT_TYPE_UINT32));
    return metric ? g_variant_get_uint32(metric.get()) : usual;
}

std::tuple<std::uint32_t, int, std::string> sortKey(const Snapshot& snapshot, const Entry& entry) {
    if (!entry.profile) return {UINT_MAX, 2, entry.name};
    if (entry.profile->metric) return {*entry.profile->metric, 0, entry.name};
    return {metricInUse(snapshot, entry), 1, entry.name};
}

} // namespace

std::vector<Entry> serviceList(const Snapshot& snapshot) {
    std::vector<Entry> entries;
    for (const Profile& profile : snapshot.profiles()) {
        const Kind* kind = kindOf(profile);
        if (!kind || profile.isPort) continue;
        Entry entry;
        entry.profile = &profile;
        entry.device = deviceFor(snapshot, profile);
        entry.interface = entry.device ? entry.device->interface : profile.interface;
        entry.hardwarePort = portName(kind->port, entry.interface);
        entry.active = snapshot.activeDevice(profile) != nullptr;
        entry.enabled = profile.autoconnect || entry.active;
        entries.push_back(entry);
    }
    for (const Device& device : snapshot.devices()) {
        // An active connection of another kind, a bridge port for one, claims its device.
        const bool idle = device.active.empty() || device.active == "/";
        if (!device.isEthernet() || !device.managed || !idle) continue;
        const bool claimed = std::any_of(entries.begin(), entries.end(),
                                         [&](const Entry& e) { return e.interface == device.interface; });
        if (claimed) continue;
        Entry entry;
        entry.device = &device;
        entry.interface = device.interface;
        entry.hardwarePort = portName("Ethernet", device.interface);
        entries.push_back(entry);
    }
    // Names are given in an order that no setting changes, so that equal ids keep theirs when services move.
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        const auto key = [](const Entry& e) { return e.profile ? e.profile->uuid : "~" + e.interface; };
        return key(a) < key(b);
    });
    std::vector<std::string> names;
    for (const Entry& entry : entries)
        names.push_back(entry.profile ? entry.profile->id : "Ethernet (" + entry.interface + ")");
    names = hosttools::printableNames(names);
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].name = names[i];
    std::sort(entries.begin(), entries.end(),
              [&](const Entry& a, const Entry& b) { return sortKey(snapshot, a) < sortKey(snapshot, b); });
    return entries;
}

} // namespace corvane::networkmanager
