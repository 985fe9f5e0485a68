#include "core/support/text.h"

#include "core/netconfig/ipv4.h"
#include "core/support/secret.h"
#include "core/support/uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace corvane {

using Lines = std::vector<std::string_view>;
using Strings = std::vector<std::string>;

TEST(Text, LinesEndInEveryConvention) {
    EXPECT_EQ(text::nonEmptyLines("a\r\nb\rc\n\n\r\n d "), (Lines{"a", "b", "c", " d "}));
    EXPECT_EQ(text::nonEmptyLines("\n\r\n"), Lines{});
}

TEST(Text, SplitsAndReplaces) {
    EXPECT_EQ(text::split(", a, , b, ", ", "), (Lines{"", "a", "", "b", ""}));
    EXPECT_EQ(text::split("ab", ""), Lines{"ab"});
    EXPECT_EQ(text::replaced("a''b", "'", "''"), "a''''b");
    EXPECT_EQ(text::replaced("ab", "", "x"), "ab");
}

TEST(Text, TrimsWhiteSpaceAndBlanks) {
    EXPECT_EQ(text::trim(" \t\v\f\r\n x y \n"), "x y");
    EXPECT_EQ(text::trim(" \n "), "");
    EXPECT_EQ(text::trimBlanks(" \tx\n "), "x\n");
}

TEST(Text, ParsesWholeNumbersOnly) {
    long value = -7;
    for (const char* bad : {"", "+1", "-1", " 1", "1 ", "0x1", "256", "99999999999999999999999", "4"}) {
        EXPECT_FALSE(text::parseInteger(bad, 5, 255, value)) << bad;
        EXPECT_EQ(value, -7);
    }
    EXPECT_TRUE(text::parseInteger("000000000000000000000255", 5, 255, value));
    EXPECT_EQ(value, 255);
    EXPECT_TRUE(text::parseInteger("9223372036854775807", 0, 9223372036854775807L, value));
    EXPECT_FALSE(text::parseInteger("9223372036854775808", 0, 9223372036854775807L, value));
}

TEST(Text, ReplacesWhatIsNotUtf8) {
    EXPECT_EQ(text::validUtf8("Grüße 🎛"), "Grüße 🎛");
    EXPECT_EQ(text::validUtf8("a\xFFz"), "a\uFFFDz");
    // An overlong NUL, a surrogate, a value past U+10FFFF, a sequence cut short.
    for (const std::string bad : {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
        EXPECT_EQ(text::validUtf8Prefix(bad), 0U);
        EXPECT_EQ(text::validUtf8(bad).size(), bad.size() * 3);
    }
}

TEST(IPv4, ParsesFourDecimalParts) {
    EXPECT_EQ(IPv4::parse(" 1.2.3.4\t"), 0x01020304U);
    EXPECT_EQ(IPv4::parse("010.0.0.255"), 0x0A0000FFU);
    for (const char* bad : {"", "1.2.3", "1.2.3.4.5", "1..2.3", "256.1.1.1", "0001.2.3.4", "1.2.3.4\n",
                            "1.2.3.-4", "1.2.3.4x", "１.2.3.4", "1.2. 3.4", "1.2.3.4.", "fe80::1"}) {
        EXPECT_FALSE(IPv4::isValid(bad)) << bad;
    }
}

TEST(IPv4, EveryPrefixGoesThereAndBack) {
    for (int prefix = 0; prefix <= 32; ++prefix) {
        const auto mask = IPv4::format(IPv4::maskValue(prefix));
        EXPECT_EQ(IPv4::prefixLength(mask), prefix);
        for (const auto& typed :
             {std::to_string(prefix), " /" + std::to_string(prefix) + " ", mask, "/" + mask}) {
            EXPECT_EQ(IPv4::normalizeMask(typed), mask) << typed;
        }
    }
    EXPECT_EQ(IPv4::prefixLength("255.0.255.0"), std::nullopt);
    EXPECT_EQ(IPv4::normalizeMask("255.0.255.000"), "255.0.255.0");
    for (const char* bad : {"", "/", "//24", "+24", "-1", "33", "2 4", "24.0", "/24/", "0x18"}) {
        EXPECT_EQ(IPv4::normalizeMask(bad), std::nullopt) << bad;
    }
}

TEST(IPv4, ComparesSubnets) {
    EXPECT_TRUE(IPv4::sameSubnet("10.0.0.5", "10.255.0.1", "255.0.0.0"));
    EXPECT_FALSE(IPv4::sameSubnet("10.0.0.5", "11.0.0.1", "255.0.0.0"));
    EXPECT_FALSE(IPv4::sameSubnet("10.0.0.5", "10.0.0.6", "8"));
}

TEST(IPv4, SplitsATypedServerList) {
    EXPECT_EQ(parseDNSList("8.8.8.8, 1.1.1.1"), (Strings{"8.8.8.8", "1.1.1.1"}));
    EXPECT_EQ(parseDNSList(",8.8.8.8\u00A0x\n\u3000,\u2009é,"), (Strings{"8.8.8.8", "x", "é"}));
    EXPECT_EQ(parseDNSList(" ,\t\n"), Strings{});
}

TEST(Uuid, TextGoesThereAndBack) {
    const auto id = Uuid::parse("e621e1f8-C36C-495A-93FC-0c247a3e6e5f");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    for (const char* bad : {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}",
                            "E621E1F8-C36C-495A-93FC-0C247A3E6E5G", "E621E1F8-C36C-495A-93FC+0C247A3E6E5F"}) {
        EXPECT_FALSE(Uuid::parse(bad)) << bad;
    }
}

TEST(Uuid, GeneratedOnesAreRandomVersion4) {
    std::set<Uuid> seen;
    for (int i = 0; i < 1000; ++i) {
        const auto id = Uuid::generate();
        EXPECT_TRUE(seen.insert(id).second);
        EXPECT_EQ(id.text()[14], '4');
        EXPECT_NE(std::string("89AB").find(id.text()[19]), std::string::npos);
        EXPECT_EQ(Uuid::parse(id.text()), id);
    }
}

TEST(Secret, WipesWholeBuffers) {
    for (const char* word : {"short", "a password of more than the small string's room"}) {
        std::string original = word;
        const char* buffer = original.data();
        const auto capacity = original.capacity();
        Secret secret(std::move(original));
        EXPECT_EQ(secret.reveal(), word);
        EXPECT_EQ(std::string(buffer, capacity), std::string(capacity, '\0'));

        Secret moved(std::move(secret));
        EXPECT_TRUE(secret.empty()); // NOLINT: what is left of a moved secret is the point
        secret = std::move(moved);
        EXPECT_EQ(secret.reveal(), word);
        EXPECT_TRUE(moved.empty()); // NOLINT
        secret = Secret("x");
        EXPECT_EQ(secret.reveal(), "x");
    }
    // What stood behind the present end goes too.
    std::string text = "a long secret that was shortened afterwards";
    text.resize(2);
    const char* buffer = text.data();
    wipe(text);
    EXPECT_EQ(std::string(buffer, text.capacity()).find_first_not_of('\0'), std::string::npos);
}

} // namespace corvane
