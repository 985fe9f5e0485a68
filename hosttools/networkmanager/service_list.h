// Which profiles and devices are network services, under which names, in which order.
#pragma once

#include "hosttools/networkmanager/snapshot.h"

namespace corvane::networkmanager {

struct Entry {
    /// Distinct and printable; not always the profile's id.
    std::string name;
    /// Null for an Ethernet device that has no profile yet.
    const Profile* profile = nullptr;
    /// Null when no such device is present.
    const Device* device = nullptr;
    /// The device's name, also while it is absent; empty when none is settled.
    std::string interface;
    std::string hardwarePort;
    bool active = false;
    /// A profile that neither is active nor starts by itself is disabled.
    bool enabled = true;
};

/// In service order: by route metric (a set one before an equal default), then by name; devices without a
/// profile come last. The entries point into the snapshot.
std::vector<Entry> serviceList(const Snapshot& snapshot);

} // namespace corvane::networkmanager
