#include "app/model/temp_addresses.h"

#include "core/netconfig/ipv4.h"

#include <algorithm>

namespace corvane {

namespace {

/// A reading in which the tool printed nothing of the device says nothing about its addresses.
bool wasRead(const TempAlias& alias, const std::vector<ServiceInfo>& services) {
    return std::any_of(services.begin(), services.end(), [&](const ServiceInfo& info) {
        return info.device == alias.device && info.hardware && info.hardware->present;
    });
}

bool isOnDevice(const TempAlias& alias, const std::vector<ServiceInfo>& services) {
    return std::any_of(services.begin(), services.end(), [&](const ServiceInfo& info) {
        if (info.device != alias.device || !info.hardware) return false;
        return std::any_of(
            info.hardware->addresses.begin(), info.hardware->addresses.end(),
            [&](const std::string& address) { return IPv4::parse(address) == IPv4::parse(alias.ip); });
    });
}

} // namespace

void TempAddresses::add(const TempAlias& alias) {
    remove(alias);
    all_.push_back(alias);
    watches_.push_back({clock_()});
}

bool TempAddresses::remove(const TempAlias& alias) {
    const auto found = std::find(all_.begin(), all_.end(), alias);
    if (found == all_.end()) return false;
    watches_.erase(watches_.begin() + (found - all_.begin()));
    all_.erase(found);
    return true;
}

bool TempAddresses::compare(const std::vector<ServiceInfo>& services) {
    // A reading without services is one whose tools failed.
    if (services.empty()) return false;
    const auto now = clock_();
    bool dropped = false;
    for (std::size_t index = all_.size(); index-- > 0;) {
        Watch& watch = watches_[index];
        if (isOnDevice(all_[index], services)) {
            watch.last = now;
            watch.seen = true;
        } else if ((watch.seen && wasRead(all_[index], services)) || now - watch.last >= patience) {
            all_.erase(all_.begin() + static_cast<std::ptrdiff_t>(index));
            watches_.erase(watches_.begin() + static_cast<std::ptrdiff_t>(index));
            dropped = true;
        }
    }
    return dropped;
}

} // namespace corvane
