#include "core/diagnostics/icmp_echo.h"
#include "core/diagnostics/subnet_hosts.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace corvane {

using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

TEST(ICMPSweep, AddsUpTheInternetChecksum) {
    // RFC 1071, section 3: the sum of these is ddf2.
    EXPECT_EQ(ICMPSweep::checksum(Bytes{0x00, 0x01, 0xf2, 0x03, 0xf4, 0xf5, 0xf6, 0xf7}), 0x220d);
    EXPECT_EQ(ICMPSweep::checksum(Bytes{}), 0xffff);
    EXPECT_EQ(ICMPSweep::checksum(Bytes{0x12}), 0xedff) << "an odd last byte is a high one";
    EXPECT_EQ(ICMPSweep::checksum(Bytes{0xff, 0xff, 0x00, 0x01}), 0xfffe) << "the carry comes round";
    // More words than 16 bits of carries hold.
    EXPECT_EQ(ICMPSweep::checksum(Bytes(400'000, 0xff)), 0x0000);
}

TEST(ICMPSweep, BuildsAnEchoRequest) {
    const auto request = ICMPSweep::echoRequest(0x1234, 0xabcd);
    const Bytes expected{8,    0,    0x95, 0x76, 0x12, 0x34, 0xab, 0xcd,
                         0x57, 0x65, 0x6e, 0x64, 0x72, 0x65, 0x6c, 0x58};
    EXPECT_EQ(Bytes(request.begin(), request.end()), expected);
    EXPECT_EQ(ICMPSweep::checksum(request), 0) << "with the checksum in place all of it adds up to none";
}

TEST(ICMPSweep, ReadsAnEchoReplyAndNothingElse) {
    Bytes message(28);
    message[0] = 0x45;
    message[9] = 1;
    const Bytes source{10, 0, 10, 200};
    std::copy(source.begin(), source.end(), message.begin() + 12);
    message[24] = 0xbe;
    message[25] = 0xef;
    const ICMPSweep::EchoReply expected{0x0a000ac8, 0xbeef};
    EXPECT_EQ(ICMPSweep::parseReply(message), expected);

    for (std::size_t count = 0; count < message.size(); ++count)
        EXPECT_EQ(ICMPSweep::parseReply(std::span(message).first(count)), std::nullopt) << count;
    const auto with = [&](std::size_t at, std::uint8_t value) {
        Bytes changed = message;
        changed[at] = value;
        return ICMPSweep::parseReply(changed);
    };
    EXPECT_EQ(with(0, 0x65), std::nullopt) << "IPv6";
    EXPECT_EQ(with(0, 0x44), std::nullopt) << "a header below its least length";
    EXPECT_EQ(with(0, 0x46), std::nullopt) << "a header with options, cut short";
    for (const std::uint8_t type : Bytes{3, 8, 11}) EXPECT_EQ(with(20, type), std::nullopt);

    // The longest header: 40 bytes of options in front of the same message.
    Bytes options = message;
    options.insert(options.begin() + 20, 40, 1);
    options[0] = 0x4f;
    EXPECT_EQ(ICMPSweep::parseReply(options), expected);
    options.pop_back();
    EXPECT_EQ(ICMPSweep::parseReply(options), std::nullopt);
}

TEST(SubnetHosts, AreAllButTheNetworkAndBroadcastAddresses) {
    EXPECT_EQ(SubnetHosts::of("10.8.0.6", "255.255.255.252").addresses, (Strings{"10.8.0.5", "10.8.0.6"}));
    EXPECT_EQ(SubnetHosts::of("10.8.0.7", "31").addresses, (Strings{"10.8.0.6", "10.8.0.7"}));
    EXPECT_EQ(SubnetHosts::of(" 10.8.0.7 ", "/32").addresses, Strings{"10.8.0.7"});
    EXPECT_EQ(SubnetHosts::of("255.255.255.255", "/31").addresses.back(), "255.255.255.255");
    const auto middle = SubnetHosts::of("10.8.2.9", "255.255.252.0").addresses;
    ASSERT_EQ(middle.size(), 1022U);
    EXPECT_EQ(middle.front(), "10.8.0.1");
    EXPECT_EQ(middle.back(), "10.8.3.254");
    const auto largest = SubnetHosts::of("172.16.5.5", "/16").addresses;
    ASSERT_EQ(largest.size(), SubnetHosts::limit);
    EXPECT_EQ(largest.back(), "172.16.255.254");
    for (const char* mask : {"16", "22", "30", "31", "32", "8", "x"}) {
        const auto hosts = SubnetHosts::of("10.8.0.7", mask);
        const auto counted = SubnetHosts::count("10.8.0.7", mask);
        EXPECT_EQ(counted.addresses, hosts.addresses.size()) << mask;
        EXPECT_EQ(counted.error, hosts.error) << mask;
    }
}

TEST(SubnetHosts, SayWhyThereAreNone) {
    for (const auto& [address, mask, sentence] : std::vector<std::array<std::string, 3>>{
             {"10.8.0", "24", "The address isn't a valid IPv4 address."},
             {"10.8.0.1", "255.0.255.0", "The mask isn't valid (use 255.255.0.0 or /16)."},
             {"10.8.0.1", "", "The mask isn't valid (use 255.255.0.0 or /16)."},
             {"10.8.0.1", "255.254.0.0",
              "A /15 has too many addresses to sweep: at most a /16 (65,534 addresses) can be swept."},
             {"10.8.0.1", "0.0.0.0",
              "A /0 has too many addresses to sweep: at most a /16 (65,534 addresses) can be swept."}}) {
        const auto hosts = SubnetHosts::of(address, mask);
        EXPECT_EQ(hosts.error, sentence);
        EXPECT_TRUE(hosts.addresses.empty());
    }
    EXPECT_EQ(SubnetHosts::of("10.8.0.1", "24").error, "");
}

} // namespace corvane
