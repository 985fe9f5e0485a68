#include "core/netconfig/apply_plan.h"
#include "core/netconfig/global_preset.h"
#include "core/netconfig/preset_advice.h"
#include "core/netconfig/temporary_address.h"

#include <gtest/gtest.h>

#include <random>

namespace corvane {

namespace {

using Strings = std::vector<std::string>;

NetworkPreset dhcp(const std::string& service, Strings dns = {}) {
    NetworkPreset preset;
    preset.id = Uuid::generate();
    preset.name = "P";
    preset.service = service;
    preset.dns = std::move(dns);
    return preset;
}

NetworkPreset manual(const std::string& ip, const std::string& subnet, const std::string& router = "") {
    auto preset = dhcp("Wi-Fi");
    preset.mode = NetworkPreset::Mode::manual;
    preset.ip = ip;
    preset.subnet = subnet;
    preset.router = router;
    return preset;
}

} // namespace

TEST(NetworkPreset, ErrorsComeInAFixedOrder) {
    auto preset = manual("x", "/33", "y");
    preset.service.clear();
    preset.dns = {"8.8.8.8", "z", ""};
    EXPECT_EQ(preset.errors(),
              (Strings{"Choose an interface.", "IP address isn't a valid IPv4 address.",
                       "Subnet mask isn't valid (use 255.255.255.0 or /24).",
                       "Router isn't a valid IPv4 address.", "DNS server \"z\" isn't a valid IPv4 address.",
                       "DNS server \"\" isn't a valid IPv4 address."}));
    preset.mode = NetworkPreset::Mode::dhcp;
    EXPECT_EQ(preset.errors().size(), 3U);
    EXPECT_EQ(dhcp("Wi-Fi", {"8.8.8.8", "x"}).errors(),
              Strings{"DNS server \"x\" isn't a valid IPv4 address."});
    EXPECT_TRUE(manual("10.0.0.5", "8", " \n").isValid());
}

TEST(NetworkPreset, WarnsOfARouterOutside) {
    const auto preset = manual("10.0.0.5", "/8", "11.0.0.1");
    EXPECT_TRUE(preset.isValid());
    EXPECT_EQ(preset.warnings(), Strings{"Router 11.0.0.1 is outside 10.0.0.5/8."});
    EXPECT_EQ(manual("10.0.0.5", "255.0.255.0", "11.0.0.1").warnings(),
              Strings{"Router 11.0.0.1 is outside 10.0.0.5/255.0.255.0."});
    EXPECT_EQ(manual("10.0.0.5", "/8", "x").warnings(), Strings{"Router x is outside 10.0.0.5/8."});
    for (const auto& quiet : {manual("10.0.0.5", "/8", "10.9.9.9"), manual("10.0.0.5", "/8", " "),
                              manual("10.0.0.5", "x", "1.1.1.1")}) {
        EXPECT_TRUE(quiet.warnings().empty());
    }
}

TEST(NetworkPreset, Summarizes) {
    EXPECT_EQ(dhcp("Wi-Fi").summary(), "DHCP");
    EXPECT_EQ(manual("192.168.10.20", "255.255.255.0", "192.168.10.1").summary(),
              "192.168.10.20/24 · gw 192.168.10.1");
    EXPECT_EQ(manual("192.168.10.20", "255.0.255.0").summary(), "192.168.10.20");
}

TEST(NetworkPreset, SaysWhatDiffers) {
    auto preset = manual("10.0.0.5", "8", "10.0.0.1");
    preset.dns = {"8.8.8.8", "1.1.1.1"};
    EXPECT_EQ(preset.differences(std::nullopt), Strings{"No current settings."});
    CurrentConfig config;
    config.mode = CurrentConfig::Mode::dhcp();
    config.ip = "10.0.0.4";
    config.subnet = "255.255.0.0";
    EXPECT_EQ(
        preset.differences(config),
        (Strings{"Mode is DHCP instead of Manual.", "IP address is 10.0.0.4 instead of 10.0.0.5.",
                 "Subnet mask is 255.255.0.0 instead of 255.0.0.0.", "Router is none instead of 10.0.0.1.",
                 "DNS server is none instead of 8.8.8.8, 1.1.1.1."}));
}

// Whatever the mixture of fields: the sentences are empty exactly when all five fields agree as they should.
TEST(NetworkPreset, MatchesExactlyWhenNothingDiffers) {
    const Strings ips = {"", "10.0.0.4", " 10.0.0.4 "};
    const Strings masks = {"", "x", "24", "/24", "255.255.255.0", "255.0.0.0"};
    const Strings routers = {"", " ", "10.0.0.1", "10.0.0.1\n"};
    const std::vector<Strings> servers = {{}, {"8.8.8.8"}, {"8.8.8.8", "1.1.1.1"}, {"1.1.1.1", "8.8.8.8"}};
    const std::vector<CurrentConfig::Mode> modes = {
        CurrentConfig::Mode::dhcp(), CurrentConfig::Mode::manual(), CurrentConfig::Mode::other("BOOTP")};
    std::mt19937 random(1);
    const auto pick = [&](const auto& choices) { return choices[random() % choices.size()]; };
    const auto maybe = [&](const Strings& choices) {
        return random() % 3 ? std::optional(pick(choices)) : std::nullopt;
    };
    const auto trimmed = [](const std::string& text) {
        const auto start = text.find_first_not_of(" \n");
        return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(" \n") - start + 1);
    };
    int matched = 0;
    for (int i = 0; i < 30'000; ++i) {
        auto preset = manual(pick(ips), pick(masks), pick(routers));
        if (random() % 2) preset.mode = NetworkPreset::Mode::dhcp;
        preset.dns = pick(servers);
        CurrentConfig config;
        config.mode = pick(modes);
        config.ip = maybe({"10.0.0.4", "10.0.0.5"});
        config.subnet = maybe({"255.255.255.0", "255.0.0.0", "odd"});
        config.router = maybe({"10.0.0.1", "10.0.0.2"});
        config.dns = pick(servers);

        bool expected = preset.dns == config.dns;
        if (preset.mode == NetworkPreset::Mode::dhcp) {
            expected = expected && config.mode.isDHCP();
        } else {
            const auto mask = config.subnet == "odd" ? std::nullopt : config.subnet;
            const auto router = trimmed(preset.router);
            expected = expected && config.mode.isManual() && trimmed(preset.ip) == config.ip &&
                       preset.normalizedSubnet() == mask &&
                       (router.empty() ? !config.router : router == config.router);
        }
        ASSERT_EQ(preset.matches(config), expected);
        ASSERT_EQ(preset.differences(config).empty(), expected);
        matched += expected;
    }
    EXPECT_GT(matched, 300);
}

