// Single values: UUIDs, addresses, masks, server lists, whole numbers, UTF-8.
#include "fuzz.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"
#include "core/support/uuid.h"

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = asText(data, size);
    if (const auto id = Uuid::parse(text)) {
        require(text::equalsIgnoringCase(id->text(), text) && Uuid::parse(id->text()) == id,
                "UUIDs go there and back");
    }
    if (const auto address = IPv4::parse(text)) {
        require(IPv4::parse(IPv4::format(*address)) == address, "addresses go there and back");
        require(IPv4::sameSubnet(text, text, "255.255.255.255"), "an address is in its own subnet");
    }
    if (const auto mask = IPv4::normalizeMask(text)) {
        require(IPv4::normalizeMask(*mask) == mask, "a normal mask is normal");
        if (const auto prefix = IPv4::prefixLength(*mask)) {
            require(IPv4::normalizeMask(std::to_string(*prefix)) == mask, "a prefix gives its mask");
        }
    }
    std::size_t bytes = 0;
    for (const auto& server : parseDNSList(text)) {
        require(!server.empty() && server.find_first_of(", \t\n") == std::string::npos,
                "pieces hold no separator");
        bytes += server.size();
    }
    require(bytes <= size, "pieces are of the text");
    long number = 5;
    if (text::parseInteger(text, 5, 4094, number))
        require(number >= 5 && number <= 4094, "numbers are in range");
    const auto valid = text::validUtf8(text);
    require(text::validUtf8Prefix(valid) == valid.size(), "mended text is UTF-8");
    require((text::validUtf8Prefix(text) == size) == (valid == text), "sound text is left alone");
    return 0;
}
