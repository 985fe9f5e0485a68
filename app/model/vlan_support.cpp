#include "app/model/vlan_support.h"

#include "core/support/text.h"

#include <algorithm>

namespace corvane {

namespace {

/// VLANs are for wired adapters: not for VLANs themselves, bridges, tunnels or radio.
bool canNeverCarry(const ServiceInfo& info, const NetworkSnapshot& network) {
    if (!info.device) return true;
    const bool isVLAN = std::any_of(network.vlans.begin(), network.vlans.end(),
                                    [&](const VLANInfo& vlan) { return vlan.device == info.device; });
    if (isVLAN) return true;
    for (const char* prefix : {"vlan", "bridge", "utun", "ppp"})
        if (info.device->starts_with(prefix)) return true;
    for (const char* port : {"Wi-Fi", "AirPort", "Bluetooth"})
        if (info.hardwarePort && text::contains(*info.hardwarePort, port)) return true;
    return false;
}

} // namespace

VLANSupport vlanSupportOf(const std::string& service, const NetworkSnapshot& network) {
    const auto found = std::find_if(network.services.begin(), network.services.end(),
                                    [&](const ServiceInfo& info) { return info.name == service; });
    if (found == network.services.end() || canNeverCarry(*found, network)) return VLANSupport::notApplicable;
    if (found->hardware && !found->hardware->present) return VLANSupport::adapterMissing;
    if (network.vlanCapable.contains(*found->device)) return VLANSupport::supported;
    return VLANSupport::unsupported;
}

QString vlanSupportSentence(VLANSupport support) {
    switch (support) {
    case VLANSupport::adapterMissing:
        return QStringLiteral("Plug in the adapter to add VLANs.");
    case VLANSupport::unsupported:
        return QStringLiteral("macOS reports this adapter can't carry VLANs.");
    case VLANSupport::supported:
    case VLANSupport::notApplicable:
        break;
    }
    return {};
}

} // namespace corvane
