// A VLAN that exists on the machine.
#pragma once

#include <string>

namespace corvane {

struct VLANInfo {
    /// Given by the user; the name of its network service too.
    std::string name;
    /// The BSD device of the adapter that carries it, e.g. "en7".
    std::string parentDevice;
    /// Its own BSD device, e.g. "vlan0".
    std::string device;
    /// IEEE 802.1Q tag, as the system reports it.
    long tag = 0;

    friend bool operator==(const VLANInfo&, const VLANInfo&) = default;
};

} // namespace corvane
