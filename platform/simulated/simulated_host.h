// A Mac that exists in a state file only: the same tools over simulated services.
#pragma once

#include "platform/host.h"

namespace corvane {

struct SimulatedHostOptions {
    /// The folder under which the simulated tools stand at the Mac's paths.
    QString toolRoot;
    /// The state file; made with its six services when it is missing.
    QString stateFile;
    QString applicationSupport;
    /// The settings file (INI); empty keeps settings in memory.
    QString settingsFile;
};

std::unique_ptr<Host> makeSimulatedHost(const SimulatedHostOptions& options);
/// In the user's own folders, with the tools beside the program.
std::unique_ptr<Host> makeSimulatedHost();

} // namespace corvane
