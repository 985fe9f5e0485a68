// The Mac tools over the simulated Mac's state file. What is true is worked out from time stamps at every
// call, so a DHCP lease arrives by itself.
#pragma once

#include "hosttools/dialect.h"
#include "hosttools/simulated/state.h"

namespace corvane::simulated {

/// What real tools take, in milliseconds, before the state's delayScale.
inline constexpr Time leaseDelay = 1500;
inline constexpr Time selfAssignDelay = 3000;
inline constexpr Time setDelay = 250;

class SimulatedEngine : public hosttools::Engine {
  public:
    struct Clock {
        std::function<Time()> now = currentTime;
        /// Sleeps that many milliseconds; called with 0 never.
        std::function<void(Time)> sleep;
    };
    explicit SimulatedEngine(std::string stateFile);
    SimulatedEngine(std::string stateFile, Clock clock);

    /// The first fault set for this call, taken out of the state; the verb is the first argument of
    /// networksetup, else the tool's name.
    std::optional<hosttools::Printed> takeFault(const std::string& tool,
                                                const std::vector<std::string>& arguments);
    /// What the tool's own work takes.
    void delay(const std::string& tool, const std::vector<std::string>& arguments);

    hosttools::Failure unavailable(const std::string& tool) override;
    std::vector<hosttools::Service> services() override;
    std::optional<hosttools::Addressing> addressing(const std::string& service) override;
    hosttools::Failure setDHCP(const std::string& service) override;
    hosttools::Failure setManual(const std::string& service, const std::string& ip, const std::string& mask,
                                 const std::optional<std::string>& router) override;
    hosttools::Failure setDNS(const std::string& service, const std::vector<std::string>& servers) override;
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
    /// Loads once; empty when the file can't be read.
    const State& state();
    hosttools::Failure change(const std::function<void(State&)>& edit);
    hosttools::Failure changeService(const std::string& name, const std::function<void(Service&)>& edit);
    void pause(double milliseconds);
    /// The lease or self-assigned address that the service has now; the manual one only while the device is
    /// up.
    std::optional<Lease> inUse(const Service& service);
    std::string selfAssigned(const Device& device) const;
    /// Round-trip time if that address answers on that device's network.
    std::optional<double> answer(const std::string& address, const std::optional<std::string>& device);

    StateFile file_;
    Clock clock_;
    std::optional<LoadResult> loaded_;
};

} // namespace corvane::simulated
