#include "core/diagnostics/ping.h"
#include "core/diagnostics/ping_group.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace corvane {

// In the form of ping(8) on macOS.
static const std::string answered = "PING 10.0.0.5 (10.0.0.5): 56 data bytes\n"
                                    "64 bytes from 10.0.0.5: icmp_seq=0 ttl=64 time=12.7 ms\n\n"
                                    "--- 10.0.0.5 ping statistics ---\n"
                                    "1 packets transmitted, 1 packets received, 0.0% packet loss\n"
                                    "round-trip min/avg/max/stddev = 12.700/12.700/12.700/0.000 ms\n";
static const std::string unanswered = "PING 10.0.0.5 (10.0.0.5): 56 data bytes\n\n"
                                      "--- 10.0.0.5 ping statistics ---\n"
                                      "1 packets transmitted, 0 packets received, 100.0% packet loss\n";

TEST(Ping, AsksOnceAndPrintsNumbers) {
    EXPECT_STREQ(Ping::tool, "/sbin/ping");
    EXPECT_EQ(Ping::arguments("a b", 800), (std::vector<std::string>{"-c", "1", "-W", "800", "-n", "a b"}));
}

TEST(Ping, ReadsOutcomesInOrder) {
    EXPECT_EQ(Ping::parse(answered, 0), PingOutcome::reply(12.7));
    EXPECT_EQ(Ping::parse(unanswered, 2), PingOutcome::timeout());
    EXPECT_EQ(Ping::parse("", 0), PingOutcome::timeout());
    EXPECT_EQ(Ping::parse("", 137), PingOutcome::timeout());
    EXPECT_EQ(Ping::parse("ping: cannot resolve nowhere: Unknown host\n", 68), PingOutcome::unresolved());
    EXPECT_EQ(Ping::parse(answered, 68), PingOutcome::unresolved()) << "the status comes first";
    EXPECT_EQ(Ping::parse("ping: cannot resolve x\n" + answered, 0), PingOutcome::unresolved());
    EXPECT_EQ(Ping::parse(answered, 2), PingOutcome::reply(12.7)) << "other statuses say nothing";
}

TEST(Ping, ReadsTheFirstTimeAsFarAsItIsANumber) {
    const std::pair<const char*, PingOutcome> cases[] = {
        {"time=0.045 ms", PingOutcome::reply(0.045)},
        {"time=7", PingOutcome::reply(7)},
        {"time=0.000ms", PingOutcome::reply(0)},
        {"time=.5 ms", PingOutcome::reply(0.5)},
        {"time=5. ms", PingOutcome::reply(5)},
        {"time=1.5e3 ms", PingOutcome::reply(1.5)},
        {"time=3 ms time=9 ms", PingOutcome::reply(3)},
        {"uptime=4", PingOutcome::reply(4)},
        {"time= 5 ms", PingOutcome::timeout()},
        {"time=-5 ms", PingOutcome::timeout()},
        {"time=1.2.3 ms", PingOutcome::timeout()},
        {"time=. ms", PingOutcome::timeout()},
        {"time=ms time=4 ms", PingOutcome::timeout()},
        {"time=", PingOutcome::timeout()},
        {"Time=4", PingOutcome::timeout()},
        {"time<1ms", PingOutcome::timeout()},
    };
    for (const auto& [output, outcome] : cases) EXPECT_EQ(Ping::parse(output, 0), outcome) << output;
    EXPECT_EQ(Ping::parse("time=" + std::string(5000, '9'), 0), PingOutcome::timeout());
}

