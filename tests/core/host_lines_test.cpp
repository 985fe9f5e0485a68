// Hosts as people write them down.
#include "core/diagnostics/host_lines.h"
#include "core/diagnostics/host_text.h"

#include <gtest/gtest.h>

using corvane::HostLines;
namespace HostText = corvane::HostText;

namespace {

using Hosts = std::vector<HostLines::Host>;

TEST(HostLines, TakesTheAddressWhereverItStands) {
    const auto read = HostLines::read("10.0.0.5 Desk\r\n"
                                      "Media server 2   10.0.0.6\n"
                                      "\n   # spare\n"
                                      "Camera, left;10.0.0.7\r"
                                      "10.0.0.8\tProjector\tRoom 2\n"
                                      "playback-2.local Playback spare\n"
                                      "  10.0.0.9  ");
    EXPECT_EQ(read.hosts, (Hosts{{"10.0.0.5", "Desk"},
                                 {"10.0.0.6", "Media server 2"},
                                 {"10.0.0.7", "Camera left"},
                                 {"10.0.0.8", "Projector Room 2"},
                                 {"playback-2.local", "Playback spare"},
                                 {"10.0.0.9", ""}}));
    EXPECT_TRUE(read.errors.empty());
}

TEST(HostLines, RefusesWhatIsNoHostByItsLine) {
    const auto read = HostLines::read("-f 10\n10.0.0.5\nBack of house, Room 2\n" + std::string(300, 'x') +
                                      "\n,;,\nbad\xffname");
    EXPECT_EQ(read.hosts, (Hosts{{"10.0.0.5", ""}}));
    EXPECT_EQ(read.errors,
              (std::vector<std::string>{"Line 1: A host can't begin with a hyphen.",
                                        "Line 3: A host is one word: an IPv4 address or a name.",
                                        "Line 4: A host has at most 253 characters.",
                                        "Line 5: A host is an IPv4 address or a name.",
                                        "Line 6: A host is one word: an IPv4 address or a name."}));
    EXPECT_EQ(read.unused, (std::vector<std::string>{"-f 10", "Back of house, Room 2", std::string(300, 'x'),
                                                     ",;,", "bad\xffname"}));
}

TEST(HostLines, KnowUnicodesWhiteSpace) {
    const auto read = HostLines::read("\xef\xbb\xbf\xc2\xa0"
                                      "10.0.0.5\xc2\xa0"
                                      "Desk\xe3\x80\x80left\xe2\x80\xaf");
    EXPECT_EQ(read.hosts, (Hosts{{"10.0.0.5", "Desk left"}}));
    EXPECT_EQ(HostText::trim("\xe3\x80\x80 a\xc2\xa0"
                             "b\xe2\x80\x8b\n"),
              "a\xc2\xa0"
              "b");
    EXPECT_EQ(HostText::trim("\xc2\xa0"), "");
    EXPECT_EQ(HostText::trim("\xa0\xc2"), "\xa0\xc2");
    for (const char* host : {"a b",
                             "a\xc2\xa0"
                             "b",
                             "a\xef\xbb\xbf"
                             "b",
                             "a\xe2\x80\xafz"})
        EXPECT_EQ(HostLines::hostError(host), "A host is one word: an IPv4 address or a name.") << host;
}

TEST(HostLines, KeepsWithinItsLimits) {
    std::string text;
    for (int i = 0; i < 600; ++i)
        text += "10.1." + std::to_string(i / 250) + "." + std::to_string(i % 250) + "\n";
    const auto many = HostLines::read(text);
    EXPECT_EQ(many.hosts.size(), HostLines::mostHosts);
    EXPECT_EQ(many.errors, std::vector<std::string>{"Only the first 500 hosts are taken at once."});
    // The rest isn't lost.
    ASSERT_EQ(many.unused.size(), 2U);
    EXPECT_EQ(many.unused[0], "10.1.2.0");
    EXPECT_EQ(HostLines::read(many.unused[1]).hosts.size(), 99U);
    // A long name is cut between two characters.
    std::string name;
    for (int i = 0; i < 150; ++i) name += "\xc3\xa9";
    const auto cut = HostLines::read("10.0.0.5 x" + name);
    ASSERT_EQ(cut.hosts.size(), 1U);
    EXPECT_EQ(cut.hosts[0].name.size(), HostLines::mostNameBytes - 1);
}

} // namespace
