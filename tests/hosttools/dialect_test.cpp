// The printed texts against the parsers that read a Mac's: what the tools print is what the program
// understands.
#include "core/netconfig/ifconfig_info.h"
#include "core/netconfig/network_setup.h"
#include "core/netconfig/service_order.h"
#include "hosttools/names.h"
#include "simulated_fixture.h"

namespace corvane::simulated {

using Dialect = SimulatedMac;

TEST_F(Dialect, ListingsReadBackAsTheyAre) {
    const auto services = NetworkSetup::parseServices(setup({"-listallnetworkservices"}));
    ASSERT_EQ(services.size(), 6u);
    EXPECT_EQ(services[0].name, "Wi-Fi");
    EXPECT_EQ(services[4], (NetworkSetup::ListedService{"iPhone USB", false}));
    const std::string order = setup({"-listnetworkserviceorder"});
    const auto ports = NetworkSetup::parseServiceOrder(order);
    EXPECT_EQ(ports.at("Ethernet"), (NetworkSetup::PortAndDevice{"Thunderbolt Ethernet", "en5"}));
    EXPECT_EQ(ports.at("iPhone USB").device, "en6");
    const auto names = ServiceOrder::parse(order);
    ASSERT_EQ(names.size(), services.size());
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(names[i], services[i].name);

    const CurrentConfig config = NetworkSetup::parseInfo(setup({"-getinfo", "Ethernet"}));
    EXPECT_TRUE(config.mode.isDHCP());
    EXPECT_EQ(config.ip, "10.0.10.57");
    EXPECT_EQ(config.router, "10.0.10.1");
    EXPECT_EQ(NetworkSetup::parseInfo(setup({"-getinfo", "Stage LAN"})).router, std::nullopt);
    EXPECT_EQ(NetworkSetup::parseInfo(setup({"-getinfo", "nobody"})).mode, CurrentConfig::Mode::other("Off"));

    const IfconfigInfo wired = IfconfigInfo::parse(ifconfig("en5"));
    EXPECT_EQ(wired.speedLabel(), "1 Gb/s");
    EXPECT_EQ(wired.addresses, std::vector<std::string>{"10.0.10.57"});
    EXPECT_EQ(wired.mac, "3c:cd:36:5f:9a:e1");
    EXPECT_EQ(wired.linkActive, true);
    EXPECT_EQ(IfconfigInfo::parse(ifconfig("bridge0")).linkActive, false);
    const hosttools::Printed absent = run("ifconfig", {"en7"});
    EXPECT_EQ(absent.status, 1);
    EXPECT_FALSE(IfconfigInfo::parse(absent.out + absent.err).present);
    EXPECT_EQ(ServiceOrder::parseDefaultRoute(run("route", {"-n", "get", "default"}).out),
              (ServiceOrder::DefaultRoute{"en0", "192.168.1.1"}));
}

TEST_F(Dialect, ErrorsReadAsErrors) {
    const std::vector<std::vector<std::string>> wrong{
        {"-setdhcp", "nobody"},
        {"-setmanual", "Wi-Fi", "1.2.3", "255.255.255.0"},
        {"-setmanual", "Wi-Fi", "10.0.0.1", "255.0.255.0"},
        {"-setmanual", "Wi-Fi", "10.0.0.1", "255.255.255.0", "router"},
        {"-setmanual", "Wi-Fi"},
        {"-setdnsservers", "Wi-Fi", "1.1.1.1", "nine"},
        {"-setdnsservers", "Wi-Fi"},
        {"-ordernetworkservices", "Wi-Fi", "Ethernet"},
        {"-ordernetworkservices", "Wi-Fi", "Wi-Fi", "USB 10/100 LAN", "Thunderbolt Bridge", "iPhone USB",
         "Stage LAN"},
        {"-setadditionalroutes", "Wi-Fi", "10.0.0.0", "255.0.0.0"},
        {"-createVLAN", "Comms", "en0", "20"},
        {"-createVLAN", "Comms", "en5", "4095"},
        {"-createVLAN", "Wi-Fi", "en5", "20"},
        {"-deleteVLAN", "Comms", "en5", "20"},
        {"-frobnicate"},
        {}};
    const std::string before = setup({"-getinfo", "Wi-Fi"});
    for (const auto& arguments : wrong) {
        const hosttools::Printed printed = run("networksetup", arguments);
        EXPECT_TRUE(NetworkSetup::outputIndicatesError(printed.out)) << printed.out;
        EXPECT_EQ(printed.status, 4);
    }
    EXPECT_EQ(setup({"-getinfo", "Wi-Fi"}), before);
    EXPECT_EQ(setup({"-setdhcp", "nobody"}),
              "nobody is not a recognized network service.\n** Error: The parameters were not valid.\n");
    EXPECT_EQ(run("launchctl", {}).status, 64);
}

TEST(Names, AreOneLineEachAndDistinct) {
    EXPECT_EQ(hosttools::printableNames({"Wi-Fi", "Wi-Fi", "a\nb", "a b", "*x", " ", "-setdhcp",
                                         "B\xC3\xBChne \xF0\x9F\x8E\xAD", "bad\xFF",
                                         "a\xE2\x80\xA8"
                                         "b"}),
              (std::vector<std::string>{"Wi-Fi", "Wi-Fi 2", "a b", "a b 2", "x", "Service", "-setdhcp",
                                        "B\xC3\xBChne \xF0\x9F\x8E\xAD", "bad\xEF\xBF\xBD", "a b 3"}));
}

TEST_F(Dialect, NamesAreNeverReadAsOptions) {
    const std::vector<std::string> names{"-setdhcp", "Bob's \"USB\" $HOME `id`", "Stage \xF0\x9F\x8E\xAD",
                                         "(Hardware Port: x"};
    edit([&](State& state) {
        for (std::size_t i = 0; i < names.size(); ++i) state.services[i].name = names[i];
    });
    const auto listed = NetworkSetup::parseServices(setup({"-listallnetworkservices"}));
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(listed.at(i).name, names[i]);
        EXPECT_EQ(setup({"-setmanual", names[i], "10.9.0." + std::to_string(i), "255.255.255.0"}), "");
        EXPECT_EQ(NetworkSetup::parseInfo(setup({"-getinfo", names[i]})).ip, "10.9.0." + std::to_string(i));
    }
}

TEST_F(Dialect, PingSpeaksAndExitsAsOnAMac) {
    const hosttools::Printed reply = run("ping", {"-c", "1", "-W", "500", "-n", "192.168.1.1"});
    EXPECT_EQ(reply.status, 0);
    EXPECT_NE(reply.out.find("64 bytes from 192.168.1.1: icmp_seq=0 ttl=64 time=2.900 ms\n"),
              std::string::npos);
    EXPECT_EQ(run("ping", {"-c", "1", "-W", "500", "-n", "-b", "en5", "192.168.1.1"}).status, 2);
    EXPECT_EQ(run("ping", {"-c", "1", "-W", "2", "-n", "192.168.1.1"}).status, 2)
        << "an answer that comes too late";
    const hosttools::Printed unknown = run("ping", {"-c", "1", "-W", "500", "-n", "no.such.host"});
    EXPECT_EQ(unknown.status, 68);
    EXPECT_EQ(unknown.err, "ping: cannot resolve no.such.host: Unknown host\n");
    EXPECT_EQ(run("ping", {"-c", "1", "-W", "soon", "192.168.1.1"}).status, 64);
}

} // namespace corvane::simulated
