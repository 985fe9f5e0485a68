#include "core/netconfig/preset_library.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace corvane {

namespace {

const char* const presetText =
    R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"Show","service":"Wi-Fi","mode":"manual",)"
    R"("ip":"10.0.0.5","subnet":"/8","router":"","dns":["8.8.8.8"],"colour":{"hue":1.50}})";

const char* const newerFile = R"({
  "presets": [{"id":"e621e1f8-c36c-495a-93fc-0c247a3e6e5f","name":"Show","service":"Wi-Fi","mode":"dhcp","ip":"",
               "subnet":"","router":"","dns":[],"colour":"red"}],
  "globals": [{"id":"00000000-0000-4000-8000-000000000001","name":"All","members":["E621E1F8-C36C-495A-93FC-0C247A3E6E5F"],
               "pingGroup":null,"order":18446744073709551616}],
  "plannedVLANs": [{"id":"00000000-0000-4000-8000-000000000002","name":"V","tag":10,"qos":[1e3]}],
  "pingGroups": [{"id":"00000000-0000-4000-8000-000000000003","name":"Rig","\u0001":"\ud83c\udf9b","targets":[
    {"id":"00000000-0000-4000-8000-000000000004","name":"","host":"a/b","weight":-0.10}]}],
  "consoleDevices": [[[]], 7, null, {"n":123456789012345678901234567890}],
  "future": {"b": [], "a": "x"}
})";

PresetLibrary decoded(const std::string& text) {
    auto result = PresetLibrary::decode(text);
    EXPECT_TRUE(result.library) << result.error;
    return result.library.value_or(PresetLibrary());
}

std::string errorOf(const std::string& text) {
    const auto result = PresetLibrary::decode(text);
    EXPECT_FALSE(result.library);
    return result.error;
}

NetworkPreset preset(const std::string& name) {
    NetworkPreset result;
    result.id = Uuid::generate();
    result.name = name;
    result.service = "Wi-Fi";
    return result;
}

} // namespace

