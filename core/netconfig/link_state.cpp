#include "core/netconfig/link_state.h"

#include <algorithm>

namespace corvane {

LinkState LinkState::evaluate(bool enabled, bool hasDevice, const std::optional<IfconfigInfo>& hardware,
                              const std::optional<std::string>& configuredIP) {
    if (!enabled) return disabled();
    if (hasDevice && hardware) {
        if (!hardware->present) return adapterMissing();
        if (hardware->linkActive == false) return noLink();
        const auto& addresses = hardware->addresses;
        if (addresses.empty()) return noAddress();
        const auto routable = std::find_if_not(addresses.begin(), addresses.end(), isLinkLocal);
        return routable == addresses.end() ? selfAssigned(addresses.front()) : connected(*routable);
    }
    if (!configuredIP) return inactive();
    return isLinkLocal(*configuredIP) ? selfAssigned(*configuredIP) : connected(*configuredIP);
}

bool LinkState::isLinkLocal(std::string_view address) {
    return address.starts_with("169.254.");
}

std::string LinkState::title() const {
    switch (kind_) {
    case Kind::connected:
        return "Connected";
    case Kind::selfAssigned:
        return "Self-assigned IP · no DHCP";
    case Kind::noAddress:
        return "Link up · no IP address";
    case Kind::noLink:
        return "No cable / no link";
    case Kind::inactive:
        return "Not connected";
    case Kind::adapterMissing:
        return "Adapter not plugged in";
    case Kind::disabled:
        break;
    }
    return "Disabled";
}

int LinkState::sortRank() const {
    switch (kind_) {
    case Kind::connected:
        return 0;
    case Kind::selfAssigned:
        return 1;
    case Kind::noAddress:
        return 2;
    case Kind::noLink:
        return 3;
    case Kind::inactive:
        return 4;
    case Kind::adapterMissing:
        return 5;
    case Kind::disabled:
        break;
    }
    return 6;
}

bool LinkState::hasLink() const {
    return kind_ == Kind::connected || kind_ == Kind::selfAssigned || kind_ == Kind::noAddress;
}

} // namespace corvane
