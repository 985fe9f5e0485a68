#include "hosttools/simulated/state.h"

#include <chrono>

namespace corvane::simulated {

Time currentTime() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

bool State::isUp(const std::string& device) const {
    // A carrier carries no carrier: the depth is bounded even in a file edited by hand.
    std::string name = device;
    for (int depth = 0; depth < 4; ++depth) {
        const auto at = devices.find(name);
        if (at == devices.end() || !at->second.plugged || !at->second.link) return false;
        if (!at->second.parent) return true;
        name = *at->second.parent;
    }
    return false;
}

bool State::noticeLinks(Time now) {
    bool changed = false;
    for (auto& [name, device] : devices) {
        const bool up = isUp(name);
        if (up == device.seenUp) continue;
        device.seenUp = up;
        device.upSince = now;
        // Temporary addresses don't outlive a network change.
        device.aliases.clear();
        changed = true;
    }
    return changed;
}

} // namespace corvane::simulated
