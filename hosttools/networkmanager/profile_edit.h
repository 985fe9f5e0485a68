// A profile as libnm's object: read in detail, changed, and given back in the form that NetworkManager takes.
#pragma once

#include "hosttools/engine.h"
#include "hosttools/networkmanager/snapshot.h"

#include <NetworkManager.h>

namespace corvane::networkmanager {

class ProfileEdit {
  public:
    /// Null settings inside when libnm can't make sense of the profile.
    explicit ProfileEdit(const Profile& profile);
    /// A new profile of that type, addressed by DHCP, bound to the device.
    ProfileEdit(const std::string& id, const std::string& type, const std::string& interface);

    bool valid() const { return connection_ != nullptr; }

    hosttools::Addressing::Method method() const;
    /// The manual address; nothing in other modes.
    void readManual(hosttools::Addressing& addressing) const;
    std::vector<std::string> dns() const;
    std::string ipv6Method() const;
    std::vector<hosttools::Route> routes() const;

    void setDHCP();
    void setManual(const std::string& ip, int prefix, const std::optional<std::string>& router);
    void setDNS(const std::vector<std::string>& servers);
    void setRoutes(const std::vector<hosttools::Route>& routes);
    /// Both address families.
    void setMetric(std::uint32_t metric);
    void setVLAN(const std::string& parent, int tag);

    /// Floating a{sa{sv}}, normalised.
    GVariant* settings();

  private:
    NMSettingIPConfig* ip4() const;

    Object<NMConnection> connection_;
};

} // namespace corvane::networkmanager
