// Reads the machine's network state by running the system's tools. Blocking: for a worker thread.
#pragma once

#include "core/netconfig/service_info.h"
#include "core/netconfig/vlan_info.h"
#include "platform/shell.h"

#include <atomic>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace corvane {

struct NetworkSnapshot {
    /// In the order of the tool's list of services.
    std::vector<ServiceInfo> services;
    std::vector<VLANInfo> vlans;
    /// Devices that can carry VLANs.
    std::set<std::string> vlanCapable;
    std::vector<std::string> serviceOrder;
    /// The device of the default route.
    std::optional<std::string> internetDevice;

    friend bool operator==(const NetworkSnapshot&, const NetworkSnapshot&) = default;
};

class NetworkReader {
  public:
    /// Once `cancelled` becomes true no further tool is started, and what was read is worth nothing.
    explicit NetworkReader(const Shell& shell, const std::atomic<bool>* cancelled = nullptr)
        : shell_(shell), cancelled_(cancelled) {}
    /// Every service is listed even when its own reads fail.
    std::vector<ServiceInfo> readAll() const;
    NetworkSnapshot snapshot() const;

  private:
    std::string run(const char* tool, const std::vector<std::string>& arguments) const;

    const Shell& shell_;
    const std::atomic<bool>* cancelled_;
};

} // namespace corvane
