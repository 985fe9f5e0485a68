// The tools' printed texts: services, order, settings, servers, device, default route.
#include "fuzz.h"

#include "core/netconfig/ipv4.h"
#include "core/netconfig/service_info.h"
#include "core/netconfig/service_order.h"
#include "core/support/text.h"

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto output = asText(data, size);
    for (const auto& service : NetworkSetup::parseServices(output)) {
        require(!service.name.empty() && text::trim(service.name) == service.name, "names are trimmed");
    }
    const auto hardware = NetworkSetup::parseServiceOrder(output);
    const auto order = ServiceOrder::parse(output);
    for (const auto& [name, port] : hardware) {
        require(std::find(order.begin(), order.end(), name) != order.end(),
                "a service with hardware is in the order");
        require(!port.device || !port.device->empty(), "a device has a name");
    }
    for (const auto& server : NetworkSetup::parseDNS(output))
        require(IPv4::isValid(server), "servers are addresses");
    NetworkSetup::parseLinkActive(output);
    ServiceOrder::parseDefaultRoute(output);

    ServiceInfo service;
    service.device = "en0";
    service.config = NetworkSetup::parseInfo(output);
    service.hardware = IfconfigInfo::parse(output);
    require(service.hardware->present || *service.hardware == IfconfigInfo(),
            "an absent device has no facts");
    require(!service.state().title().empty(), "every state has a title");
    service.hardware->speedLabel();
    return 0;
}
