#include "core/netconfig/current_config.h"

namespace corvane {

std::string CurrentConfig::modeLabel() const {
    switch (mode.kind()) {
    case Mode::Kind::dhcp:
        return "DHCP";
    case Mode::Kind::manual:
        return "Manual";
    case Mode::Kind::other:
        break;
    }
    return mode.word();
}

} // namespace corvane
