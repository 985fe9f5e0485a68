#include "core/netconfig/ifconfig_info.h"
#include "core/netconfig/link_state.h"
#include "core/netconfig/network_setup.h"
#include "core/netconfig/service_order.h"
#include "hosttools/simulated/administrator.h"
#include "simulated_fixture.h"

#include <fstream>

namespace corvane::simulated {

TEST_F(SimulatedMac, ALeaseTakesItsTime) {
    EXPECT_EQ(setup({"-setmanual", "Ethernet", "10.0.10.9", "255.255.255.0", "10.0.10.1"}), "");
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).addresses, std::vector<std::string>{"10.0.10.9"});
    EXPECT_EQ(setup({"-setdhcp", "Ethernet"}), "");
    now += 1400;
    EXPECT_TRUE(IfconfigInfo::parse(ifconfig("en5")).addresses.empty());
    EXPECT_EQ(NetworkSetup::parseInfo(setup({"-getinfo", "Ethernet"})).ip, std::nullopt);
    now += 200;
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).addresses, std::vector<std::string>{"10.0.10.57"});

    EXPECT_EQ(setup({"-setdhcp", "Stage LAN"}), "");
    now += 2900;
    EXPECT_TRUE(IfconfigInfo::parse(ifconfig("en8")).addresses.empty());
    now += 200;
    ASSERT_EQ(IfconfigInfo::parse(ifconfig("en8")).addresses.size(), 1u);
    EXPECT_TRUE(LinkState::isLinkLocal(IfconfigInfo::parse(ifconfig("en8")).addresses[0]));
    edit([](State& state) { state.delayScale = 0; });
    EXPECT_EQ(setup({"-setdhcp", "Ethernet"}), "");
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).addresses.size(), 1u);
}

TEST_F(SimulatedMac, CablesAndAdaptersComeAndGo) {
    run("ifconfig", {"en5", "alias", "10.9.9.9", "255.255.255.0"});
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).addresses.size(), 2u);
    edit([](State& state) { state.devices["en5"].link = false; });
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).linkActive, false);
    EXPECT_TRUE(IfconfigInfo::parse(ifconfig("en5")).addresses.empty());
    edit([](State& state) { state.devices["en5"].link = true; });
    ifconfig("en5");
    now = currentTime() + 1600;
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en5")).addresses, std::vector<std::string>{"10.0.10.57"})
        << "the temporary address doesn't outlive the cable";
    edit([](State& state) { state.devices["en7"].plugged = true; });
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en7")).addresses, std::vector<std::string>{"192.168.10.20"});
    EXPECT_EQ(run("ifconfig", {"en5", "-alias", "10.9.9.9"}).err,
              "ifconfig: ioctl (SIOCDIFADDR): Can't assign requested address\n");
}

TEST_F(SimulatedMac, SettingsKeepApart) {
    setup({"-setdnsservers", "Ethernet", "9.9.9.9", "1.1.1.1"});
    setup({"-setmanual", "Ethernet", "10.0.10.9", "255.255.255.0"});
    EXPECT_EQ(NetworkSetup::parseDNS(setup({"-getdnsservers", "Ethernet"})),
              (std::vector<std::string>{"9.9.9.9", "1.1.1.1"}));
    EXPECT_EQ(NetworkSetup::parseInfo(setup({"-getinfo", "Ethernet"})).router, std::nullopt);
    setup({"-setdnsservers", "Ethernet", "Empty"});
    EXPECT_EQ(setup({"-getdnsservers", "Ethernet"}), "There aren't any DNS Servers set on Ethernet.\n");
    setup({"-setadditionalroutes", "Ethernet", "10.20.0.0", "255.255.0.0", "10.0.10.1"});
    EXPECT_EQ(setup({"-getadditionalroutes", "Ethernet"}), "10.20.0.0 255.255.0.0 10.0.10.1\n");
    setup({"-setadditionalroutes", "Ethernet"});
    EXPECT_EQ(setup({"-getadditionalroutes", "Ethernet"}),
              "There are no additional IPv4 routes on Ethernet.\n");

    auto order =
        ServiceOrder::movedToTop("Ethernet", ServiceOrder::parse(setup({"-listnetworkserviceorder"})));
    auto command = ServiceOrder::command(order);
    setup({command.begin() + 1, command.end()});
    EXPECT_EQ(ServiceOrder::parse(setup({"-listnetworkserviceorder"})), order);
    EXPECT_EQ(ServiceOrder::parseDefaultRoute(run("route", {"-n", "get", "default"}).out).interface, "en0")
        << "the first has no router now";
    setup({"-setmanual", "Ethernet", "10.0.10.9", "255.255.255.0", "10.0.10.1"});
    EXPECT_EQ(ServiceOrder::parseDefaultRoute(run("route", {"-n", "get", "default"}).out).interface, "en5");
}