TEST(Ping, FindsTheFirstInterfaceOfTheHostsSubnet) {
    const std::vector<Ping::LocalInterface> interfaces{
        {"en0", "", "255.255.255.0"},           {"en1", "10.0.0.5", "not a mask"},
        {"en5", "10.0.0.5", "255.255.255.0"},   {"en6", "10.0.1.5", "255.255.0.0"},
        {"en7", "10.0.0.9", "255.255.255.0"},   {"en8", "192.168.1.1", "255.255.255.255"},
        {"utun0", "172.16.0.1", "255.240.0.0"},
    };
    EXPECT_EQ(Ping::localInterface("10.0.0.77", interfaces), "en5");
    EXPECT_EQ(Ping::localInterface(" 10.0.2.1", interfaces), "en6");
    EXPECT_EQ(Ping::localInterface("192.168.1.1", interfaces), "en8");
    EXPECT_EQ(Ping::localInterface("172.31.255.254", interfaces), "utun0");
    for (const char* host : {"192.168.1.2", "172.32.0.1", "mixer.local", "", "10.0.0", "10.0.0.256", "::1"})
        EXPECT_EQ(Ping::localInterface(host, interfaces), std::nullopt) << host;
    EXPECT_EQ(Ping::localInterface("8.8.8.8", {{"ppp0", "1.2.3.4", "0.0.0.0"}}), "ppp0");
}

TEST(PingGroup, KeepsWhatItDoesNotKnow) {
    const std::string text =
        R"({"id":"00000000-0000-4000-8000-000000000003","name":"Rig \"A\"","colour":{"hue":1.50},"targets":[)"
        R"({"id":"00000000-0000-4000-8000-000000000005","name":"","host":" mixer.local ","weight":-0.10},)"
        R"({"id":"00000000-0000-4000-8000-000000000004","name":"Camera","host":"10.0.0.5"}]})";
    const auto json = JsonValue::parse(text);
    ASSERT_TRUE(json.value);
    const auto group = PingGroup::fromJson(*json.value);
    ASSERT_TRUE(group);
    EXPECT_EQ(group->name, "Rig \"A\"");
    ASSERT_EQ(group->targets.size(), 2u);
    EXPECT_EQ(group->targets[0].host, " mixer.local ") << "as typed, and in the order given";
    EXPECT_EQ(group->targets[1].name, "Camera");
    EXPECT_EQ(group->toJson(), *json.value);

    auto renamed = *group;
    renamed.targets[1].name = "Camera 2";
    EXPECT_NE(renamed, *group);
    const std::unordered_set<PingTarget> set{group->targets[0], group->targets[1], renamed.targets[1]};
    EXPECT_EQ(set.size(), 3u);
}

TEST(PingGroup, NeedsEveryKey) {
    const std::string id = R"("id":"00000000-0000-4000-8000-000000000003")";
    const std::string target = "{" + id + R"(,"name":"n","host":"h"})";
    const auto taken = [](const std::string& text) {
        const auto json = JsonValue::parse(text);
        return json.value && PingGroup::fromJson(*json.value).has_value();
    };
    EXPECT_TRUE(taken("{" + id + R"(,"name":"","targets":[]})"));
    EXPECT_TRUE(taken("{" + id + R"(,"name":"","targets":[)" + target + "]}"));
    for (const std::string& text :
         {std::string("[]"), std::string("null"), "{" + id + R"(,"name":"x"})",
          "{" + id + R"(,"targets":[]})", std::string(R"({"name":"x","targets":[]})"),
          std::string(R"({"id":"7","name":"x","targets":[]})"), "{" + id + R"(,"name":"x","targets":{}})",
          "{" + id + R"(,"name":1,"targets":[]})", "{" + id + R"(,"name":"x","targets":[null]})",
          "{" + id + R"(,"name":"x","targets":[)" + target + ",{}]}",
          "{" + id + R"(,"name":"x","targets":[{)" + id + R"(,"name":"n"}]})",
          "{" + id + R"(,"name":"x","targets":[{)" + id + R"(,"host":"h"}]})",
          "{" + id + R"(,"name":"x","targets":[{"name":"n","host":"h"}]})",
          "{" + id + R"(,"name":"x","targets":[{)" + id + R"(,"name":"n","host":null}]})"})
        EXPECT_FALSE(taken(text)) << text;
}

} // namespace corvane