TEST(GlobalPreset, ResolvesMembers) {
    const auto first = dhcp("Wi-Fi");
    const auto second = dhcp("Wi-Fi", {"1.1.1.1"});
    const auto other = dhcp("USB");
    const std::vector<NetworkPreset> presets = {first, second, other};
    GlobalPreset global;
    global.members = {Uuid::generate(), other.id, second.id, first.id};
    EXPECT_EQ(global.resolve(presets), (std::vector<NetworkPreset>{other, second}));
    EXPECT_EQ(global.member("Wi-Fi", presets), second);
    EXPECT_EQ(global.member("LAN", presets), std::nullopt);

    const auto gone = global.members.front();
    global.setMember("Wi-Fi", first.id, presets);
    EXPECT_EQ(global.members, (std::vector<Uuid>{gone, other.id, first.id}));
    global.setMember("USB", std::nullopt, presets);
    EXPECT_EQ(global.members, (std::vector<Uuid>{gone, first.id}));
}

TEST(ApplyPlan, CommandsInOrder) {
    const auto tool = std::string("/usr/sbin/networksetup");
    auto preset = manual(" 10.0.0.5\n", "24", "  ");
    const ApplyPlan plan("Show", {preset, dhcp("USB", {"1.1.1.1", "8.8.8.8"})}, Strings{"USB", "Wi-Fi"});
    EXPECT_EQ(plan.commands(),
              (std::vector<Strings>{{tool, "-setmanual", "Wi-Fi", "10.0.0.5", "255.255.255.0"},
                                    {tool, "-setdnsservers", "Wi-Fi", "Empty"},
                                    {tool, "-setdhcp", "USB"},
                                    {tool, "-setdnsservers", "USB", "1.1.1.1", "8.8.8.8"},
                                    {tool, "-ordernetworkservices", "USB", "Wi-Fi"}}));
    preset.subnet = "odd";
    preset.router = " 10.0.0.1 ";
    EXPECT_EQ(NetworkSetup::commands(preset).front(),
              (Strings{tool, "-setmanual", "Wi-Fi", "10.0.0.5", "odd", "10.0.0.1"}));
}

