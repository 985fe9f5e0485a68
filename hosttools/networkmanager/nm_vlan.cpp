// VLANs are profiles of their own kind; their devices are called vlan0, vlan1 … as on a Mac.
#include "hosttools/networkmanager/kernel.h"
#include "hosttools/networkmanager/nm_engine.h"

#include <chrono>

namespace corvane::networkmanager {

using hosttools::Failure;

/// The parent may be given as a device or as another profile's UUID.
static std::string parentDevice(const Snapshot& snapshot, const Profile& vlan) {
    const std::string parent = vlan.text("vlan", "parent");
    for (const Profile& profile : snapshot.profiles())
        if (profile.uuid == parent) return profile.interface;
    return parent;
}

std::vector<hosttools::Vlan> NmEngine::vlans() {
    std::vector<hosttools::Vlan> listed;
    for (const Entry& entry : entries_) {
        if (!entry.profile || entry.profile->type != "vlan") continue;
        const Variant tag = entry.profile->value("vlan", "id");
        if (!tag || !g_variant_is_of_type(tag.get(), G_VARIANT_TYPE_UINT32)) continue;
        listed.push_back({entry.name, parentDevice(*snapshot_, *entry.profile), entry.interface,
                          static_cast<int>(g_variant_get_uint32(tag.get()))});
    }
    return listed;
}

std::vector<hosttools::Port> NmEngine::vlanCapablePorts() {
    std::vector<hosttools::Port> ports;
    for (const Device& device : snapshot_->devices()) {
        if (!device.isEthernet() || !device.managed) continue;
        std::string port = "Ethernet";
        for (const Entry& entry : entries_)
            if (entry.interface == device.interface) port = entry.hardwarePort;
        ports.push_back({port, device.interface});
    }
    return ports;
}

Failure NmEngine::createVLAN(const std::string& name, const std::string& parent, int tag) {
    using namespace std::chrono;
    std::string device;
    for (int number = 0; device.empty(); ++number) {
        const std::string candidate = "vlan" + std::to_string(number);
        bool taken = kernel::exists(candidate);
        for (const Profile& profile : snapshot_->profiles()) taken = taken || profile.interface == candidate;
        if (!taken) device = candidate;
    }
    ProfileEdit profile(name, "vlan", device);
    profile.setVLAN(parent, tag);
    profile.setDHCP();
    std::string path;
    if (const Failure failure = add(profile, false, path)) return failure;
    const Reply active = bus_->call(nmPath, nmInterface, "ActivateConnection",
                                    g_variant_new("(ooo)", path.c_str(), "/", "/"), 15000);
    // The device appears while the profile is being activated; waiting for a cable or a lease isn't needed.
    if (waitFor(seconds(active ? 5 : 0), [&] { return kernel::exists(device); })) return std::nullopt;
    // Nothing half made stays behind.
    bus_->call(path, profileInterface, "Delete", nullptr);
    if (!active) return errorText(active);
    return "** Error: The system didn't make the VLAN's device.";
}

Failure NmEngine::deleteVLAN(const std::string& name, const std::string& parent, int tag) {
    for (const hosttools::Vlan& vlan : vlans()) {
        if (vlan.name != name || vlan.parentDevice != parent || vlan.tag != tag) continue;
        const Entry& entry = *find(name);
        const Reply reply = bus_->call(entry.profile->path, profileInterface, "Delete", nullptr, 10000);
        if (!reply) return errorText(reply);
        // NetworkManager takes the device down a moment later; until it is gone the kernel makes no other one
        // with its parent and tag.
        if (entry.active && !vlan.device.empty())
            waitFor(std::chrono::seconds(3), [&] { return !kernel::exists(vlan.device); });
        return std::nullopt;
    }
    return "** Error: The parameters were not valid.";
}

} // namespace corvane::networkmanager
