// The tools' printed texts: VLANs, devices that can carry them, static routes.
#include "fuzz.h"

#include "core/netconfig/static_route.h"
#include "core/netconfig/vlan.h"
#include "core/support/text.h"

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string output(asText(data, size));
    const auto vlans = VLAN::parseList(output);
    for (const auto& vlan : vlans) {
        require(text::trim(vlan.name) == vlan.name && text::trim(vlan.device) == vlan.device,
                "a VLAN's words are trimmed");
        require(!VLAN::validateEdit(vlan, "?", "1", vlan.parentDevice, {vlan}, {vlan.name}),
                "a VLAN isn't compared with itself");
        require(VLAN::deleteCommands(vlan).front().size() == 5, "a deletion has three words");
    }
    for (const auto& device : VLAN::parseCapableDevices(output))
        require(device.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789") == std::string::npos,
                "a device is a plain word");

    const auto routes = StaticRoute::parse(output);
    const auto command = StaticRoute::setCommand("X", routes);
    require(command.size() == 3 + 3 * routes.size(), "three words a route");
    std::string listing;
    for (const auto& route : routes) {
        require(!route.summary().empty(), "a route has a summary");
        require(route.errors().empty() || route.warnings().empty(), "no warning beside errors");
        const auto kept = StaticRoute::fromJson(route.toJson());
        require(!kept || *kept == route, "JSON keeps a route");
        listing += route.destination + " " + route.mask + " " + route.gateway + "\n";
    }
    require(StaticRoute::sameRoutes(StaticRoute::parse(listing), routes), "a listing reads back");
    const auto message = VLAN::validate(output, output, output, vlans, {});
    require(!message || !message->empty(), "a message has words");
    return 0;
}
