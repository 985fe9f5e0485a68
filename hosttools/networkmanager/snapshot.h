// NetworkManager's devices, active connections and profiles at one moment.
#pragma once

#include "hosttools/networkmanager/bus.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::networkmanager {

// Of NetworkManager's D-Bus interface: NMDeviceState, NMDeviceType and NMActiveConnectionState.
inline constexpr std::uint32_t deviceDisconnected = 30;
inline constexpr std::uint32_t deviceUnavailable = 20;
inline constexpr std::uint32_t deviceActivated = 100;
inline constexpr std::uint32_t typeEthernet = 1;
inline constexpr std::uint32_t typeVeth = 20;
inline constexpr std::uint32_t activeActivated = 2;

struct Device {
    std::string path;
    std::string interface;
    std::string mac;
    std::uint32_t type = 0;
    std::uint32_t state = 0;
    bool managed = false;
    bool carrier = false;
    /// Profiles that could be activated on it now.
    std::vector<std::string> available;
    std::string active;
    std::string ip4;
    std::string ip6;
    std::string dhcp4;

    bool isEthernet() const { return type == typeEthernet || type == typeVeth; }
};

struct Profile {
    std::string path;
    /// a{sa{sv}}, without secrets.
    Variant settings;
    std::string id;
    std::string uuid;
    std::string type;
    std::string interface;
    bool autoconnect = true;
    /// The port of a bridge or bond, without addressing of its own.
    bool isPort = false;
    /// Absent when NetworkManager's default for the type counts.
    std::optional<std::uint32_t> metric;

    /// A section's value; null when it isn't set.
    Variant value(const char* section, const char* key) const;
    std::string text(const char* section, const char* key) const;
};

class Snapshot {
  public:
    /// Nothing when NetworkManager doesn't answer.
    static std::optional<Snapshot> take(const Bus& bus);

    const std::vector<Device>& devices() const { return devices_; }
    const std::vector<Profile>& profiles() const { return profiles_; }
    const Device* device(const std::string& interface) const;
    /// The device on which the profile is being or has been activated.
    const Device* activeDevice(const Profile& profile) const;
    /// A property of any object; null when there is none.
    Variant property(const std::string& path, const char* interface, const char* name) const;

  private:
    Variant objects_;
    std::vector<Device> devices_;
    std::vector<Profile> profiles_;
    /// Profile path by active connection's path.
    std::map<std::string, std::string> activated_;
};

} // namespace corvane::networkmanager
