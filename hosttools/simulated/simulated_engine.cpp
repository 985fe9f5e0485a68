#include "hosttools/simulated/simulated_engine.h"

#include "core/support/text.h"
#include "hosttools/names.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace corvane::simulated {

using hosttools::Addressing;
using hosttools::Failure;

static void sleepFor(Time milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

SimulatedEngine::SimulatedEngine(std::string stateFile)
    : SimulatedEngine(std::move(stateFile), {currentTime, sleepFor}) {}

SimulatedEngine::SimulatedEngine(std::string stateFile, Clock clock)
    : file_(std::move(stateFile)), clock_(std::move(clock)) {}

const State& SimulatedEngine::state() {
    static const State none;
    if (!loaded_) {
        loaded_ = file_.load();
        // The tools' names are distinct and on one line whatever was written into the file.
        if (loaded_->state) {
            std::vector<std::string> names;
            for (const Service& service : loaded_->state->services) names.push_back(service.name);
            names = hosttools::printableNames(names);
            for (std::size_t i = 0; i < names.size(); ++i) loaded_->state->services[i].name = names[i];
        }
    }
    return loaded_->state ? *loaded_->state : none;
}

Failure SimulatedEngine::unavailable(const std::string&) {
    state();
    if (loaded_->state) return std::nullopt;
    return "** Error: The simulated network can't be read. " + loaded_->error;
}

Failure SimulatedEngine::change(const std::function<void(State&)>& edit) {
    loaded_.reset();
    if (const auto error = file_.change([&](State& state) {
            std::vector<std::string> names;
            for (const Service& service : state.services) names.push_back(service.name);
            names = hosttools::printableNames(names);
            for (std::size_t i = 0; i < names.size(); ++i) state.services[i].name = names[i];
            edit(state);
        }))
        return "** Error: The simulated network can't be changed. " + *error;
    return std::nullopt;
}

Failure SimulatedEngine::changeService(const std::string& name, const std::function<void(Service&)>& edit) {
    return change([&](State& state) {
        for (Service& service : state.services)
            if (service.name == name) edit(service);
    });
}

std::optional<hosttools::Printed> SimulatedEngine::takeFault(const std::string& tool,
                                                             const std::vector<std::string>& arguments) {
    const std::string verb = tool == "networksetup" && !arguments.empty() ? arguments[0] : tool;
    const auto fits = [&](const Fault& fault) { return text::equalsIgnoringCase(fault.verb, verb); };
    const State& now = state();
    if (std::none_of(now.failNext.begin(), now.failNext.end(), fits)) return std::nullopt;
    std::optional<Fault> taken;
    change([&](State& state) {
        const auto at = std::find_if(state.failNext.begin(), state.failNext.end(), fits);
        if (at == state.failNext.end()) return;
        taken = *at;
        state.failNext.erase(at);
    });
    if (!taken) return std::nullopt;
    return hosttools::Printed{taken->text.empty() ? "" : taken->text + "\n", {}, taken->status};
}

void SimulatedEngine::pause(double milliseconds) {
    const Time scaled = static_cast<Time>(milliseconds * state().delayScale);
    if (scaled > 0 && clock_.sleep) clock_.sleep(scaled);
}

void SimulatedEngine::delay(const std::string& tool, const std::vector<std::string>& arguments) {
    if (tool != "networksetup") return pause(2);
    const std::string verb = arguments.empty() ? "" : text::lowered(arguments[0]);
    const bool reads = verb.starts_with("-get") || verb.starts_with("-list");
    // Reading takes 20 to 40 ms, spread over the calls.
    pause(reads ? static_cast<double>(20 + clock_.now() % 21) : static_cast<double>(setDelay));
}

Failure SimulatedEngine::setDHCP(const std::string& service) {
    const Time now = clock_.now();
    return changeService(service, [&](Service& s) {
        s.method = Addressing::Method::dhcp;
        s.since = now;
    });
}

Failure SimulatedEngine::setManual(const std::string& service, const std::string& ip, const std::string& mask,
                                   const std::optional<std::string>& router) {
    const Time now = clock_.now();
    return changeService(service, [&](Service& s) {
        s.method = Addressing::Method::manual;
        s.ip = ip;
        s.mask = mask;
        s.router = router.value_or("");
        s.since = now;
    });
}

Failure SimulatedEngine::setDNS(const std::string& service, const std::vector<std::string>& servers) {
    return changeService(service, [&](Service& s) { s.dns = servers; });
}

Failure SimulatedEngine::setOrder(const std::vector<std::string>& services) {
    return change([&](State& state) {
        const auto place = [&](const Service& s) {
            return std::find(services.begin(), services.end(), s.name);
        };
        std::stable_sort(state.services.begin(), state.services.end(),
                         [&](const Service& a, const Service& b) { return place(a) < place(b); });
    });
}

Failure SimulatedEngine::setRoutes(const std::string& service, const std::vector<hosttools::Route>& routes) {
    return changeService(service, [&](Service& s) { s.routes = routes; });
}

Failure SimulatedEngine::createVLAN(const std::string& name, const std::string& parentDevice, int tag) {
    const Time now = clock_.now();
    return change([&](State& state) {
        const auto parent = state.devices.find(parentDevice);
        if (parent == state.devices.end()) return;
        int number = 0;
        while (state.devices.contains("vlan" + std::to_string(number))) ++number;
        const std::string device = "vlan" + std::to_string(number);
        Device carried;
        carried.hardwarePort = name;
        carried.mac = parent->second.mac;
        carried.media = parent->second.media;
        carried.parent = parentDevice;
        // The simulated trunk carries every tag, each with a DHCP server of its own.
        const std::string net =
            "10." + std::to_string(100 + tag / 256) + "." + std::to_string(tag % 256) + ".";
        carried.lease = Lease{net + "50", "255.255.255.0", net + "1"};
        carried.upSince = now;
        state.devices[device] = carried;
        state.devices[device].seenUp = state.isUp(device);
        Service service;
        service.name = name;
        service.device = device;
        service.since = now;
        state.services.push_back(service);
        state.vlans.push_back({name, parentDevice, device, tag});
    });
}

Failure SimulatedEngine::deleteVLAN(const std::string& name, const std::string& parentDevice, int tag) {
    return change([&](State& state) {
        for (const hosttools::Vlan& vlan : state.vlans) {
            if (vlan.name != name || vlan.parentDevice != parentDevice || vlan.tag != tag) continue;
            state.devices.erase(vlan.device);
            std::erase_if(state.services, [&](const Service& s) { return s.device == vlan.device; });
        }
        std::erase_if(state.vlans, [&](const hosttools::Vlan& v) {
            return v.name == name && v.parentDevice == parentDevice && v.tag == tag;
        });
    });
}

} // namespace corvane::simulated
