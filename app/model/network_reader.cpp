#include "app/model/network_reader.h"

#include "core/netconfig/network_setup.h"
#include "core/netconfig/service_order.h"
#include "core/netconfig/vlan.h"

namespace corvane {

std::string NetworkReader::run(const char* tool, const std::vector<std::string>& arguments) const {
    if (cancelled_ && cancelled_->load()) return {};
    return shell_.run(tool, arguments);
}

std::vector<ServiceInfo> NetworkReader::readAll() const {
    const auto listed = NetworkSetup::parseServices(run(NetworkSetup::tool, {"-listallnetworkservices"}));
    const auto hardware =
        NetworkSetup::parseServiceOrder(run(NetworkSetup::tool, {"-listnetworkserviceorder"}));
    std::vector<ServiceInfo> services;
    services.reserve(listed.size());
    for (const auto& [name, enabled] : listed) {
        ServiceInfo info;
        info.name = name;
        info.enabled = enabled;
        if (const auto found = hardware.find(name); found != hardware.end()) {
            info.hardwarePort = found->second.port;
            info.device = found->second.device;
        }
        if (enabled) {
            auto config = NetworkSetup::parseInfo(run(NetworkSetup::tool, {"-getinfo", name}));
            config.dns = NetworkSetup::parseDNS(run(NetworkSetup::tool, {"-getdnsservers", name}));
            info.config = std::move(config);
        }
        if (info.device) info.hardware = IfconfigInfo::parse(run(NetworkSetup::ifconfigTool, {*info.device}));
        services.push_back(std::move(info));
    }
    return services;
}

NetworkSnapshot NetworkReader::snapshot() const {
    NetworkSnapshot snapshot;
    snapshot.services = readAll();
    snapshot.vlans = VLAN::parseList(run(NetworkSetup::tool, {"-listVLANs"}));
    snapshot.vlanCapable =
        VLAN::parseCapableDevices(run(NetworkSetup::tool, {"-listdevicesthatsupportVLAN"}));
    snapshot.serviceOrder = ServiceOrder::parse(run(NetworkSetup::tool, {"-listnetworkserviceorder"}));
    snapshot.internetDevice =
        ServiceOrder::parseDefaultRoute(run(NetworkSetup::routeTool, {"-n", "get", "default"})).interface;
    return snapshot;
}

} // namespace corvane
