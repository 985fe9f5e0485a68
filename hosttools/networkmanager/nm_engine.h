// The Mac tools over NetworkManager: a network service is a connection profile. Changes are saved in the
// profile, so they survive a restart, and take effect at once where its device is up. What the kernel knows
// (addresses, link, default route) is read from the kernel.
#pragma once

#include "hosttools/engine.h"
#include "hosttools/networkmanager/profile_edit.h"
#include "hosttools/networkmanager/service_list.h"

#include <chrono>
#include <functional>

namespace corvane::networkmanager {

class NmEngine : public hosttools::Engine {
  public:
    hosttools::Failure unavailable(const std::string& tool) override;
    std::vector<hosttools::Service> services() override;
    std::optional<hosttools::Addressing> addressing(const std::string& service) override;
    hosttools::Failure setDHCP(const std::string& service) override;
    /// Waits until the address is in use, 15 seconds at most.
    hosttools::Failure setManual(const std::string& service, const std::string& ip, const std::string& mask,
                                 const std::optional<std::string>& router) override;
    hosttools::Failure setDNS(const std::string& service, const std::vector<std::string>& servers) override;
    /// Metrics 100, 200 … in both address families.
    hosttools::Failure setOrder(const std::vector<std::string>& services) override;
    std::optional<std::vector<hosttools::Route>> routes(const std::string& service) override;
    hosttools::Failure setRoutes(const std::string& service,
                                 const std::vector<hosttools::Route>& routes) override;
    std::vector<hosttools::Vlan> vlans() override;
    std::vector<hosttools::Port> vlanCapablePorts() override;
    hosttools::Failure createVLAN(const std::string& name, const std::string& parentDevice, int tag) override;
    hosttools::Failure deleteVLAN(const std::string& name, const std::string& parentDevice, int tag) override;
    std::optional<hosttools::Interface> interface(const std::string& device) override;
    hosttools::Failure addAlias(const std::string& device, const std::string& ip,
                                const std::string& mask) override;
    hosttools::Failure removeAlias(const std::string& device, const std::string& ip) override;
    std::optional<hosttools::DefaultRoute> defaultRoute() override;
    hosttools::PingReply ping(const std::string& host, int waitMs,
                              const std::optional<std::string>& device) override;

  private:
    const Entry* find(const std::string& service);
    /// Reads everything anew at the next look.
    void forget();
    /// Changes the service's profile, or makes one for a device without, and puts it into effect.
    hosttools::Failure edit(const std::string& service, const std::function<void(ProfileEdit&)>& change);
    /// The new profile's path in `path`.
    hosttools::Failure add(ProfileEdit& profile, bool autoconnect, std::string& path);
    hosttools::Failure save(const std::string& path, ProfileEdit& profile);
    /// Reapplies an active profile; activates one whose device has a link.
    hosttools::Failure putIntoEffect(const Entry& entry, const std::string& profilePath);
    hosttools::Failure waitForAddress(const Entry& entry, const std::string& ip);
    /// Fills in what the device has now.
    void readUse(const Entry& entry, hosttools::Addressing& addressing) const;

    std::optional<Bus> bus_;
    std::optional<Snapshot> snapshot_;
    std::vector<Entry> entries_;
    /// The active connection that the last change has started; empty when it was reapplied or only saved.
    std::string activation_;
};

/// Looks every 10 ms; false when the time is up.
bool waitFor(std::chrono::milliseconds limit, const std::function<bool()>& done);
/// "** Error: …", or the line about administrator rights.
std::string errorText(const Reply& reply);

} // namespace corvane::networkmanager
