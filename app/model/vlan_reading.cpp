#include "app/model/vlan_reading.h"

#include "app/model/route_store.h"
#include "core/netconfig/network_setup.h"
#include "core/netconfig/vlan.h"
#include "core/support/text.h"

#include <QThread>

#include <algorithm>

namespace corvane {

namespace {

VLANSettings::Reading refusedFor(const std::string& service, const std::string& reason) {
    return {std::nullopt, "VLAN " + text::quoted(service) + reason};
}

bool holds(const std::vector<VLANInfo>& vlans, const std::string& name, const std::string& parent, long tag) {
    return std::any_of(vlans.begin(), vlans.end(), [&](const VLANInfo& vlan) {
        return vlan.name == name && vlan.parentDevice == parent && vlan.tag == tag;
    });
}

VLANRemains look(const Shell& shell, const VLANInfo& old, const std::string& name, const std::string& parent,
                 long tag) {
    const auto services =
        NetworkSetup::parseServices(shell.run(NetworkSetup::tool, {"-listallnetworkservices"}));
    const auto vlans = VLAN::parseList(shell.run(NetworkSetup::tool, {"-listVLANs"}));
    if (holds(vlans, name, parent, tag)) return VLANRemains::newVLAN;
    if (holds(vlans, old.name, old.parentDevice, old.tag)) return VLANRemains::oldVLAN;
    // Without any service the tool couldn't answer; with one of that name the list of VLANs failed to come.
    if (services.empty()) return VLANRemains::unknown;
    const bool named = std::any_of(services.begin(), services.end(), [&](const auto& service) {
        return service.name == name || service.name == old.name;
    });
    return named ? VLANRemains::unknown : VLANRemains::nothing;
}

} // namespace

VLANSettings::Reading VLANSettings::read(const Shell& shell, const std::string& service) {
    const auto unread =
        refusedFor(service, " wasn't changed: its settings couldn't be read. Try again in a moment.");
    const auto services =
        NetworkSetup::parseServices(shell.run(NetworkSetup::tool, {"-listallnetworkservices"}));
    const auto listed = std::find_if(services.begin(), services.end(),
                                     [&](const auto& other) { return other.name == service; });
    if (listed == services.end()) return unread;
    if (!listed->enabled) {
        return refusedFor(service, " wasn't changed: it is disabled and would come back enabled. Enable it "
                                   "in the system's network settings first.");
    }
    const auto info = shell.run(NetworkSetup::tool, {"-getinfo", service});
    const auto dns = shell.run(NetworkSetup::tool, {"-getdnsservers", service});
    auto routes = RouteStore::read(shell, service);
    if (!NetworkSetup::isAnswer(info) || !NetworkSetup::isAnswer(dns) || !routes) return unread;

    VLANSettings settings{NetworkSetup::parseInfo(info), std::move(*routes)};
    settings.config.dns = NetworkSetup::parseDNS(dns);
    const bool known = settings.config.mode.isDHCP() || settings.config.mode.isManual();
    if (!known || !NetworkPreset::fromConfig(service, settings.config).isValid()) {
        return refusedFor(service, " wasn't changed: its IP settings (" + settings.config.modeLabel() +
                                       ") couldn't be put back. Apply a preset to it first.");
    }
    return {std::move(settings), {}};
}

std::string VLANSettings::description(const std::string& service) const {
    const auto preset = NetworkPreset::fromConfig(service, config);
    std::string text = "IP settings before the change: ";
    text += preset.summary();
    if (!preset.dns.empty()) text += " · DNS " + text::join(preset.dns, ", ");
    for (const StaticRoute& route : routes) text += " · route " + route.summary();
    return text + ".";
}

VLANRemains lookForVLAN(const Shell& shell, const VLANInfo& old, const std::string& name,
                        const std::string& parent, long tag) {
    constexpr int tries = 3;
    constexpr unsigned long pauseMs = 300;
    for (int i = 1;; ++i) {
        const VLANRemains found = look(shell, old, name, parent, tag);
        if (found != VLANRemains::unknown || i == tries) return found;
        QThread::msleep(pauseMs);
    }
}

} // namespace corvane
