// The state shown beside a network service.
#pragma once

#include "core/netconfig/ifconfig_info.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class LinkState {
  public:
    enum class Kind { connected, noAddress, selfAssigned, noLink, adapterMissing, inactive, disabled };

    static LinkState connected(std::string address) { return {Kind::connected, std::move(address)}; }
    static LinkState noAddress() { return {Kind::noAddress, {}}; }
    static LinkState selfAssigned(std::string address) { return {Kind::selfAssigned, std::move(address)}; }
    static LinkState noLink() { return {Kind::noLink, {}}; }
    static LinkState adapterMissing() { return {Kind::adapterMissing, {}}; }
    static LinkState inactive() { return {Kind::inactive, {}}; }
    static LinkState disabled() { return {Kind::disabled, {}}; }

    /// `hardware` counts only for a service that has a device; an absent `linkActive` counts as link up.
    static LinkState evaluate(bool enabled, bool hasDevice, const std::optional<IfconfigInfo>& hardware,
                              const std::optional<std::string>& configuredIP);
    /// The text begins with "169.254." (RFC 3927).
    static bool isLinkLocal(std::string_view address);

    Kind kind() const { return kind_; }
    /// The address in use; empty unless connected or self-assigned.
    const std::string& address() const { return address_; }
    std::string title() const;
    /// Lower sorts first.
    int sortRank() const;
    bool isConnected() const { return kind_ == Kind::connected; }
    bool hasLink() const;

    friend bool operator==(const LinkState&, const LinkState&) = default;

  private:
    LinkState(Kind kind, std::string address) : kind_(kind), address_(std::move(address)) {}
    Kind kind_;
    std::string address_;
};

} // namespace corvane