TEST_F(SimulatedMac, AVLANLivesAndGoes) {
    EXPECT_EQ(setup({"-listVLANs"}), "There are no VLANs currently configured on this system.\n");
    EXPECT_EQ(setup({"-createVLAN", "Comms", "en5", "20"}), "");
    EXPECT_EQ(
        setup({"-listVLANs"}),
        "VLAN User Defined Name: Comms\nParent Device: en5\nDevice (\"Hardware\" Port): vlan0\nTag: 20\n");
    EXPECT_EQ(run("networksetup", {"-createVLAN", "Again", "en5", "20"}).status, 4);
    EXPECT_EQ(setup({"-createVLAN", "Other", "en8", "20"}), "");
    now += 1600;
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("vlan0")).addresses.size(), 1u);
    edit([](State& state) { state.devices["en5"].link = false; });
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("vlan0")).linkActive, false) << "carried by a cable that is out";
    EXPECT_EQ(setup({"-deleteVLAN", "Comms", "en5", "20"}), "");
    EXPECT_EQ(run("ifconfig", {"vlan0"}).status, 1);
    EXPECT_EQ(NetworkSetup::parseServices(setup({"-listallnetworkservices"})).size(), 7u);
}

TEST_F(SimulatedMac, FaultsStrikeOnce) {
    setup({"-listVLANs"});
    edit([](State& state) {
        state.failNext = {{"-setmanual", "** Error: The parameters were not valid.", 0}};
    });
    SimulatedEngine engine(file);
    EXPECT_EQ(engine.takeFault("networksetup", {"-setdhcp", "Wi-Fi"}), std::nullopt);
    const auto fault = engine.takeFault("networksetup", {"-setmanual", "Wi-Fi"});
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->out, "** Error: The parameters were not valid.\n");
    EXPECT_EQ(SimulatedEngine(file).takeFault("networksetup", {"-setmanual", "Wi-Fi"}), std::nullopt);
}

TEST_F(SimulatedMac, TheAdministratorsPasswordCanBeWrong) {
    const std::string user = administratorName(file);
    EXPECT_EQ(user, loginName());
    EXPECT_TRUE(checkPassword(file, user, defaultPassword));
    EXPECT_FALSE(checkPassword(file, user, "wrong"));
    EXPECT_FALSE(checkPassword(file, "somebody", defaultPassword));
    EXPECT_FALSE(checkPassword(file, user, ""));
    std::ifstream stored(file);
    const std::string text((std::istreambuf_iterator<char>(stored)), {});
    EXPECT_EQ(text.find(defaultPassword), std::string::npos);
    edit([](State& state) { state.administrator = {}; });
    EXPECT_FALSE(checkPassword(file, "", ""));
}

TEST_F(SimulatedMac, AStateFileMayBeAnything) {
    for (const char* text : {"", "{", "[]", "{\"services\": []}", "\xFF\xFE"}) {
        std::ofstream(file, std::ios::trunc) << text;
        const hosttools::Printed printed = run("networksetup", {"-listallnetworkservices"});
        EXPECT_EQ(printed.status, 1);
        EXPECT_TRUE(NetworkSetup::outputIndicatesError(printed.out)) << printed.out;
        EXPECT_TRUE(NetworkSetup::outputIndicatesError(setup({"-setdhcp", "Wi-Fi"})));
    }
    std::ofstream(file, std::ios::trunc)
        << R"({"devices": {"en0": {"parent": "en0", "aliases": [{"prefix": 99}, 3], "dhcp": 5},
        "en1": 7}, "services": [{"name": 5}, {"device": "en0", "method": "manual", "ip": "x", "routes": [[1, 2]]}],
        "delayScale": -4, "failNext": [3], "vlans": [0]})";
    EXPECT_EQ(setup({"-listallnetworkservices"}),
              "An asterisk (*) denotes that a network service is disabled.\nService\nService 2\n");
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("en0")).linkActive, false)
        << "a device that carries itself is never up";
}

} // namespace corvane::simulated
