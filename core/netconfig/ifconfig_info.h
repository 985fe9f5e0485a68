// What the interface-configuration tool says about one BSD device.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct IfconfigInfo {
    /// False when the device doesn't exist (adapter unplugged).
    bool present = false;
    /// From the "status:" line; absent when there is none.
    std::optional<bool> linkActive;
    /// The active media, e.g. "1000baseT <full-duplex>".
    std::optional<std::string> media;
    /// Every IPv4 address of the device, in printed order.
    std::vector<std::string> addresses;
    /// The Ethernet address.
    std::optional<std::string> mac;

    static IfconfigInfo parse(std::string_view output);
    /// "10 Gb/s" … "10 Mb/s" for the Ethernet speeds; nothing for other media.
    std::optional<std::string> speedLabel() const;
    bool isHalfDuplex() const;

    friend bool operator==(const IfconfigInfo&, const IfconfigInfo&) = default;
};

} // namespace corvane
