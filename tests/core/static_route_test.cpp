#include "core/netconfig/static_route.h"

#include "core/netconfig/service_order.h"
#include "fixture.h"

#include <gtest/gtest.h>

namespace corvane {

using testing::fixture;
using testing::withCRLF;
using Strings = std::vector<std::string>;

static StaticRoute route(const char* destination, const char* mask, const char* gateway) {
    return {Uuid::generate(), destination, mask, gateway};
}

TEST(StaticRoute, SaysWhatIsWrongInOrder) {
    EXPECT_EQ(route("10.20", "/33", "").errors(),
              (Strings{"Destination isn't a valid IPv4 address.",
                       "Mask isn't valid (use 255.255.0.0 or /16).", "Gateway isn't a valid IPv4 address."}));
    for (const char* mask : {"16", "/16", " 255.255.0.0 ", "/0", "255.255.255.255"})
        EXPECT_EQ(route("10.20.0.0", mask, "192.168.1.1").errors(), Strings()) << mask;
    for (const char* mask : {"", "/", "-1", "0x10", "/16 16"})
        EXPECT_EQ(route("10.20.0.0", mask, "192.168.1.1").errors(),
                  Strings{"Mask isn't valid (use 255.255.0.0 or /16)."})
            << mask;
}

TEST(StaticRoute, WarnsOfHostBits) {
    EXPECT_EQ(route("10.20.1.0", "/16", "192.168.1.1").warnings(),
              Strings{"Destination has host bits set — did you mean 10.20.0.0?"});
    EXPECT_EQ(route("10.20.0.1", "0", "192.168.1.1").warnings(),
              Strings{"Destination has host bits set — did you mean 0.0.0.0?"});
    EXPECT_EQ(route("10.20.0.0", "/16", "192.168.1.1").warnings(), Strings());
    EXPECT_EQ(route("10.20.1.7", "/32", "192.168.1.1").warnings(), Strings());
    // Errors come first.
    EXPECT_EQ(route("10.20.1.0", "/16", "192.168.1").warnings(), Strings());
}

TEST(StaticRoute, DescribesItself) {
    EXPECT_EQ(route("10.20.0.0", "255.255.0.0", "192.168.1.1").summary(), "10.20.0.0/16 via 192.168.1.1");
    EXPECT_EQ(route("10.20.0.0", "24", "192.168.1.1").summary(), "10.20.0.0/24 via 192.168.1.1");
    EXPECT_EQ(route("10.20.0.0", "255.0.255.0", "192.168.1.1").summary(),
              "10.20.0.0 255.0.255.0 via 192.168.1.1");
}

TEST(StaticRoute, BuildsItsCommand) {
    EXPECT_EQ(StaticRoute::setCommand("Stage LAN", {}),
              (Strings{"/usr/sbin/networksetup", "-setadditionalroutes", "Stage LAN"}));
    EXPECT_EQ(StaticRoute::setCommand("Stage LAN", {route("10.20.0.0", "/16", "192.168.1.1"),
                                                    route(" 010.30.0.0", "odd mask", "192.168.001.2")}),
              (Strings{"/usr/sbin/networksetup", "-setadditionalroutes", "Stage LAN", "10.20.0.0",
                       "255.255.0.0", "192.168.1.1", "10.30.0.0", "odd mask", "192.168.1.2"}));
}

TEST(StaticRoute, ReadsTheTable) {
    const std::vector<StaticRoute> expected = {route("10.20.0.0", "255.255.0.0", "192.168.1.1"),
                                               route("198.51.100.64", "255.255.255.192", "192.168.1.254")};
    const auto text = fixture("getadditionalroutes.txt");
    for (const auto& output : {text, withCRLF(text), "A sentence.\n" + text + "\n  (end)\n"}) {
        const auto routes = StaticRoute::parse(output);
        EXPECT_TRUE(StaticRoute::sameRoutes(routes, expected)) << output;
        ASSERT_EQ(routes.size(), 2U);
        EXPECT_EQ(routes[0].destination, "10.20.0.0");
        EXPECT_FALSE(routes[0].id.isNil() || routes[0].id == routes[1].id);
        EXPECT_NE(routes[0].id, StaticRoute::parse(output)[0].id);
    }
    EXPECT_EQ(StaticRoute::parse("\t10.0.0.0,  /8\t10.1.1.1 en5")[0].summary(), "10.0.0.0/8 via 10.1.1.1");
    for (const auto& none : {fixture("getadditionalroutes-none.txt"), std::string(),
                             std::string("Stage 5 is not a recognized network service.\n** Error: 4\n"),
                             std::string("10.20.0.0 255.255.0.0\n")})
        EXPECT_TRUE(StaticRoute::parse(none).empty()) << none;
}

TEST(StaticRoute, ComparesTables) {
    const auto a = route("10.20.0.0", "/16", "192.168.1.1"), b = route("10.30.0.0", "/16", "192.168.1.1");
    const auto same = StaticRoute::sameRoutes;
    EXPECT_TRUE(same({}, {}));
    EXPECT_TRUE(same(
        {a, b}, {route("10.30.0.0", "16", "192.168.1.1"), route("10.20.0.0", "255.255.0.0", "192.168.1.1")}));
    EXPECT_FALSE(same({a}, {}));
    EXPECT_FALSE(same({a, a}, {a, b}));
    EXPECT_FALSE(same({a}, {route("10.20.0.0", "/15", "192.168.1.1")}));
    EXPECT_FALSE(same({a}, {route("10.20.0.0", "/16", "192.168.1.2")}));
}

TEST(StaticRoute, IsKeptAsJson) {
    const auto kept = route("10.20.0.0", "/16", "192.168.1.1");
    EXPECT_EQ(StaticRoute::fromJson(kept.toJson()), kept);
    EXPECT_EQ(kept.toJson().object()->size(), 4U);
    for (const char* key : {"id", "destination", "mask", "gateway"}) {
        auto json = kept.toJson();
        (*json.object())[key] = 7L;
        EXPECT_FALSE(StaticRoute::fromJson(json)) << key;
    }
}

TEST(ServiceOrder, MovesOneToTheTop) {
    const Strings order = {"Ethernet", "Wi-Fi", "USB"};
    EXPECT_EQ(ServiceOrder::movedToTop("Wi-Fi", order), (Strings{"Wi-Fi", "Ethernet", "USB"}));
    EXPECT_EQ(ServiceOrder::movedToTop("None such", order), order);
    EXPECT_EQ(ServiceOrder::parseDefaultRoute("   route to: default\n    gateway: 10.0.0.1\n").interface,
              std::nullopt);
}

} // namespace corvane
