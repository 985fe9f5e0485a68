// A simulated machine of a given size that answers without delays, and a library to go with it.
#pragma once

#include "core/netconfig/preset_library.h"
#include "hosttools/simulated/state.h"

#include <fstream>
#include <string>

namespace corvane::bench {

inline std::string serviceName(int index) { return "Adapter " + std::to_string(index + 1); }

inline void writeState(const std::string& file, int services) {
    simulated::State state = simulated::defaultState(simulated::currentTime());
    state.delayScale = 0;
    state.services.clear();
    state.devices.clear();
    for (int index = 0; index < services; ++index) {
        const std::string device = "en" + std::to_string(index);
        simulated::Device adapter;
        adapter.hardwarePort = "USB 10/100/1000 LAN";
        adapter.mac = "00:e0:4c:68:02:1f";
        simulated::Service service;
        service.name = serviceName(index);
        service.device = device;
        service.method = hosttools::Addressing::Method::manual;
        service.ip = "10.0." + std::to_string(index) + ".20";
        service.mask = "255.255.255.0";
        service.router = "10.0." + std::to_string(index) + ".1";
        service.dns = {"1.1.1.1", "8.8.8.8"};
        state.devices.emplace(device, adapter);
        state.services.push_back(service);
    }
    std::ofstream(file) << simulated::toJson(state).prettyPrinted();
}

inline PresetLibrary makeLibrary(int presets, int services) {
    PresetLibrary library;
    for (int index = 0; index < presets; ++index) {
        NetworkPreset preset;
        preset.id = Uuid::generate();
        preset.name = "Position " + std::to_string(index + 1);
        preset.service = serviceName(index % services);
        preset.mode = NetworkPreset::Mode::manual;
        preset.ip = "192.168." + std::to_string(index / 250) + "." + std::to_string(index % 250 + 1);
        preset.subnet = "255.255.255.0";
        preset.router = "192.168." + std::to_string(index / 250) + ".254";
        preset.dns = {"1.1.1.1"};
        library.presets.push_back(preset);
    }
    return library;
}

} // namespace corvane::bench
