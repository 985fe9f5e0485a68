#include "core/netconfig/network_setup.h"

#include "core/netconfig/service_info.h"
#include "core/netconfig/service_order.h"
#include "fixture.h"

#include <gtest/gtest.h>

#include <chrono>

namespace corvane {

using NetworkSetup::ListedService;
using NetworkSetup::PortAndDevice;
using testing::fixture;
using testing::withCRLF;
using Strings = std::vector<std::string>;

TEST(NetworkSetup, ListsServices) {
    const std::vector<ListedService> expected = {{"Wi-Fi", true},
                                                 {"USB 10/100/1000 LAN", true},
                                                 {"Thunderbolt Bridge", false},
                                                 {"Bob's USB (rack, left)", true}};
    const auto text = fixture("listallnetworkservices.txt");
    EXPECT_EQ(NetworkSetup::parseServices(text), expected);
    EXPECT_EQ(NetworkSetup::parseServices(withCRLF(text)), expected);
    EXPECT_EQ(NetworkSetup::parseServices("header\n* USB LAN \n \n*\n"),
              (std::vector<ListedService>{{"USB LAN", false}}));
    for (const char* none :
         {"", "Wi-Fi\n", "An asterisk (*) denotes that a network service is disabled.\n\n"}) {
        EXPECT_TRUE(NetworkSetup::parseServices(none).empty());
    }
}

TEST(NetworkSetup, ReadsPortsAndDevicesByService) {
    const std::map<std::string, PortAndDevice> expected = {
        {"USB 10/100/1000 LAN", {"USB 10/100/1000 LAN", "en7"}},
        {"Wi-Fi", {"Wi-Fi", "en0"}},
        {"Thunderbolt Bridge", {"Thunderbolt Bridge", "bridge0"}},
        {"Bob's USB (rack, left)", {"AX88179A", std::nullopt}}};
    const auto text = fixture("listnetworkserviceorder.txt");
    EXPECT_EQ(NetworkSetup::parseServiceOrder(text), expected);
    EXPECT_EQ(NetworkSetup::parseServiceOrder(withCRLF(text)), expected);

    const auto odd =
        NetworkSetup::parseServiceOrder("(Hardware Port: A, Device: en1)\n(Hardware Port: B, Device: en2)\n"
                                        "(1) X\n(no end\n(Hardware Port: C, Device: en3)\n"
                                        "(Hardware Port: D, Device: en4)\n"
                                        "(2) X\n(Hardware Port: none, Device: en5)\n(3) Y\n");
    EXPECT_EQ(odd, (std::map<std::string, PortAndDevice>{{"X", {std::nullopt, "en5"}}}));
}

TEST(NetworkSetup, ReadsCurrentSettings) {
    CurrentConfig dhcp;
    dhcp.mode = CurrentConfig::Mode::dhcp();
    dhcp.ip = "192.0.2.23";
    dhcp.subnet = "255.255.255.0";
    dhcp.router = "192.0.2.1";
    EXPECT_EQ(NetworkSetup::parseInfo(fixture("getinfo-dhcp.txt")), dhcp);
    EXPECT_EQ(NetworkSetup::parseInfo(withCRLF(fixture("getinfo-dhcp.txt"))), dhcp);

    const auto manual = NetworkSetup::parseInfo(fixture("getinfo-manual-without-router.txt"));
    EXPECT_TRUE(manual.mode.isManual());
    EXPECT_EQ(manual.ip, "10.0.0.5");
    EXPECT_EQ(manual.router, std::nullopt);

    EXPECT_EQ(NetworkSetup::parseInfo("BOOTP Configuration\n").modeLabel(), "BOOTP");
    EXPECT_EQ(NetworkSetup::parseInfo("Configuration\n").modeLabel(), "Configuration");
    EXPECT_EQ(NetworkSetup::parseInfo("** Error: The parameters were not valid.\n"), CurrentConfig());
    const auto odd = NetworkSetup::parseInfo("Router: 1.1.1.1\nrouter: 2.2.2.2\nRouter: NONE\nIP address:\n");
    EXPECT_EQ(odd, CurrentConfig());
}

TEST(NetworkSetup, ReadsServers) {
    EXPECT_EQ(NetworkSetup::parseDNS(fixture("getdnsservers-mixed.txt")), (Strings{"8.8.8.8", "1.1.1.1"}));
    EXPECT_EQ(NetworkSetup::parseDNS(fixture("getdnsservers-none.txt")), Strings{});
}

TEST(NetworkSetup, ReadsTheFirstStatusLine) {
    EXPECT_EQ(NetworkSetup::parseLinkActive(fixture("ifconfig-two-addresses.txt")), true);
    EXPECT_EQ(NetworkSetup::parseLinkActive("status: inactive\nstatus: active\n"), false);
    EXPECT_EQ(NetworkSetup::parseLinkActive("status: active now\n"), false);
    EXPECT_EQ(NetworkSetup::parseLinkActive("no status: active\n"), std::nullopt);
}

TEST(Ifconfig, ReadsTheDevice) {
    for (const auto& text :
         {fixture("ifconfig-two-addresses.txt"), withCRLF(fixture("ifconfig-two-addresses.txt"))}) {
        const auto info = IfconfigInfo::parse(text);
        EXPECT_TRUE(info.present);
        EXPECT_EQ(info.linkActive, true);
        EXPECT_EQ(info.media, "1000baseT <full-duplex>");
        EXPECT_EQ(info.speedLabel(), "1 Gb/s");
        EXPECT_EQ(info.addresses, (Strings{"169.254.10.2", "192.168.1.20"}));
        EXPECT_EQ(info.mac, "02:00:5e:10:20:31");
    }
    const auto bridge = IfconfigInfo::parse(fixture("ifconfig-bridge.txt"));
    EXPECT_EQ(bridge.linkActive, false);
    EXPECT_EQ(bridge.media, "<unknown type>");
    EXPECT_EQ(bridge.speedLabel(), std::nullopt);
    EXPECT_EQ(IfconfigInfo::parse(fixture("ifconfig-missing.txt")), IfconfigInfo());
    EXPECT_EQ(IfconfigInfo::parse(""), IfconfigInfo());
    EXPECT_EQ(IfconfigInfo::parse("media: x) (y\n").media, "x) (y");
}

TEST(Ifconfig, SpeedsByMedia) {
    const std::pair<const char*, const char*> speeds[] = {{"10GbaseT <full-duplex>", "10 Gb/s"},
                                                          {"5GBASE-T", "5 Gb/s"},
                                                          {"5000baseT", "5 Gb/s"},
                                                          {"2500Base-T", "2.5 Gb/s"},
                                                          {"1000baseT", "1 Gb/s"},
                                                          {"100baseTX", "100 Mb/s"},
                                                          {"10baseT/UTP", "10 Mb/s"}};
    for (const auto& [media, label] : speeds) {
        IfconfigInfo info;
        info.media = media;
        EXPECT_EQ(info.speedLabel(), label);
    }
    IfconfigInfo half;
    half.media = "100baseTX <HALF-duplex>";
    EXPECT_TRUE(half.isHalfDuplex());
    EXPECT_FALSE(IfconfigInfo().isHalfDuplex());
    EXPECT_EQ(IfconfigInfo().speedLabel(), std::nullopt);
}

TEST(LinkState, FollowsTheHardware) {
    ServiceInfo service;
    service.device = "en7";
    service.config = CurrentConfig();
    service.config->ip = "10.0.0.5";
    const auto stateWith = [&](IfconfigInfo info) {
        service.hardware = std::move(info);
        return service.state();
    };
    EXPECT_EQ(stateWith(IfconfigInfo::parse(fixture("ifconfig-missing.txt"))), LinkState::adapterMissing());
    EXPECT_EQ(stateWith({true, false, {}, {"10.0.0.5"}, {}}), LinkState::noLink());
    EXPECT_EQ(stateWith({true, std::nullopt, {}, {}, {}}), LinkState::noAddress());
    EXPECT_EQ(stateWith({true, true, {}, {"169.254.10.2", "192.168.1.20"}, {}}),
              LinkState::connected("192.168.1.20"));
    EXPECT_EQ(stateWith({true, true, {}, {"169.254.10.2"}, {}}), LinkState::selfAssigned("169.254.10.2"));
    service.device.reset();
    EXPECT_EQ(service.state(), LinkState::connected("10.0.0.5"));
    service.config->ip = "169.254.1.1";
    EXPECT_EQ(service.state(), LinkState::selfAssigned("169.254.1.1"));
    service.config->ip.reset();
    EXPECT_EQ(service.state(), LinkState::inactive());
    service.enabled = false;
    EXPECT_EQ(service.state(), LinkState::disabled());
}

TEST(LinkState, RanksAndTitles) {
    const std::vector<std::pair<LinkState, std::string>> ranked = {
        {LinkState::connected("10.0.0.5"), "Connected"},
        {LinkState::selfAssigned("169.254.1.1"), "Self-assigned IP · no DHCP"},
        {LinkState::noAddress(), "Link up · no IP address"},
        {LinkState::noLink(), "No cable / no link"},
        {LinkState::inactive(), "Not connected"},
        {LinkState::adapterMissing(), "Adapter not plugged in"},
        {LinkState::disabled(), "Disabled"}};
    for (int rank = 0; rank < 7; ++rank) {
        const auto& [state, title] = ranked[static_cast<std::size_t>(rank)];
        EXPECT_EQ(state.sortRank(), rank);
        EXPECT_EQ(state.title(), title);
        EXPECT_EQ(state.isConnected(), rank == 0);
        EXPECT_EQ(state.hasLink(), rank <= 2);
    }
}

TEST(ServiceOrder, ReadsAndMoves) {
    const auto order = ServiceOrder::parse(fixture("listnetworkserviceorder.txt"));
    EXPECT_EQ(order,
              (Strings{"USB 10/100/1000 LAN", "Wi-Fi", "Thunderbolt Bridge", "Bob's USB (rack, left)"}));
    EXPECT_EQ(ServiceOrder::parse("(1)\n(no end\n(2) A\n"), Strings{"A"});
    EXPECT_EQ(ServiceOrder::movedToTop("Wi-Fi", {"Ethernet", "Wi-Fi", "USB"}),
              (Strings{"Wi-Fi", "Ethernet", "USB"}));
    EXPECT_EQ(ServiceOrder::movedToTop("X", {"Ethernet", "Wi-Fi"}), (Strings{"Ethernet", "Wi-Fi"}));
    EXPECT_EQ(ServiceOrder::command({"A", "B"}),
              (Strings{"/usr/sbin/networksetup", "-ordernetworkservices", "A", "B"}));
}

TEST(ServiceOrder, ReadsTheDefaultRoute) {
    EXPECT_EQ(ServiceOrder::parseDefaultRoute(fixture("route-default.txt")),
              (ServiceOrder::DefaultRoute{"en0", "192.0.2.1"}));
    EXPECT_EQ(ServiceOrder::parseDefaultRoute(fixture("route-none.txt")), ServiceOrder::DefaultRoute());
}

TEST(NetworkSetup, HostileTextCostsLinearTime) {
    std::vector<std::string> texts = {std::string(300'000, '('), std::string(300'000, '\n'),
                                      std::string(300'000, '\xFF')};
    for (const char* piece : {"(1) x\n", "(Hardware Port: ", ", ", "inet ", "a:", "Configuration", ")\r"}) {
        std::string text;
        while (text.size() < 300'000) text += piece;
        texts.push_back("(1) x\n(Hardware Port: " + text);
    }
    const auto start = std::chrono::steady_clock::now();
    for (const auto& text : texts) {
        NetworkSetup::parseServices(text);
        NetworkSetup::parseServiceOrder(text);
        NetworkSetup::parseInfo(text);
        NetworkSetup::parseDNS(text);
        IfconfigInfo::parse(text);
        ServiceOrder::parse(text);
        ServiceOrder::parseDefaultRoute(text);
    }
    // Ten megabytes through seven parsers: under a second with sanitizers, hours if any of them were
    // quadratic.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace corvane
