// The simulated Mac as it comes: each state that a service can be in, once.
#include "hosttools/simulated/administrator.h"
#include "hosttools/simulated/state.h"

namespace corvane::simulated {

using hosttools::Addressing;

static Device adapter(const char* port, const char* mac) {
    Device device;
    device.hardwarePort = port;
    device.mac = mac;
    return device;
}

static Service service(const char* name, const char* device, Time since) {
    Service made;
    made.name = name;
    made.device = device;
    made.since = since;
    return made;
}

State defaultState(Time now) {
    // Long enough ago for every lease to be there.
    const Time earlier = now - 3'600'000;
    State state;
    state.administrator = makeAdministrator(loginName(), "rackside");

    Device wifi = adapter("Wi-Fi", "a4:83:e7:2b:10:5c");
    wifi.wireless = true;
    wifi.media = "autoselect";
    wifi.lease = Lease{"192.168.1.34", "255.255.255.0", "192.168.1.1"};
    Device wired = adapter("Thunderbolt Ethernet", "3c:cd:36:5f:9a:e1");
    wired.vlanCapable = true;
    wired.lease = Lease{"10.0.10.57", "255.255.255.0", "10.0.10.1"};
    Device usb = adapter("USB 10/100 LAN", "00:e0:4c:68:02:1f");
    usb.plugged = false;
    usb.media = "autoselect (100baseTX <full-duplex>)";
    usb.vlanCapable = true;
    usb.lease = Lease{"10.0.10.83", "255.255.255.0", "10.0.10.1"};
    Device bridge = adapter("Thunderbolt Bridge", "36:1e:e7:ae:1b:00");
    bridge.link = false;
    bridge.media = "<unknown type>";
    Device phone = adapter("iPhone USB", "92:8c:43:1e:b2:1c");
    phone.lease = Lease{"172.20.10.4", "255.255.255.240", "172.20.10.1"};
    Device stage = adapter("AX88179A", "f8:e4:3b:bd:7e:c0");
    stage.vlanCapable = true;
    state.devices = {{"en0", wifi},       {"en5", wired}, {"en7", usb},
                     {"bridge0", bridge}, {"en6", phone}, {"en8", stage}};
    for (auto& [name, device] : state.devices) {
        device.seenUp = state.isUp(name);
        device.upSince = earlier;
    }

    Service unplugged = service("USB 10/100 LAN", "en7", earlier);
    unplugged.method = Addressing::Method::manual;
    unplugged.ip = "192.168.10.20";
    unplugged.mask = "255.255.255.0";
    unplugged.router = "192.168.10.1";
    Service disabled = service("iPhone USB", "en6", earlier);
    disabled.enabled = false;
    state.services = {service("Wi-Fi", "en0", earlier),
                      service("Ethernet", "en5", earlier),
                      unplugged,
                      service("Thunderbolt Bridge", "bridge0", earlier),
                      disabled,
                      service("Stage LAN", "en8", earlier)};

    state.hosts = {
        {"localhost", "127.0.0.1"}, {"router.local", "192.168.1.1"}, {"console.local", "10.0.10.40"}};
    state.answering = {{"10.0.10.40", 0.6}, {"192.168.1.20", 3.2}, {"1.1.1.1", 11.4}, {"8.8.8.8", 14.8}};
    return state;
}

} // namespace corvane::simulated
