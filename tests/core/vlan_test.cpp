#include "core/netconfig/vlan.h"
#include "core/support/text.h"

#include "fixture.h"

#include <gtest/gtest.h>

namespace corvane {

using testing::fixture;
using testing::withCRLF;
using Strings = std::vector<std::string>;
using Message = std::optional<std::string>;
using VLANs = std::vector<VLANInfo>;

static const VLANs existing = {{"Lights", "en7", "vlan0", 10}, {"Video", "en5", "vlan1", 20}};
static const Strings services = {"Wi-Fi", "Ethernet", "Lights", "Video"};

TEST(VLAN, ReadsTheList) {
    const VLANs expected = {{"Lights", "en7", "vlan0", 20}, {"Audio: FOH", "en5", "vlan1", 4094}};
    const auto text = fixture("listvlans.txt");
    EXPECT_EQ(VLAN::parseList(text), expected);
    EXPECT_EQ(VLAN::parseList(withCRLF(text)), expected);
    EXPECT_EQ(VLAN::parseList(""), VLANs());
    EXPECT_EQ(VLAN::parseList(fixture("listvlans-none.txt")), VLANs());
}

static std::string block(const char* tag) {
    return std::string(
               "VLAN User Defined Name: A\nParent Device: en1\nDevice (\"Hardware\" Port): vlan0\nTag: ") +
           tag + "\n";
}

TEST(VLAN, SkipsWhatIsIncomplete) {
    for (const char* key : {"VLAN User Defined Name", "Parent Device", "Device (\"Hardware\" Port)", "Tag"}) {
        auto text = fixture("listvlans.txt");
        text.replace(text.find(key), 1, "X");
        EXPECT_EQ(VLAN::parseList(text), (VLANs{{"Audio: FOH", "en5", "vlan1", 4094}})) << key;
    }
    for (const auto& [tag, number] : {std::pair("+7", 7L), std::pair("-7", -7L), std::pair("70000", 70000L)})
        EXPECT_EQ(VLAN::parseList(block(tag)), (VLANs{{"A", "en1", "vlan0", number}})) << tag;
    for (const char* tag : {"", "ten", "1 0", "+-1", "0x10", "99999999999999999999", "1.0"})
        EXPECT_EQ(VLAN::parseList(block(tag)), VLANs()) << tag;
    // Two blocks without a blank line, and keys of a newer tool.
    EXPECT_EQ(VLAN::parseList(block("1") + "Colour: red\n" + block("2")).size(), 2U);
}

TEST(VLAN, ReadsCapableDevices) {
    using Set = std::set<std::string>;
    EXPECT_EQ(VLAN::parseCapableDevices(fixture("listdevicesthatsupportvlan.txt")), (Set{"en5", "en7"}));
    EXPECT_EQ(VLAN::parseCapableDevices("  en5 \r\nDevice: en6\nen7(USB)\n\nbond0\n"),
              (Set{"en5", "en6", "bond0"}));
    EXPECT_EQ(VLAN::parseCapableDevices("No devices support VLANs.\nEn5\n5en\nen\nen5x\nen5 is one\n"),
              Set());
}

TEST(VLAN, ChecksTagAndName) {
    const Message tagMessage = "Tag must be a number from 1 to 4094.";
    for (const char* tag : {"0", "4095", "abc", "", "-1", "1.5", "10 11", "18446744073709551617"})
        EXPECT_EQ(VLAN::validate("A", tag, "en7", existing, services), tagMessage) << tag;
    for (const char* tag : {"1", "4094", " 42 "})
        EXPECT_EQ(VLAN::validate("A", tag, "en7", existing, services), std::nullopt) << tag;
    EXPECT_EQ(VLAN::validate(" ", "0", {}, existing, services), "Give the VLAN a name.");
    // The listings' own marks, and names that are kept for others; a VLAN that has one keeps it.
    for (const char* name : {"A\nB", "*Stage", " * Stage", "win:PC"}) {
        const std::string trimmed(text::trim(name));
        EXPECT_NE(VLAN::validate(name, "9", {}, existing, services), std::nullopt) << name;
        EXPECT_EQ(VLAN::validateEdit({trimmed, "en7", "vlan3", 9}, name, "8", "en7", existing, services),
                  std::nullopt);
    }
}

TEST(VLAN, RefusesWhatExists) {
    const Message sameTag = "This port already has a VLAN with tag 10.";
    EXPECT_EQ(VLAN::validate("A", "10", "en7", existing, services), sameTag);
    EXPECT_EQ(VLAN::validate("A", "010", "en7", existing, services), sameTag);
    EXPECT_EQ(VLAN::validate("A", "10", "en5", existing, services), std::nullopt);
    EXPECT_EQ(VLAN::validate("A", "10", {}, existing, services), std::nullopt);
    for (const char* name : {"Ethernet", "Lights", " Ethernet "})
        EXPECT_EQ(VLAN::validate(name, "30", "en7", existing, services),
                  "An interface named “" + std::string(name[0] == ' ' ? "Ethernet" : name) +
                      "” already exists.");
    // A VLAN whose service isn't listed yet counts too.
    EXPECT_NE(VLAN::validate("Video", "30", "en7", existing, {}), std::nullopt);
}

TEST(VLAN, ComparesAnEditedOneWithTheOthersOnly) {
    const auto check = [](const char* name, const char* tag, const char* parent) {
        return VLAN::validateEdit(existing[0], name, tag, parent, existing, services);
    };
    EXPECT_EQ(check("Lights", "10", "en7"), std::nullopt);
    EXPECT_EQ(check("Lamps", "10", "en7"), std::nullopt);
    EXPECT_EQ(check("Lights", "20", "en5"), "This port already has a VLAN with tag 20.");
    EXPECT_EQ(check("Video", "10", "en7"), "An interface named “Video” already exists.");
    EXPECT_EQ(check("", "10", "en7"), "Give the VLAN a name.");
}

TEST(VLAN, ComparesAPlanWithOtherPlansToo) {
    PlannedVLAN own, other;
    own.id = Uuid::generate();
    other.id = Uuid::generate();
    own.name = "Mine";
    other.name = "Other";
    own.tag = other.tag = 50;
    own.parentDevice = other.parentDevice = "en7";
    const auto check = [&](const char* name, const char* tag, const std::optional<std::string>& parent) {
        return VLAN::validatePlan(own.id, name, tag, parent, existing, services, {own, other});
    };
    EXPECT_EQ(check("Mine", "51", "en7"), std::nullopt);
    EXPECT_EQ(check("Mine", "50", "en7"), "This port already has a VLAN with tag 50.");
    EXPECT_EQ(check("Mine", "50", std::nullopt), std::nullopt);
    EXPECT_EQ(check("Other", "51", "en7"), "An interface named “Other” already exists.");
    EXPECT_EQ(check("Lights", "51", "en7"), "An interface named “Lights” already exists.");
}

TEST(VLAN, BuildsItsCommands) {
    const std::string tool = "/usr/sbin/networksetup";
    const Strings creation = {tool, "-createVLAN", "Lamps", "en5", "4094"};
    const Strings deletion = {tool, "-deleteVLAN", "Lights", "en7", "10"};
    EXPECT_EQ(VLAN::createCommands("Lamps", "en5", 4094), (std::vector<Strings>{creation}));
    EXPECT_EQ(VLAN::deleteCommands(existing[0]), (std::vector<Strings>{deletion}));
    const auto recreate = [](const std::optional<CurrentConfig>& config) {
        return VLAN::recreateCommands(existing[0], "Lamps", "en5", 4094, config);
    };
    EXPECT_EQ(recreate({}), (std::vector<Strings>{deletion, creation}));
    CurrentConfig config;
    config.mode = CurrentConfig::Mode::manual();
    config.ip = "10.9.0.5";
    config.subnet = "255.255.0.0";
    config.router = "10.9.0.1";
    config.dns = {"10.9.0.2"};
    EXPECT_EQ(recreate(config),
              (std::vector<Strings>{deletion,
                                    creation,
                                    {tool, "-setmanual", "Lamps", "10.9.0.5", "255.255.0.0", "10.9.0.1"},
                                    {tool, "-setdnsservers", "Lamps", "10.9.0.2"}}));
    // A manual address that isn't there can't stop the script after the deletion.
    config.ip.reset();
    EXPECT_EQ(recreate(config).size(), 2U);
    config.mode = CurrentConfig::Mode::dhcp();
    EXPECT_EQ(recreate(config)[2], (Strings{tool, "-setdhcp", "Lamps"}));
}

} // namespace corvane