TEST(PresetLibrary, KeepsWhatANewerVersionWrote) {
    const auto library = decoded(newerFile);
    const auto original = *JsonValue::parse(newerFile).value;
    auto saved = *JsonValue::parse(library.encoded()).value;
    EXPECT_EQ(decoded(library.encoded()), library);
    for (const char* key : {"pingGroups", "consoleDevices", "future", "plannedVLANs"}) {
        EXPECT_EQ(saved.object()->find(key)->second.prettyPrinted(),
                  original.object()->find(key)->second.prettyPrinted());
    }
    const auto memberOf = [&](const char* list, const char* key) {
        return saved.object()->find(list)->second.array()->front().object()->find(key)->second;
    };
    EXPECT_EQ(memberOf("presets", "colour"), "red");
    EXPECT_EQ(memberOf("presets", "id"), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(memberOf("globals", "order").number()->literal, "18446744073709551616");
    EXPECT_EQ(library.globals.front().resolve(library.presets).size(), 1U);
}

TEST(PresetLibrary, ReadsEarlierFormats) {
    const auto bare = decoded("\xEF\xBB\xBF[" + std::string(presetText) + "]");
    ASSERT_EQ(bare.presets.size(), 1U);
    EXPECT_EQ(bare.presets.front().ip, "10.0.0.5");
    EXPECT_EQ(decoded("{\"presets\":[" + std::string(presetText) + "]}"), bare);
    EXPECT_EQ(decoded("[]"), PresetLibrary());
    EXPECT_EQ(decoded(R"({"presets":[],"globals":null})"), PresetLibrary());
}

TEST(PresetLibrary, RefusesWithASentence) {
    EXPECT_EQ(errorOf("{}"), "The file isn't a preset library: the key “presets” is missing.");
    EXPECT_EQ(errorOf("[1]"), "The file isn't a preset library.");
    EXPECT_EQ(errorOf("\"x\""), "The file isn't a preset library.");
    EXPECT_EQ(errorOf("[" + std::string(newerFile).substr(0, 300)),
              "The file isn't valid JSON: it ends too early.");
    EXPECT_EQ(errorOf(R"({"presets":[],"pingGroups":5})"),
              "The file's key “pingGroups” doesn't hold a list.");
    EXPECT_EQ(errorOf("{\"presets\":[" + std::string(presetText) + ",{}]}"),
              "Entry 2 of the file's key “presets” is incomplete or broken.");
    EXPECT_EQ(
        errorOf(R"({"presets":[],"pingGroups":[{"id":"00000000-0000-4000-8000-000000000003","name":"Rig",)"
                R"("targets":[{"id":"00000000-0000-4000-8000-000000000004","name":"No host"}]}]})"),
        "Entry 1 of the file's key “pingGroups” is incomplete or broken.");
}

TEST(PresetLibrary, EveryRequiredKeyIsRequired) {
    const auto whole = *JsonValue::parse(presetText).value;
    ASSERT_TRUE(NetworkPreset::fromJson(whole));
    for (const char* key : {"id", "name", "service", "mode", "ip", "subnet", "router", "dns"}) {
        auto missing = whole;
        missing.object()->erase(key);
        EXPECT_FALSE(NetworkPreset::fromJson(missing)) << key;
        for (const JsonValue& wrong : {JsonValue(), JsonValue(7), JsonValue(JsonValue::Array{1})}) {
            auto broken = whole;
            (*broken.object())[key] = wrong;
            EXPECT_FALSE(NetworkPreset::fromJson(broken)) << key;
        }
    }
    auto newMode = whole;
    (*newMode.object())["mode"] = "bootp";
    EXPECT_FALSE(NetworkPreset::fromJson(newMode));
}

TEST(PresetLibrary, MergingAddsOnlyWhatIsNew) {
    PresetLibrary mine;
    mine.presets = {preset("same"), preset("mine")};
    const PingTarget desk{Uuid::generate(), "Desk", "10.0.0.9", {}};
    mine.pingGroups = {{Uuid::generate(), "mine", {desk}, {}}};
    mine.consoleDevices = {
        JsonValue::Object{{"id", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F"}, {"name", "mine"}}, 1};
    mine.unknown["kept"] = 1;
    EXPECT_EQ(mine.merging(mine), mine);
    EXPECT_EQ(mine.merging({}), mine);
    EXPECT_EQ(PresetLibrary().merging(mine), mine);

    PresetLibrary other = mine;
    other.presets[1].name = "theirs";
    other.presets.push_back(preset("new"));
    other.pingGroups[0].targets.clear();
    other.consoleDevices = {
        JsonValue::Object{{"id", "e621e1f8-c36c-495a-93fc-0c247a3e6e5f"}, {"name", "theirs"}}, 1, 2};
    other.unknown = {{"kept", 2}, {"added", 3}};
    GlobalPreset global;
    global.id = Uuid::generate();
    for (const auto& each : other.presets) global.members.push_back(each.id);
    global.pingGroup = mine.pingGroups[0].id;
    other.globals = {global};

    const auto merged = mine.merging(other);
    ASSERT_EQ(merged.presets.size(), 4U);
    EXPECT_EQ(std::vector(merged.presets.begin(), merged.presets.begin() + 2), mine.presets);
    EXPECT_EQ(merged.presets[2].name, "theirs");
    EXPECT_NE(merged.presets[2].id, mine.presets[1].id);
    EXPECT_EQ(merged.presets[3], other.presets[2]);
    EXPECT_EQ(merged.globals.front().members,
              (std::vector<Uuid>{mine.presets[0].id, merged.presets[2].id, merged.presets[3].id}));
    ASSERT_EQ(merged.pingGroups.size(), 2U);
    EXPECT_EQ(merged.pingGroups[0], mine.pingGroups[0]);
    EXPECT_EQ(merged.globals.front().pingGroup, merged.pingGroups[1].id);
    EXPECT_NE(merged.globals.front().pingGroup, global.pingGroup);
    ASSERT_EQ(merged.consoleDevices.size(), 4U);
    EXPECT_NE(merged.consoleDevices[2].object()->find("id")->second,
              merged.consoleDevices[0].object()->find("id")->second);
    EXPECT_EQ(merged.consoleDevices[3], JsonValue(2));
    EXPECT_EQ(merged.unknown, (JsonValue::Object{{"kept", 1}, {"added", 3}}));
}

// Two presets under one id: references mean the first, before and after.
TEST(PresetLibrary, MergingKeepsReferencesToTheFirstOfAnId) {
    PresetLibrary other;
    other.presets = {preset("first"), preset("second")};
    other.presets[1].id = other.presets[0].id;
    GlobalPreset global;
    global.members = {other.presets[0].id};
    other.globals = {global};
    const auto merged = PresetLibrary().merging(other);
    EXPECT_EQ(merged.globals.front().resolve(merged.presets).front().name, "first");
    EXPECT_NE(merged.presets[0].id, merged.presets[1].id);
}

} // namespace corvane
