// The simulated Mac: everything that its tools know stands in one JSON file, which a person or a test may
// edit. Writers hold a lock on "<file>.lock" and replace the file whole, so a reader never sees half of it.
#pragma once

#include "core/support/json.h"
#include "hosttools/engine.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::simulated {

/// Milliseconds since 1970.
using Time = long;

struct Lease {
    std::string ip;
    std::string mask;
    std::string router;
};

struct Device {
    std::string hardwarePort;
    /// Edited by hand to pull or plug a cable ("link") or the whole adapter ("plugged").
    bool plugged = true;
    bool link = true;
    bool wireless = false;
    bool vlanCapable = false;
    std::string mac;
    /// The media while the link is up; without a link it reads "autoselect (none)" unless it has no speeds.
    std::string media = "autoselect (1000baseT <full-duplex>)";
    /// What a DHCP server on this network would lease; absent where there is none.
    std::optional<Lease> lease;
    /// The device that carries this VLAN.
    std::optional<std::string> parent;
    std::vector<hosttools::Interface::Address> aliases;
    /// Kept by the tools: whether the device was up when last looked at, and since when.
    bool seenUp = true;
    Time upSince = 0;
};

struct Service {
    std::string name;
    bool enabled = true;
    std::string device;
    hosttools::Addressing::Method method = hosttools::Addressing::Method::dhcp;
    /// Manual addressing.
    std::string ip;
    std::string mask;
    std::string router;
    std::vector<std::string> dns;
    std::vector<hosttools::Route> routes;
    /// When the addressing was set.
    Time since = 0;
};

/// The next call of that verb ("-setmanual", "ifconfig" …) prints the text and does nothing else.
struct Fault {
    std::string verb;
    std::string text;
    int status = 4;
};

struct Administrator {
    std::string user;
    /// Hexadecimal.
    std::string salt;
    /// SHA-256 of this salt text followed by the password, hexadecimal.
    std::string hash;
};

struct State {
    /// Multiplies every delay; 0 makes the tools answer at once.
    double delayScale = 1;
    Administrator administrator;
    /// Who answers the fingerprint reader: "present" (the owner), "absent" (nobody) or "none" (no reader).
    std::string owner = "present";
    /// In service order.
    std::vector<Service> services;
    std::map<std::string, Device> devices;
    std::vector<hosttools::Vlan> vlans;
    /// Names that resolve.
    std::map<std::string, std::string> hosts;
    /// Addresses that answer a ping besides routers and the machine's own, with the round-trip time in ms.
    std::map<std::string, double> answering;
    std::vector<Fault> failNext;

    /// Plugged, with a link, and so is the device that carries it.
    bool isUp(const std::string& device) const;
    /// Brings seenUp and upSince in line with what was edited by hand; true when something changed.
    bool noticeLinks(Time now);
};

/// The six services of a new state file.
State defaultState(Time now);
JsonValue toJson(const State& state);
/// Nothing when the document isn't a state.
std::optional<State> fromJson(const JsonValue& json);

/// A state, or an English sentence saying why there is none.
struct LoadResult {
    std::optional<State> state;
    std::string error;
};

class StateFile {
  public:
    explicit StateFile(std::string path) : path_(std::move(path)) {}
    /// Makes the file, and its folder, when it is missing.
    LoadResult load() const;
    /// Loads, lets `edit` change the state, and writes it back, all under the lock. A sentence when it
    /// failed.
    std::optional<std::string> change(const std::function<void(State&)>& edit) const;

  private:
    LoadResult read() const;
    std::optional<std::string> write(const State& state) const;

    std::string path_;
};

Time currentTime();

} // namespace corvane::simulated
