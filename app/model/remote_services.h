// Adapters of remote PCs, which presets may name beside the services of this machine.
#pragma once

#include <string>

namespace corvane {

/// Keyed by names that begin so; the tools of this machine know nothing of them.
inline bool isRemoteService(const std::string& name) {
    return name.starts_with("win:");
}

} // namespace corvane