TEST(ApplyPlan, TargetsAndErrors) {
    const ApplyPlan orderOnly("Order", {}, Strings{"Wi-Fi"});
    EXPECT_EQ(orderOnly.target, "the service order");
    EXPECT_TRUE(orderOnly.errors().empty());
    EXPECT_EQ(orderOnly.commands().size(), 1U);
    EXPECT_EQ(ApplyPlan("Nothing", {}).errors(), Strings{"Choose at least one interface preset."});

    const auto broken = manual("10.0.0.5", "24", "x");
    EXPECT_EQ(ApplyPlan("One", {broken}).target, "Wi-Fi");
    EXPECT_EQ(ApplyPlan("One", {broken}).errors(), Strings{"Router isn't a valid IPv4 address."});
    const ApplyPlan three("Three", {dhcp("USB"), broken, dhcp("LAN", {"y"})});
    EXPECT_EQ(three.target, "3 interfaces");
    EXPECT_EQ(three.errors(), (Strings{"Wi-Fi: Router isn't a valid IPv4 address.",
                                       "LAN: DNS server \"y\" isn't a valid IPv4 address."}));
}

TEST(PresetAdvice, FindsTheAddressOnAnotherAdapter) {
    ServiceInfo wifi{"Wi-Fi", true, "en0", {}, {}, IfconfigInfo{true, true, {}, {"192.168.1.20"}, {}}};
    ServiceInfo usb{"USB LAN", true, "en7",
                    {},        {},   IfconfigInfo{true, true, {}, {"10.0.0.9", "192.168.1.20"}, {}}};
    ServiceInfo second = usb;
    second.name = "Second on en0";
    second.device = "en0";
    const auto preset = manual("192.168.1.020", "24");
    EXPECT_EQ(PresetAdvice::addressInUse(preset, {wifi, second, usb}),
              "192.168.1.20 is already on USB LAN (en7).");
    EXPECT_EQ(PresetAdvice::addressInUse(preset, {wifi, second}), std::nullopt);
    EXPECT_EQ(PresetAdvice::addressInUse(dhcp("Wi-Fi"), {usb}), std::nullopt);
    EXPECT_EQ(PresetAdvice::addressInUse(manual("x", "24"), {usb}), std::nullopt);
    usb.enabled = false;
    EXPECT_EQ(PresetAdvice::addressInUse(preset, {usb}), std::nullopt);
    ServiceInfo vpn{"VPN", true, {}, {}, CurrentConfig(), {}};
    vpn.config->ip = "192.168.1.20";
    EXPECT_EQ(PresetAdvice::addressInUse(preset, {vpn}), "192.168.1.20 is already on VPN.");
}

TEST(TemporaryAddress, CommandsAndErrors) {
    EXPECT_EQ(TemporaryAddress::addCommands("en7", "10.0.0.9", "/24"),
              (std::vector<Strings>{{"/sbin/ifconfig", "en7", "alias", "10.0.0.9", "255.255.255.0"}}));
    EXPECT_EQ(TemporaryAddress::removeCommands("en7", " 010.0.0.9"),
              (std::vector<Strings>{{"/sbin/ifconfig", "en7", "-alias", "10.0.0.9"}}));
    EXPECT_EQ(TemporaryAddress::errors("x", "y"),
              (Strings{"IP address isn't a valid IPv4 address.",
                       "Subnet mask isn't valid (use 255.255.255.0 or /24)."}));
    EXPECT_TRUE(TemporaryAddress::errors("10.0.0.9", "24").empty());
}

} // namespace corvane
